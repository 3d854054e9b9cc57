// What a frame of scrolling costs: a playlist of 100,000 rows with folder headers, of which those scrolled through have
// covers of their own and waveforms on disk. Each frame moves the list as a spinning wheel does and paints it; the
// figures are processor time of the main thread from the movement to the end of the painting, without the display's own
// part. usage: bench_scroll [rows] [frames]

#include "DemoAudio.h"
#include "SliceMeter.h"
#include "WaveformScrubber/cache/EnvelopeFile.h"
#include "WaveformScrubber/cache/EnvelopeFolder.h"
#include "WaveformScrubber/cache/EnvelopeKey.h"
#include "WaveformScrubber/shape/Envelope.h"
#include "app/AppPaths.h"
#include "app/VelmoraApp.h"
#include "core/library/LibraryStore.h"
#include "core/library/workspace/Workspace.h"
#include "core/model/LoadedTrackMetadata.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "ui/sections/SectionView.h"
#include "ui/window/MainWindow.h"

#include <QAbstractItemView>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QScrollBar>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>

namespace {

constexpr double kFrameLimit = 1000.0 / 60; // milliseconds
constexpr int kPixelsPerFrame = 90;         // a fast spin; a row is 52 high
constexpr int kRichRows = 1500;             // rows with all that can be drawn
constexpr int kRowsPerFolder = 50;

double threadMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

QByteArray cover(int number)
{
    QImage image(600, 600, QImage::Format_RGB32);
    QPainter painter(&image);
    for (int i = 0; i < 12; ++i)
        painter.fillRect(i * 50, 0, 50, 600, QColor::fromHsv((number * 37 + i * 23) % 360, 150, 180));
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "JPEG", 85);
    return bytes;
}

std::vector<float> envelope(int number)
{
    std::vector<float> samples(kEnvelopeSampleCount);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>((i * static_cast<size_t>(number + 3)) % 97) / 97;
    return samples;
}

Track richTrack(const QUrl& url, int number)
{
    QDir().mkpath(FileURL::folderPath(url));
    QFile file(url.toLocalFile());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot make the files");
    file.close();
    if (const auto stamp = FileStamp::of(url))
        EnvelopeFile::write(EnvelopeFolder::entryPath(AppPaths::waveformFolder(), envelopeKey(url, *stamp)),
                            envelope(number));
    Track track = Track::unread(url);
    LoadedTrackMetadata metadata;
    metadata.tags = Track::fallbackTags(url);
    metadata.tags.genre = QStringLiteral("Tech House");
    metadata.tags.album = QStringLiteral("Album %1").arg(number % 70);
    metadata.tags.musicalKey = QStringLiteral("%1A").arg(number % 12 + 1);
    metadata.artworkData = ArtworkData::intern(cover(number));
    track.apply(metadata, url, track.metadataVersion());
    return track;
}

QList<Track> makeRows(const QString& folder, int rows)
{
    QList<Track> tracks;
    tracks.reserve(rows);
    for (int i = 0; i < rows; ++i) {
        const QUrl url = FileURL::fromPath(QStringLiteral("%1/Папка %2/Artist %3 - Title %4.mp3")
                                               .arg(folder)
                                               .arg(i / kRowsPerFolder, 5, 10, QLatin1Char('0'))
                                               .arg(i % 97)
                                               .arg(i, 6, 10, QLatin1Char('0')));
        Track track = i < kRichRows ? richTrack(url, i) : Track::unread(url);
        track.setIsInPlaylist(true);
        track.setDuration(200 + i % 100);
        tracks.append(track);
    }
    return tracks;
}

void turn(int milliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    do {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
    } while (std::chrono::steady_clock::now() < end);
}

/// \return whether the frames keep up with the display.
bool spin(QAbstractItemView& list, const char* what, int frames)
{
    std::vector<double> times;
    list.verticalScrollBar()->setValue(0);
    turn(300);
    for (int frame = 0; frame < frames; ++frame) {
        const double begin = threadMilliseconds();
        list.verticalScrollBar()->setValue(frame * kPixelsPerFrame % (kRichRows * 50));
        list.viewport()->repaint();
        QCoreApplication::processEvents();
        times.push_back(threadMilliseconds() - begin);
        turn(8); // the rest of the frame: covers and waveforms come in
    }
    std::ranges::sort(times);
    const size_t late = static_cast<size_t>(
        std::ranges::count_if(times, [](double milliseconds) { return milliseconds > kFrameLimit; }));
    printf("%-24s median %5.2f ms, 99 of 100 up to %5.2f, longest %5.2f, late %zu of %zu   (limit %.1f)%s\n", what,
           times[times.size() / 2], times[times.size() * 99 / 100], times.back(), late, times.size(), kFrameLimit,
           late > 0 ? "   TOO SLOW" : "");
    return late == 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QTemporaryDir home; // nothing of the user's own caches
    qputenv("XDG_CACHE_HOME", QFile::encodeName(home.filePath(QStringLiteral("cache"))));
    SliceMeter application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int rows = std::max(kRichRows, arguments.value(1, QStringLiteral("100000")).toInt());
    const int frames = std::max(10, arguments.value(2, QStringLiteral("600")).toInt());
    auto preferences = std::make_unique<Preferences>(std::make_unique<MemoryPreferenceStore>());
    preferences->defaultsMigrated.set(true);
    VelmoraApp app(std::move(preferences), std::make_unique<DemoAudio>());
    app.open({});
    app.window().resize(1440, 900);
    app.store().workspace().setTracks(makeRows(home.filePath(QStringLiteral("music")), rows));
    turn(1000);
    QAbstractItemView& list = app.window().activeSection().list();
    const bool isFirstGood = spin(list, "rows never seen", frames);
    const bool isSecondGood = spin(list, "rows seen before", frames);
    return isFirstGood && isSecondGood ? 0 : 1;
}
