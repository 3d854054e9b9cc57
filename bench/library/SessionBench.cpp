// What a large workspace costs to save and to bring back, and the longest slice of the main thread on the way.
// usage: bench_session [rows]

#include "Measure.h"
#include "async/MainQueue.h"
#include "core/library/LibraryServices.h"
#include "core/library/LibraryStore.h"
#include "core/library/order/Order.h"
#include "core/library/session/Session.h"
#include "core/library/session/SessionCoding.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "platform/files/FileCalls.h"
#include "platform/json/JsonReader.h"
#include "support/FakeTagFiles.h"
#include "support/ManualClock.h"
#include "support/ManualExecutor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>

namespace {

constexpr int kRounds = 5;

using Measure::median;
using Measure::secondsOf;

Track row(const QString& root, int number)
{
    AudioTags tags;
    tags.title = QStringLiteral("Название трека (Extended Mix) %1").arg(number);
    tags.artist = QStringLiteral("Artist %1").arg(number % 997);
    tags.album = QStringLiteral("Сборник %1").arg(number % 211);
    tags.genre = QStringLiteral("Melodic House & Techno");
    tags.year = QStringLiteral("2024");
    tags.bpm = QString::number(118 + number % 20);
    Track track = Track::restored(
        freshID(),
        FileURL::fromPath(QStringLiteral("%1/Папка %2/%3 - Название.mp3").arg(root).arg(number % 300).arg(number)),
        tags);
    track.setIsInPlaylist(true);
    track.setIsInCoverWorkspace(number % 10 == 0);
    track.setIsFavorite(number % 10 == 0);
    return track;
}

void makeFile(const Track& track)
{
    QDir().mkpath(FileURL::folderPath(track.url()));
    QFile file(track.url().toLocalFile());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot make the files");
}

struct Cost {
    double wall = 0; ///< seconds
    double processor = 0;
};

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

Cost costOf(const std::function<void()>& work)
{
    const double before = processorSeconds();
    const double wall = secondsOf(work);
    return {wall, processorSeconds() - before};
}

Cost middle(const std::vector<Cost>& costs)
{
    std::vector<double> walls;
    std::vector<double> processor;
    for (const Cost& cost : costs) {
        walls.push_back(cost.wall);
        processor.push_back(cost.processor);
    }
    return {median(walls), median(processor)};
}

Cost measured(const std::function<void()>& work)
{
    std::vector<Cost> costs;
    work();
    for (int round = 0; round < kRounds; ++round)
        costs.push_back(costOf(work));
    return middle(costs);
}

void say(const char* what, const Cost& cost)
{
    printf("%-44s %8.1f ms, processor %8.1f ms\n", what, cost.wall * 1e3, cost.processor * 1e3);
}

void measureCoding(const SessionRecord& record)
{
    const QByteArray bytes = SessionCoding::encode(record);
    printf("rows %lld, %.1f MB, medians of %d rounds\n", static_cast<long long>(record.tracks.size()),
           double(bytes.size()) / 1e6, kRounds);
    say("encode", measured([&] { SessionCoding::encode(record); }));
    say("check that it is JSON", measured([&] { JsonReader::isValid(bytes); }));
    say("count", measured([&] { SessionCoding::counts(bytes); }));
    say("decode", measured([&] { SessionCoding::decode(bytes); }));
}

void measureStorage(WorkspaceSessionStorage& storage, const SessionRecord& record)
{
    qint64 revision = 0;
    const auto save = [&] { storage.write(SessionCoding::encode(record), ++revision); };
    say("save, all of it beside the main thread", measured(save));
    SystemFileCalls::setSyncing(false);
    say("the same without waiting for the disk", measured(save));
    SystemFileCalls::setSyncing(true);
    say("load: read, decode, ask for files, order", measured([&] { WorkspaceLoad::load(storage, {}); }));
    SessionRecord read = record;
    say("  of it: ask for the files", measured([&] { WorkspaceLoad::dropMissing(read, {}); }));
    TrackList list;
    list.assign(record.tracks);
    say("  of it: the playlist's order", measured([&] { PlaylistBase().append(list, 0); }));
}

/// The main thread's part of a start.
void measureRestore(WorkspaceSessionStorage& storage)
{
    ManualClock clock;
    ManualExecutor executor;
    Preferences preferences(std::make_unique<MemoryPreferenceStore>());
    Notifications notifications;
    FakeTagFiles files;
    std::vector<Cost> applied;
    std::vector<Cost> saved;
    for (int round = 0; round < kRounds; ++round) {
        const LibraryServices services{.clock = clock,
                                       .executor = executor,
                                       .preferences = preferences,
                                       .notifications = notifications,
                                       .tagFiles = files,
                                       .sessionStorage = storage};
        LibraryStore store(services);
        auto result = WorkspaceLoad::load(storage, {});
        store.workspace().setRestoringWorkspaceSession(true);
        applied.push_back(costOf([&] { store.session().applyWorkspaceSession(std::move(result)); }));
        saved.push_back(costOf([&] { store.session().makeWorkspaceSession(); }));
        if (store.order().playlistTracks().size() != store.workspace().tracks().size())
            qFatal("the order is not the list's");
        executor.dropAll();
    }
    async::MainQueue::drain();
    say("main thread: put in place", middle(applied));
    say("main thread: a save's share", middle(saved));
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int rows = argc > 1 ? atoi(argv[1]) : 100'000;
    const QTemporaryDir root;
    SessionRecord record;
    record.activeTab = rawValue(LibraryTab::Playlist);
    for (int number = 0; number < rows; ++number) {
        record.tracks.append(row(root.path(), number));
        makeFile(record.tracks.last());
    }
    WorkspaceSessionStorage storage(root.filePath(QStringLiteral("data")), {.skipInTests = false});
    measureCoding(record);
    measureStorage(storage, record);
    measureRestore(storage);
    return 0;
}
