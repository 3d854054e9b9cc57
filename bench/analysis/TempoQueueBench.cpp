// Tempos of many files through the program's own queue: with its two workers against one, which is what scarce
// resources ask for. Other names for one file of four minutes of MP3 stand for the tracks. usage: bench_tempo_queue
// [tracks]

#include "FFmpegRuns.h"
#include "Measure.h"
#include "app/LibraryAnalyzers.h"
#include "async/MainQueue.h"
#include "async/SystemClock.h"
#include "async/ThreadExecutor.h"
#include "core/library/LibraryServices.h"
#include "core/library/LibraryStore.h"
#include "core/library/tagwriting/TagFiles.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "platform/process/FFmpegExecutable.h"

#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr double kLeastGain = 1.7;

/// Nothing is written here.
class NoTagFiles final : public TagFiles {
public:
    void write(const TagWrite&) override {}
    void assignArtwork(const QByteArray&, const TagWrite&) override {}
    void clean(CleanerFields, const std::optional<QString>&, const std::optional<QString>&, const QUrl&) override {}
    TagInventory inventory(const QUrl&) override { return {}; }
    bool holdsOriginal(const QUrl&) const override { return false; }
    void restoreOriginal(const QUrl&) override {}
    QByteArray present(const QUrl&) override { return {}; }
    void putBack(const QByteArray&, const QUrl&) override {}
};

/// Tells of little power as soon as there is work.
class ScarcePower final : public PowerWatch {
public:
    void setWatching(bool isWatching) override
    {
        if (isWatching)
            emit constrainedChanged(true);
    }
};

QList<Track> makeTracks(const QTemporaryDir& folder, int count)
{
    const QString first = folder.filePath(QStringLiteral("0.mp3"));
    FFmpegRuns::makeFile(FFmpegExecutable::url().value_or(QUrl()).toLocalFile(), first, 240,
                         FFmpegRuns::words("-b:a 320k"));
    QList<Track> tracks;
    for (int number = 0; number < count; ++number) {
        const QString path = folder.filePath(QStringLiteral("%1.mp3").arg(number));
        if (number > 0)
            QFile::link(first, path);
        Track track = Track::unread(FileURL::fromPath(path));
        track.setIsInPlaylist(true);
        tracks.append(track);
    }
    return tracks;
}

/// Seconds until every track has its tempo.
double analyzeAll(const QList<Track>& tracks, bool areResourcesConstrained)
{
    async::SystemClock clock;
    async::ThreadExecutor executor;
    Preferences preferences(std::make_unique<MemoryPreferenceStore>());
    Notifications notifications;
    NoTagFiles files;
    LibraryAnalyser analyser;
    ScarcePower power;
    const LibraryServices services{.clock = clock,
                                   .executor = executor,
                                   .preferences = preferences,
                                   .notifications = notifications,
                                   .tagFiles = files,
                                   .analyser = analyser,
                                   .power = areResourcesConstrained ? power : PowerWatch::none()};
    LibraryStore store(services);
    store.workspace().setTracks(tracks);
    QSet<TrackID> ids;
    for (const Track& track : tracks)
        ids.insert(track.id());
    QEventLoop loop;
    QObject::connect(&store.board(), &WorkBoard::changed, &loop, [&] {
        if (!store.tempo().isQueueing())
            loop.quit();
    });
    return Measure::secondsOf([&] {
        store.tempo().detectBPM(ids);
        loop.exec();
    });
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const int count = std::max(4, QCoreApplication::arguments().value(1, QStringLiteral("100")).toInt());
    const QTemporaryDir folder;
    const QList<Track> tracks = makeTracks(folder, count);
    analyzeAll(tracks.first(4), false); // the file comes into the system's cache
    const double one = analyzeAll(tracks, true);
    const double two = analyzeAll(tracks, false);
    async::MainQueue::drain();
    std::printf("%d tracks: one worker %.1f s, two %.1f s: %.2f times the throughput (bound %.1f)%s\n", count, one, two,
                one / two, kLeastGain, one / two >= kLeastGain ? "" : " MISSED");
    return one / two >= kLeastGain ? 0 : 1;
}
