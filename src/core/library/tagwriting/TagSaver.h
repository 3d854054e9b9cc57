#pragma once

#include "async/Completion.h"
#include "async/Executor.h"
#include "async/TaskGroup.h"
#include "core/library/tagwriting/MetadataWriteCoordinator.h"
#include "core/library/tagwriting/SaveJobs.h"
#include "core/library/tagwriting/SavedRows.h"
#include "core/library/tagwriting/TagFiles.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <functional>
#include <memory>

class FileEvents;
class Preferences;
class Workspace;

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
        SaveJobs::Reader readMetadata;
        /// Takes a failure to the user.
        std::function<void(const TagFileError&)> report;
    };

    /// What becomes of a file's picture, of entries that are no tag of the row, and of fields that were not edited:
    /// what the user prefers and the row says, or nothing at all.
    enum class Others { AsPreferred, Stay };

    /// One file to be written: the row as it was edited, for the case that it is gone when its turn comes.
    struct Item {
        Track track;
        TagFields edited; ///< what the user changed
        Others others = Others::AsPreferred;
    };

    /// Files done and to be done by the batches under way.
    struct Progress {
        int done = 0;
        int total = 0;
    };

    explicit TagSaver(const Dependencies& dependencies);
    ~TagSaver() override;

    /// Writes one row's file. A row that is gone when its turn comes is not written.
    void write(const TrackID& id, TagFields edited);
    /// Writes files one after another. A failed one does not stop the others; the first failure is reported at the end.
    /// \param ended is told then how many files were written; may be empty.
    void writeBatch(const QList<Item>& items, std::function<void(int written)> ended = {});
    /// The same. \param ended is told the rows whose files were not written, because of a failure or a stop.
    void writeBatchNaming(const QList<Item>& items, std::function<void(const QSet<TrackID>& notWritten)> ended);
    /// Puts the tags back that the files had at first, where they are kept, and reads them again; restored() tells.
    void restoreBatch(const QList<Track>& tracks);
    /// Stops all batches before their next file; what is not done then is told by stopped().
    void cancelBatches();
    Progress progress() const { return m_progress; }

    /// Writes a picture and the row's tags into its file. Throws TagFileError. \return a mark for holdsPicture().
    async::Task<quint64> writeArtwork(QByteArray artwork, Track track, std::stop_token stop);
    /// Whether the file still holds what that write of a picture left in it.
    bool holdsPicture(const TrackID& id, quint64 mark) const { return m_pictureWrites.value(id) == mark; }
    /// Whether the tags that the file had at first are kept.
    bool holdsOriginal(const QUrl& url) const;

    /// The fields of a row that were edited and have not come to its file.
    TagFields pendingEdits(const TrackID& id) const { return m_edits.value(id); }
    /// An edit was taken back before it came to its file: these fields of the row count as not edited.
    void forgetEdits(const TrackID& id, TagFields fields);
    /// The user's answer to what saves keep; writes that waited for it go on.
    void answerWhatSavesKeep(bool keepsOthers);

Q_SIGNALS:
    void progressChanged();
    /// \param notDone files that a stopped batch left out.
    void stopped(int notDone);
    /// The end of restoreBatch(). \param ids whose original tags are back.
    void restored(const QSet<TrackID>& ids);
    /// What a file held in fields that its row did not know, told before the first write. \param known the fields.
    void fileTold(const TrackID& id, const AudioTags& values, TagFields known);

private:
    struct Batch;
    struct Saved {
        SavedRow row;
        std::optional<TagFileError> failure = {};
        std::optional<AudioTags> written = {};
        bool isRestored = false;
    };
    /// A row as it is when its file's turn has come.
    struct Turn {
        Track track;
        TagFields edited;
        bool isInList = false;
        Others others = Others::AsPreferred;
    };
    using Artwork = std::optional<QByteArray>;

    void noteEdits(const TrackID& id, TagFields edited);
    void startWrites(std::shared_ptr<Batch> batch);
    void startBatch(std::shared_ptr<Batch> batch);
    async::Task<> writeOne(Item item, std::stop_token stop);
    async::Task<> runBatch(std::shared_ptr<Batch> batch, std::stop_token stop);
    void note(Batch& batch, const Saved& saved);
    void finishBatch(const Batch& batch);
    void setProgress(int done, int total);

    async::Task<Saved> save(Item item, Artwork artwork, std::stop_token stop);
    async::Task<std::optional<TagFileError>> writeHeld(Turn turn, Artwork artwork, std::shared_ptr<Saved> saved,
                                                       std::stop_token stop);
    async::Task<Saved> restoreOne(Track track, std::stop_token stop);
    Turn turnOf(const Item& item) const;
    SaveJobs::Wanted wantedOf(const Turn& turn) const;
    void tell(const Turn& turn, const SaveJobs::Look& look);
    void tellRewritten(const QUrl& url, const SaveJobs::Rewrite& rewrite);
    async::Task<bool> keepsOthers(TagInventory inventory, AudioTags written, bool replacesPicture,
                                  std::stop_token stop);
    void applyToRows(const QList<SavedRow>& saved);
    void noteWritten(const TrackID& id, const AudioTags& tags);
    void preferenceChanged(const QString& key);

    Dependencies m_dependencies;
    MetadataWriteCoordinator m_coordinator;
    Progress m_progress;
    QHash<TrackID, TagFields> m_edits;       ///< not yet in the files
    QHash<TrackID, QUuid> m_writtenStamps;   ///< stamp of the tags that a file holds
    QHash<TrackID, quint64> m_pictureWrites; ///< last write that decided about the picture
    quint64 m_pictureWrite = 0;
    QList<std::shared_ptr<Batch>> m_batches;
    std::unique_ptr<async::Completion<bool>> m_answer; ///< to the question that is being asked
    async::TaskGroup m_writes;
};
