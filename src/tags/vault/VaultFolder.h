#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <mutex>
#include <optional>

/// The folder of the tag vault: a folder for each path, a file for each sound that was kept under it, and no more bytes
/// in all than the limit. Other instances of the program may use it at the same time. Thread: any; blocks.
class VaultFolder {
public:
    /// Looks at no disk yet. \param folder absolute; made with the first entry. \param limit bytes of all entries.
    VaultFolder(const QString& folder, qint64 limit);

    /// What an entry belongs to.
    struct Key {
        QString path; ///< standardized
        QByteArray soundDigest;
    };

    /// Where the entry stands, or would stand: the digest of its path as the folder's name, that of its sound as the
    /// file's.
    QString fileFor(const Key& key) const;
    /// Whether there is an entry of the path, whatever its sound. Cheap.
    bool holds(const QString& path) const;
    /// Puts an entry in its place, durable on return, and lets the oldest others go as far as the limit asks for it.
    /// Throws FileError with the path, fileWriteOutOfSpace for an entry that alone passes the limit; there is no new
    /// entry then.
    void put(const Key& key, QByteArrayView bytes);

    /// What is there of an entry.
    struct Found {
        QByteArray bytes;
        qint64 size = 0; ///< of the whole
    };
    /// At most \p count bytes of an entry; nothing without one. FileError where it cannot be read.
    std::optional<Found> read(const Key& key, qint64 count) const;

private:
    struct Known {
        qint64 size = 0;
        qint64 time = 0; ///< of keeping, nanoseconds since 1970
    };

    void makeFolder(const QString& path) const;
    QByteArray folderFor(const QString& path) const;
    bool moveInto(const QByteArray& folder, const QByteArray& temporary, const QByteArray& target) const;
    bool removeEntry(const QByteArray& file) const;
    void writeBeside(const QByteArray& temporary, QByteArrayView bytes, const QString& path) const;
    void syncFolders(const QByteArray& inner, const QString& path) const;
    void readIndex();
    void makeRoom(const QByteArray& made);

    const QString m_folder;
    const qint64 m_limit;
    std::mutex m_mutex;                  ///< of the members below
    std::map<QByteArray, Known> m_index; ///< by the entries' files
    bool m_isIndexed = false;
};
