#pragma once

#include "async/Executor.h"
#include "core/library/files/FileLocks.h"
#include "core/library/tagwriting/KeepQuestion.h"
#include "core/library/tagwriting/SaveJobs.h"
#include "core/library/tagwriting/SavedRows.h"
#include "core/library/tagwriting/TagFiles.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <memory>

class FileEvents;
class Workspace;

/// One file's way once its path is held: what the row says now, what the file holds, what is kept, the write itself,
/// and what the row learns from it. Thread: main; the files are read and written on workers.
class RowSaver : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        async::Executor& executor;
        TagFiles& files;
        FileEvents& events;
        KeepQuestion& question;
        SaveJobs::Reader readMetadata;
    };

    /// What becomes of a file's picture, of entries that are no tag of the row, and of fields that were not edited:
    /// what the user prefers and the row says, or nothing at all, where only the edited fields are written or of these
    /// the album alone.
    enum class Others { AsPreferred, Stay, StayBesideAlbum };
    /// What is wanted of tags that are put back: all, or the picture alone, beside fields as the rows have them.
    enum class Wanted { All, Picture };

    struct Asked;
    /// One file to be written. What is edited stands in its row; a row that left the list is written as it was, but for
    /// what was edited in its file's rows since.
    struct Item {
        Track track;
        Others others = Others::AsPreferred;
        bool needsRow = false;                   ///< a row that left the list is not written
        std::shared_ptr<const Asked> asked = {}; ///< by ask()
        qsizetype place = 0;                     ///< of its edit there
    };
    /// What came of one file.
    struct Saved {
        SavedRow row;
        std::optional<TagFileError> failure = {};
        bool isGivenUp = false; ///< the user stopped it while it waited for an answer
        bool isRestored = false;
        bool isLeftAlone = false; ///< what was to be restored is not what the file holds
        QByteArray former = {};   ///< the tags that stood before, where they are kept
        SaveJobs::Left left = {}; ///< of a restore and of a picture
    };
    using Artwork = std::optional<QByteArray>;

    explicit RowSaver(const Dependencies& dependencies);

    /// Notes what an item brings into its file, and in which order. Every item passes through here when it is asked
    /// for.
    Item ask(Item item);
    /// Brings a row's edits into its file, if they are not there yet; a picture always. The row learns of it at once
    /// where others could be misled, else with learn(). The caller holds the file's path.
    async::Task<Saved> save(Item item, Artwork artwork, std::stop_token stop);
    /// Puts tags back and reads them. The caller holds the file's path.
    async::Task<Saved> restore(Track track, SaveJobs::PutBack what, Wanted wanted, std::stop_token stop);
    /// Rows whose files were written learn of it now.
    void learn();

    /// Whether the file still holds what that write of a picture left in it. \param mark SavedRow::pictureMark
    bool holdsPicture(const TrackID& id, quint64 mark) const { return m_pictureWrites.value(id) == mark; }

Q_SIGNALS:
    /// What a file held in fields that its row did not know, told before the first write. \param known the fields.
    void fileTold(const TrackID& id, const AudioTags& values, TagFields known);
    /// What a row's file holds now of what its row says, written or found there; its row learns of it later.
    void settled(const QUrl& url, TagFields fields, const AudioTags& values);

private:
    /// A row as it is when its file's turn has come.
    struct Turn {
        Track track;
        TagFields edited;
        bool isInList = false;
        Others others = Others::AsPreferred;
    };

    Turn turnOf(const Item& item) const;
    static AudioTags newestTags(const Item& item);
    async::Task<> write(Item item, Artwork artwork, std::shared_ptr<Saved> saved, std::stop_token stop);
    async::Task<SaveJobs::Look> look(Turn turn, std::stop_token stop);
    async::Task<std::optional<TagWrite>> writeOf(Turn turn, SaveJobs::Look look, bool hasPicture, std::stop_token stop);
    SaveJobs::Wanted wantedOf(const Turn& turn) const;
    void tell(const Turn& turn, const SaveJobs::Look& look);
    void tellRewritten(const QUrl& url, const SaveJobs::Rewrite& rewrite);
    void noteWritten(Saved& saved, const TagWrite& write, const Turn& turn, bool hasPicture);

    Dependencies m_dependencies;
    QList<SavedRow> m_learned;               ///< not yet in the list
    QHash<TrackID, quint64> m_pictureWrites; ///< last write that decided about the picture
    quint64 m_pictureWrite = 0;
    std::weak_ptr<Asked> m_asked; ///< lives as long as an item that was noted there
};
