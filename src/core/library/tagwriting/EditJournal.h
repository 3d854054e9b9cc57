#pragma once

#include "core/model/TagField.h"
#include "platform/files/FileStamp.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QUrl>

#include <mutex>
#include <optional>

/// Edits of one file that are not in it. No fields: it holds all that was edited.
struct KeptEdit {
    QUrl url;
    /// Which tags were edited.
    TagFields fields;
    AudioTags tags; ///< of the fields
    /// The file when the edit was noted; nothing where it is not known.
    std::optional<FileStamp> stamp = std::nullopt;
};

/// The edits that are not in their files yet, in a file of their own, so that neither a log-out nor a crash loses them:
/// "unwritten-edits-v1.jsonl", whose form stands in docs/formats/unwritten-edits.md. Owned by the application, outlives
/// the executor. One process at a time uses a folder. A file that is there and cannot be read is never written over: it
/// goes aside under a name with the date before another takes its place. Thread: any; blocks.
class EditJournal {
public:
    static constexpr qint64 kMaximumBytes = 256 * 1024 * 1024; ///< chosen: edits of a million files

    /// \param folder made with the first edit. \param maximumBytes how large the file gets: a note that has no room
    /// does not come on disk, with EFBIG.
    explicit EditJournal(const QString& folder, qint64 maximumBytes = kMaximumBytes);

    /// What is kept, the edit made first in front.
    QList<KeptEdit> read();
    /// Notes what became of files, durable on return. What is said of a file takes the place of all that was said
    /// before. A revision that is not above the last one changes nothing. \return whether it is on disk; a later call
    /// tries again.
    bool note(const QList<KeptEdit>& edits, quint64 revision);
    /// errno of the last note() that did not come on disk; 0 after one that did.
    int error();

private:
    int readLocked();
    int putAside();
    void takeLine(QByteArrayView line);
    bool appendLocked(const QByteArray& lines);
    int rewriteLocked();

    const qint64 m_maximumBytes;
    const QString m_folder;
    const QByteArray m_path;
    std::mutex m_lock;
    bool m_isRead = false;
    int m_error = 0;           ///< of the last note; 0 when the file holds it
    QList<KeptEdit> m_waiting; ///< noted while what is in the file is not known
    qint64 m_size = 0;         ///< bytes of the file that count
    qint64 m_liveBytes = 0;    ///< of them those of edits that are still kept
    quint64 m_revision = 0;
    quint64 m_order = 0;
    struct Line {
        quint64 order = 0;
        QByteArray bytes;
    };
    QHash<QString, Line> m_lines; ///< by path
};
