#pragma once

#include <QByteArray>

#include <memory>

/// The bytes of a picture as they stand in a file. A cheap handle: equal bytes are held once in the whole program, and
/// bytes that have not been asked for lately may be let go once the pool is full; what identifies them stays.
/// Thread: any.
class ArtworkData {
public:
    ArtworkData() = default; ///< null: no picture

    /// The handle of these bytes, shared with every other handle of equal bytes. Empty bytes give null.
    static ArtworkData intern(const QByteArray& bytes);

    bool isNull() const { return !m_blob; }
    /// Number of bytes; 0 for null.
    qsizetype byteCount() const;
    /// The first 24 bytes, or all if there are fewer; always at hand.
    QByteArray prefix() const;
    /// Hash of the bytes, the same within one run of the program: the key of caches in memory that do not depend on the
    /// file. Empty for null.
    QByteArray contentID() const;
    /// The bytes; null if the pool let them go (the file has to be read again) or if there is no picture. Counts as
    /// use.
    QByteArray bytes() const;

    /// Same content. Compares handles, so it costs nothing.
    bool operator==(const ArtworkData& other) const { return m_blob == other.m_blob; }

    /// Limit of the bytes held by the pool, least recently used going first. Chosen: 64 MiB holds the covers of some
    /// hundred albums. Bytes on hand stay on hand until another picture needs the room.
    static void setPoolLimit(qsizetype bytes);
    /// In bytes; until setPoolLimit() is called.
    static constexpr qsizetype kDefaultPoolLimit = 64 * 1024 * 1024;
    /// Bytes held at this moment.
    static qsizetype pooledByteCount();

    struct Blob;

private:
    explicit ArtworkData(std::shared_ptr<Blob> blob)
        : m_blob(std::move(blob))
    {
    }
    std::shared_ptr<Blob> m_blob;
};
