// What thumbnails cost the window: 1,000 distinct covers of 1,500 pixels, asked for as a scrolled list asks, made on
// the program's own workers. The longest slice of the main thread, and the time against decoding the same pictures
// plainly on one thread. usage: bench_thumbnails [covers]

#include "Measure.h"
#include "SliceMeter.h"
#include "async/ThreadExecutor.h"
#include "core/model/LoadedTrackMetadata.h"
#include "platform/FileURL.h"
#include "ui/thumbnails/ThumbnailCache.h"

#include <QBuffer>
#include <QEventLoop>
#include <QPainter>
#include <QRadialGradient>

#include <cstdio>
#include <random>

namespace {

constexpr int kSide = 1500;
constexpr int kPictures = 12;      // that differ in what they show; the others differ by a comment
constexpr int kScreen = 24;        // covers in view
constexpr double kSliceLimit = 16; // milliseconds

/// A picture with areas, edges and grain, as covers have them.
QByteArray drawn(unsigned seed)
{
    std::mt19937 random(seed);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    QImage image(kSide, kSide, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(below(360), 120, 140));
    QPainter painter(&image);
    for (int i = 0; i < 60; ++i) {
        QRadialGradient gradient(below(kSide), below(kSide), 100 + below(500));
        gradient.setColorAt(0, QColor::fromHsv(below(360), 160, 200, 160));
        gradient.setColorAt(1, Qt::transparent);
        painter.fillRect(image.rect(), gradient);
    }
    for (int i = 0; i < 30'000; ++i)
        painter.fillRect(below(kSide), below(kSide), 3, 3, QColor::fromHsv(below(360), 100, 200, 60));
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "JPEG", 88);
    return bytes;
}

/// The same picture in other bytes: a comment of its own behind the file's first marker.
QByteArray numbered(const QByteArray& jpeg, int number)
{
    const QByteArray text = QByteArray::number(number).rightJustified(8, '0');
    QByteArray result = jpeg;
    return result.insert(2, QByteArray("\xFF\xFE\x00\x0A", 4) + text);
}

QList<Track> makeTracks(const QList<QByteArray>& pictures, int count)
{
    QList<Track> tracks;
    for (int i = 0; i < count; ++i) {
        Track track = Track::unread(FileURL::fromPath(QStringLiteral("/music/%1.mp3").arg(i)));
        LoadedTrackMetadata metadata;
        metadata.artworkData = ArtworkData::intern(numbered(pictures[i % kPictures], i));
        track.apply(metadata, track.url(), track.metadataVersion());
        tracks.append(track);
    }
    return tracks;
}

/// Asks for a screen of covers at a time until all have been there. \return seconds.
double showAll(async::Executor& executor, const ThumbnailCache::ReadArtwork& read, const QList<Track>& tracks)
{
    ThumbnailCache cache(executor, read);
    QEventLoop loop;
    int first = 0;
    const auto ask = [&] {
        const ThumbnailCache::Format cell{180, 10, 2};
        while (first < tracks.size() && !cache.thumbnail(tracks[first], cell).isNull())
            ++first;
        for (int i = first; i < std::min<int>(first + kScreen, tracks.size()); ++i)
            cache.thumbnail(tracks[i], cell);
        if (first == tracks.size())
            loop.quit();
    };
    QObject::connect(&cache, &ThumbnailCache::ready, &loop, ask);
    return Measure::secondsOf([&] {
        ask();
        loop.exec();
    });
}

} // namespace

int main(int argc, char** argv)
{
    SliceMeter meter(argc, argv);
    const int count = std::max(1, QCoreApplication::arguments().value(1, QStringLiteral("1000")).toInt());
    QList<QByteArray> pictures;
    for (unsigned seed = 1; seed <= kPictures; ++seed)
        pictures.append(drawn(seed));
    const QList<Track> tracks = makeTracks(pictures, count);
    // What the pool of bytes let go is "read" again, as from a file in the cache of the system.
    const auto read = [pictures](const QUrl& url) {
        const int number = url.fileName().section(u'.', 0, 0).toInt();
        return numbered(pictures[number % kPictures], number);
    };
    const double plain = Measure::secondsOf([&] {
        for (int i = 0; i < count; ++i)
            QImage::fromData(pictures[i % kPictures]);
    });
    async::ThreadExecutor executor;
    meter.reset();
    const double shown = showAll(executor, read, tracks);
    printf("%d covers of %d pixels, %lld KB each: %.2f s against %.2f s of plain decoding: %.2f\n", count, kSide,
           static_cast<long long>(pictures.first().size() / 1024), shown, plain, shown / plain);
    printf("longest slice of the main thread %.1f ms (%.1f ms of processor time) of %d events (%s)   (limit %.0f)%s\n",
           meter.longestMilliseconds(), meter.longestCPUMilliseconds(), meter.events(),
           qPrintable(meter.longestEvent()), kSliceLimit,
           meter.longestMilliseconds() > kSliceLimit ? "   TOO SLOW" : "");
    return meter.longestMilliseconds() > kSliceLimit ? 1 : 0;
}
