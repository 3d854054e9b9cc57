#pragma once

#include "core/library/files/FileLine.h"
#include "core/library/tagwriting/RowSaver.h"

#include <functional>
#include <memory>

class FileEvents;
class Preferences;

/// Brings what the rows say into the files: in the background, file by file, the tags of a row that was never read
/// only after its read, and with what the file holds besides kept or dropped as the user said. What is written is what
/// the row says when its turn comes; a file that holds that already is left alone. Thread: main.
class TagSaver : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        Preferences& preferences;
        async::Executor& executor;
        TagFiles& files;
        FileLocks& locks;
        FileEvents& events;
        WorkBoard& board;
        SaveJobs::Reader readMetadata;
    };

    using Others = RowSaver::Others;
    using Item = RowSaver::Item;
    using Wanted = RowSaver::Wanted;

    using Progress = FileLine::Progress;

    using PutBack = SaveJobs::PutBack;

    /// Of a file whose tags were put back.
    struct Restored {
        QByteArray former; ///< the tags that stood before; empty where they could not be kept
        SaveJobs::Left left;
    };
    /// What became of a batch.
    struct Outcome {
        int written = 0;                   ///< files that hold what their rows said
        QSet<TrackID> notWritten;          ///< rows of the others, because of a failure or a stop
        QSet<TrackID> stopped;             ///< those of them that a stop left
        QHash<TrackID, Restored> restored; ///< of restores: the rows whose tags were put back
        QSet<TrackID> leftAlone;           ///< of restores: rows whose files hold something else than expected
    };

    explicit TagSaver(const Dependencies& dependencies);
    ~TagSaver() override;

    /// Writes one row's file. A row that is gone when its turn comes is not written.
    void write(const TrackID& id);
    /// Writes files one after another. A failed one does not stop the others; the first failure is told at the end.
    /// \param ended is called then; may be empty; not called where there are no items.
    void writeBatch(const QList<Item>& items, std::function<void(const Outcome&)> ended = {});
    /// Puts tags back and reads them again. \param what for each row; the original tags, where they are kept, of a row
    /// that is not among them. Where the picture alone is wanted, what rows say stays: fields in which they differ from
    /// these tags are edits that are not in the file, to be written by the caller. \param ended may be empty; not
    /// called where there are no tracks.
    void restoreBatch(const QList<Track>& tracks, const QHash<TrackID, PutBack>& what, Wanted wanted,
                      std::function<void(const Outcome&)> ended = {});
    /// Stops all batches before their next file; what is not done then is told by stopped().
    void cancelBatches();
    /// Files written and to be written by the batches under way; 0 of 0 when none is.
    Progress progress() const { return m_line.progress(); }

    /// Writes a picture and the row's tags into its file. Throws TagFileError. \return what holdsPicture() wants, and
    /// the tags that stood before.
    async::Task<RowSaver::Saved> writeArtwork(QByteArray artwork, Track track, std::stop_token stop);
    /// Whether the tags that the file had at first are kept.
    bool holdsOriginal(const QUrl& url) const;
    /// The user's answer to what saves keep; writes that waited for it go on.
    void answerWhatSavesKeep(bool keepsOthers) { m_question.answer(keepsOthers); }

    /// Its part that does one file; for those who listen to what saves find out.
    RowSaver& rows() { return m_rows; }

Q_SIGNALS:
    /// After every file, and when a batch begins or ends.
    void progressChanged();
    /// \param notDone files that the stopped batches left out, or failed to write before.
    void stopped(int notDone);
    /// The first failure of a batch, at its end.
    void failed(const FileFailure& failure);

private:
    class Round;
    class Saves;
    class Restores;

    void finish(const FileRound::End& end, int givenUp);

    Dependencies m_dependencies;
    KeepQuestion m_question;
    RowSaver m_rows;
    int m_leftOut = 0; ///< files of stopped rounds, until the last of them ends
    FileLine m_line;
};
