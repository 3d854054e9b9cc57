#include "ui/thumbnails/ArtworkThumbnailCache.h"

#include "ui/thumbnails/ThumbnailDecoder.h"

#include <QHash>

/// What the lane's jobs work on.
class ArtworkThumbnailCache::Entries {
public:
    explicit Entries(Make make)
        : m_make(std::move(make))
    {
    }

    std::optional<QByteArray> thumbnailData(const QByteArray& key, const SourceData& sourceData, int maximumPixelSize);

private:
    struct Entry {
        QByteArray data;
        quint64 lastAccess = 0; ///< value of m_accessCounter
    };
    void evictIfNeeded();

    Make m_make;
    QHash<QByteArray, Entry> m_entries;
    qsizetype m_totalBytes = 0;
    quint64 m_accessCounter = 0; ///< counts lookups
};

std::optional<QByteArray>
ArtworkThumbnailCache::Entries::thumbnailData(const QByteArray& key, const SourceData& sourceData, int maximumPixelSize)
{
    ++m_accessCounter;
    if (const auto held = m_entries.find(key); held != m_entries.end()) {
        held->lastAccess = m_accessCounter;
        return held->data;
    }
    const std::optional<QByteArray> source = sourceData ? sourceData() : std::nullopt;
    if (!source)
        return std::nullopt;
    const std::optional<QByteArray> thumbnail = m_make(*source, maximumPixelSize);
    if (!thumbnail)
        return std::nullopt;
    m_entries.insert(key, {*thumbnail, m_accessCounter});
    m_totalBytes += thumbnail->size();
    evictIfNeeded();
    return thumbnail;
}

void ArtworkThumbnailCache::Entries::evictIfNeeded()
{
    const auto isOlder = [](const Entry& a, const Entry& b) { return a.lastAccess < b.lastAccess; };
    while (!m_entries.isEmpty() && (m_entries.size() > kMaximumEntryCount || m_totalBytes > kMaximumTotalBytes)) {
        const auto oldest = std::min_element(m_entries.begin(), m_entries.end(), isOlder);
        m_totalBytes -= oldest->data.size();
        m_entries.erase(oldest);
    }
}

ArtworkThumbnailCache::ArtworkThumbnailCache(async::Executor& executor)
    : ArtworkThumbnailCache(executor, &ThumbnailDecoder::jpeg)
{
}

ArtworkThumbnailCache::ArtworkThumbnailCache(async::Executor& executor, Make make)
    : m_entries(std::make_shared<Entries>(std::move(make)))
    , m_lane(executor, async::Priority::UserInitiated)
{
}

ArtworkThumbnailCache::~ArtworkThumbnailCache() = default;

async::Task<std::optional<QByteArray>> ArtworkThumbnailCache::thumbnailData(QByteArray key, SourceData sourceData,
                                                                            int maximumPixelSize, std::stop_token stop)
{
    auto job = [entries = m_entries, key, sourceData, maximumPixelSize](const std::stop_token&) {
        return entries->thumbnailData(key, sourceData, maximumPixelSize);
    };
    co_return co_await m_lane.run(std::move(stop), std::move(job));
}
