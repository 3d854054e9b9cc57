#include "core/model/ArtworkData.h"

#include <QHash>
#include <QMutex>

#include <list>

struct ArtworkData::Blob {
    QByteArray contentID;
    QByteArray prefix;
    qsizetype byteCount = 0;
    // Guarded by the pool's mutex.
    QByteArray bytes;
    std::list<Blob*>::iterator place; ///< valid while bytes are held

    ~Blob();
};

namespace {

constexpr qsizetype kPrefixLength = 24;

/// Knows every living blob and which of them hold their bytes, most recently used first.
struct Pool {
    QMutex mutex;
    QHash<QByteArray, std::weak_ptr<ArtworkData::Blob>> blobs;
    std::list<ArtworkData::Blob*> held;
    qsizetype heldBytes = 0;
    qsizetype limit = ArtworkData::kDefaultPoolLimit;

    void hold(ArtworkData::Blob& blob, const QByteArray& bytes)
    {
        blob.bytes = bytes;
        blob.place = held.insert(held.begin(), &blob);
        heldBytes += bytes.size();
        evict();
    }

    void letGo(ArtworkData::Blob& blob)
    {
        if (blob.bytes.isNull())
            return;
        heldBytes -= blob.bytes.size();
        held.erase(blob.place);
        blob.bytes = QByteArray();
    }

    // The newest stays whatever its size: somebody is about to ask for it.
    void evict()
    {
        while (heldBytes > limit && held.size() > 1)
            letGo(*held.back());
    }
};

/// 128 bits at the speed of memory. Every picture of an import passes here, and a cryptographic hash took several times
/// as long as all the rest of reading a file.
QByteArray hashOf(const QByteArray& bytes)
{
    static_assert(sizeof(std::size_t) == 8, "the two halves need 64 bits each");
    const auto size = static_cast<std::size_t>(bytes.size());
    const std::size_t halves[] = {qHashBits(bytes.constData(), size, 0x9E3779B97F4A7C15u),
                                  qHashBits(bytes.constData(), size, 0xC2B2AE3D27D4EB4Fu)};
    return QByteArray(reinterpret_cast<const char*>(halves), sizeof halves);
}

/// Whether a blob holds, or held, these bytes, as far as that can be told.
bool isOf(const ArtworkData::Blob& blob, const QByteArray& bytes)
{
    return blob.byteCount == bytes.size() && bytes.startsWith(blob.prefix) &&
           (blob.bytes.isNull() || blob.bytes == bytes);
}

Pool& pool()
{
    // Never destroyed: handles in static storage may outlive any order of destruction.
    static Pool* const kPool = new Pool;
    return *kPool;
}

} // namespace

ArtworkData::Blob::~Blob()
{
    Pool& p = pool();
    const QMutexLocker lock(&p.mutex);
    p.letGo(*this);
    // A new blob of the same content may already stand under the key.
    const auto entry = p.blobs.constFind(contentID);
    if (entry != p.blobs.constEnd() && entry->expired())
        p.blobs.erase(entry);
}

ArtworkData ArtworkData::intern(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return {};
    QByteArray contentID = hashOf(bytes);
    Pool& p = pool();
    std::shared_ptr<Blob> blob; // outlives the lock: dropping the last handle takes it again
    const QMutexLocker lock(&p.mutex);
    blob = p.blobs.value(contentID).lock();
    for (; blob && !isOf(*blob, bytes); blob = p.blobs.value(contentID).lock())
        contentID += '+'; // another picture with this hash: not met in practice, but never shown for this one
    if (!blob) {
        blob = std::make_shared<Blob>();
        blob->contentID = contentID;
        blob->prefix = bytes.first(std::min(kPrefixLength, bytes.size()));
        blob->byteCount = bytes.size();
        p.blobs.insert(contentID, blob);
    }
    if (blob->bytes.isNull())
        p.hold(*blob, bytes);
    return ArtworkData(blob);
}

qsizetype ArtworkData::byteCount() const
{
    return m_blob ? m_blob->byteCount : 0;
}

QByteArray ArtworkData::prefix() const
{
    return m_blob ? m_blob->prefix : QByteArray();
}

QByteArray ArtworkData::contentID() const
{
    return m_blob ? m_blob->contentID : QByteArray();
}

QByteArray ArtworkData::bytes() const
{
    if (!m_blob)
        return {};
    Pool& p = pool();
    const QMutexLocker lock(&p.mutex);
    if (!m_blob->bytes.isNull())
        p.held.splice(p.held.begin(), p.held, m_blob->place);
    return m_blob->bytes;
}

void ArtworkData::setPoolLimit(qsizetype bytes)
{
    Pool& p = pool();
    const QMutexLocker lock(&p.mutex);
    p.limit = bytes;
    p.evict();
}

qsizetype ArtworkData::pooledByteCount()
{
    Pool& p = pool();
    const QMutexLocker lock(&p.mutex);
    return p.heldBytes;
}
