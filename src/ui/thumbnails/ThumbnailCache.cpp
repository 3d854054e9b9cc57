#include "ui/thumbnails/ThumbnailCache.h"

#include "ui/thumbnails/ThumbnailDecoder.h"

/// The picture's bytes, read again from the file where they have been let go.
std::optional<QByteArray> ThumbnailCache::bytesOf(const Request& request, const ReadArtwork& readArtwork)
{
    QByteArray bytes = request.artwork.bytes();
    if (bytes.isNull() && readArtwork)
        bytes = readArtwork(request.url);
    return bytes.isEmpty() ? std::nullopt : std::optional(bytes);
}

ThumbnailCache::ThumbnailCache(async::Executor& executor, ReadArtwork readArtwork, QObject* parent)
    : QObject(parent)
    , m_executor(executor)
    , m_reduced(executor)
    , m_readArtwork(std::move(readArtwork))
    , m_entries(kLimit)
    , m_tasks(kJobs)
{
}

ThumbnailCache::~ThumbnailCache() = default;

QPixmap ThumbnailCache::thumbnail(const Track& track, const Format& format)
{
    const ArtworkData artwork = track.artworkData();
    if (artwork.isNull())
        return {};
    const int pixels = ThumbnailDecoder::pixels(format.side, format.ratio);
    const QByteArray key =
        artwork.contentID() + '/' + QByteArray::number(pixels) + '/' + QByteArray::number(format.radius);
    if (const Entry* entry = m_entries.object(key))
        return entry->pixmap;
    if (!m_running.contains(key))
        enqueue({key, artwork, track.url(), format});
    return {};
}

void ThumbnailCache::enqueue(Request request)
{
    std::erase_if(m_waiting, [&](const Request& waiting) { return waiting.key == request.key; });
    if (m_waiting.size() >= kMaximumWaiting)
        m_waiting.erase(m_waiting.begin());
    m_waiting.push_back(std::move(request));
    startWaiting();
}

void ThumbnailCache::startWaiting()
{
    while (m_running.size() < kJobs && !m_waiting.empty()) {
        Request request = std::move(m_waiting.back());
        m_waiting.pop_back();
        m_running.insert(request.key);
        m_tasks.add([this, request](std::stop_token stop) { return load(request, stop); });
    }
}

async::Task<> ThumbnailCache::load(Request request, std::stop_token stop)
{
    const int side = ThumbnailDecoder::pixels(request.format.side, request.format.ratio);
    const double radius = request.format.radius * request.format.ratio;
    const ArtworkThumbnailCache::SourceData source = [request, read = m_readArtwork] { return bytesOf(request, read); };
    ThumbnailDecoder::Square square;
    for (const int step : kSteps) {
        if (step < side && step != kSteps.back())
            continue;
        const QByteArray key = request.artwork.contentID() + '/' + QByteArray::number(step);
        const std::optional<QByteArray> reduced = co_await m_reduced.thumbnailData(key, source, step, stop);
        if (!reduced)
            break;
        auto cut = [bytes = *reduced, step, side, radius](const std::stop_token&) {
            return ThumbnailDecoder::square(bytes, step, side, radius);
        };
        square = co_await m_executor.run(async::Priority::UserInitiated, stop, std::move(cut));
        if (!square.wantsLarger)
            break;
    }
    finish(request, square.image);
}

void ThumbnailCache::finish(const Request& request, const QImage& image)
{
    QPixmap pixmap;
    if (!image.isNull()) {
        pixmap = QPixmap::fromImage(image);
        pixmap.setDevicePixelRatio(request.format.ratio);
    }
    m_running.remove(request.key);
    m_entries.insert(request.key, new Entry{pixmap}, std::max<qsizetype>(1, image.sizeInBytes()));
    startWaiting();
    emit ready();
}
