#pragma once

#include "core/library/session/SessionCoding.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <ctime>
#include <mutex>
#include <optional>
#include <stdexcept>

/// Why a session was not stored.
class SessionStorageError : public std::runtime_error {
public:
    /// InvalidValue: the bytes are no session; NotWritten: the disk refused them.
    enum class Case { InvalidValue, NotWritten };

    /// \param code errno of the call that failed, or 0.
    SessionStorageError(Case which, int code);
    Case which() const { return m_which; }
    /// The errno; 0 where no call failed.
    int code() const { return m_code; }

private:
    Case m_which;
    int m_code;
};

/// The session file with its checkpoints: copies that are made before a write which loses something, and now and then.
/// Owned by the application. Does nothing and finds nothing in test processes unless told otherwise. One process at a
/// time uses a folder. Thread: any; blocks.
class WorkspaceSessionStorage {
public:
    /// For tests and for a program that shall keep nothing; the defaults are the program's.
    struct Options {
        bool skipInTests = true;
        double checkpointInterval = 900; ///< seconds between two copies that nothing else asks for
        int maximumCheckpoints = 12;     ///< of each kind that stay, but manual ones
        bool isOff = false;              ///< nothing is kept at all
    };
    /// Why a copy is kept.
    enum class Kind {
        Automatic, ///< before a write that loses something, and now and then; twelve stay
        Manual,    ///< never deleted
        LeftOut,   ///< names files that a start did not find; twelve stay
    };
    /// A copy of an earlier session.
    struct Checkpoint {
        QString path;
        timespec date{}; ///< of its file; the distant past if it cannot be read
        Kind kind = Kind::Automatic;
    };

    explicit WorkspaceSessionStorage(QString folder) // a default argument would need Options complete
        : WorkspaceSessionStorage(std::move(folder), Options())
    {
    }
    /// \param folder absolute; made with the first write
    WorkspaceSessionStorage(QString folder, const Options& options);

    /// The one that keeps nothing.
    static WorkspaceSessionStorage& none();
    /// Whether the process runs tests, in which the user's files are left alone.
    static bool isTestProcess();
    /// Whether nothing here has an effect.
    bool isOff() const;

    /// Paths in the folder; none of them need exist.
    QString sessionFile() const;
    QString pendingFile() const;
    QString backupFolder() const;

    /// Stores an encoded session, durable on return. A revision that is not above the last one stored changes nothing.
    /// Throws SessionStorageError; the old file stands then. Before a write that holds fewer tracks or favourites than
    /// the file, or when the newest checkpoint is old enough, the old file becomes a checkpoint.
    void write(const QByteArray& data, qint64 revision);

    /// The bytes of the session file; nothing if it cannot be read.
    std::optional<QByteArray> readSession();
    /// The bytes of a session that was put there to be restored; nothing if there is none or it cannot be read.
    std::optional<QByteArray> readPendingRestore();
    /// Puts a session there to be restored at the next start. Throws SessionStorageError.
    void writePendingRestore(const QByteArray& data);
    /// Deletes the session that was put there to be restored; nothing happens without one.
    void discardPendingRestore();
    /// Lets the next successful write delete the pending file.
    void clearPendingAfterWrite();

    /// All checkpoints, newest first.
    QList<Checkpoint> archives();
    /// The automatic ones among them.
    QList<Checkpoint> automaticArchives();
    /// The bytes of a checkpoint of the list; nothing for any other path or if it cannot be read.
    std::optional<QByteArray> readCheckpoint(const QString& path);
    /// Copies a session that is about to lose something. A write makes no further copy of the bytes of an automatic
    /// one; another one is not made if the newest of its kind holds the same. Throws SessionStorageError.
    void createCheckpoint(const QByteArray& data, Kind kind);

private:
    using Counts = SessionCoding::Counts;

    /// A file's bytes as of a moment: what tells whether the session file still is the one that was written last.
    struct Stamp {
        quint64 inode = 0;
        qint64 size = 0;
        qint64 seconds = 0;
        quint32 nanoseconds = 0;
        Counts counts;
    };

    void createCheckpointLocked(const QByteArray& data, Kind kind);
    QList<Checkpoint> listLocked() const;
    QList<Checkpoint> listLocked(Kind kind) const;
    void keepOldFileLocked(const std::optional<Counts>& fresh);
    std::optional<Counts> knownCounts() const;
    bool isCheckpointDueLocked() const;
    void noteWrittenLocked(const std::optional<Counts>& counts);
    void pruneLocked(Kind kind) const;
    void makeFolderLocked(const QString& path) const;

    const QString m_folder;
    const Options m_options;
    std::mutex m_lock; ///< guards what follows and all file access
    qint64 m_latestWrittenRevision = -1;
    bool m_clearPendingAfterWrite = false;
    std::optional<Stamp> m_lastWritten;
    QByteArray m_copied; ///< digest of the automatic copy that was asked for last
};
