// The longest slice of work on the main thread while 10,000 files arrive and while a list of 100,000 is worked with,
// and the CPU time from the start to the first painted window. usage: bench_window arrive FOLDER | bench_window large
// [rows] | bench_window restore [rows] | bench_window start

#include "DemoAudio.h"
#include "SliceMeter.h"
#include "app/ContentView.h"
#include "app/VelmoraApp.h"
#include "core/library/LibraryStore.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/imports/Imports.h"
#include "core/library/order/Order.h"
#include "core/library/session/SessionCoding.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "ui/sections/SectionView.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/window/MainWindow.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>

namespace {

constexpr double kSliceLimit = 16; // milliseconds
// What an operation on all rows may take where it cannot be cut into slices, in plain passes over them:
// docs/performance.md.
constexpr double kRowPasses = 1;
constexpr double kSortPasses = 3;
constexpr double kRemovalPasses = 5;

double processSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

qint64 residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray status = file.readAll();
    const qsizetype line = status.indexOf("VmRSS:");
    return status.mid(line + 6, status.indexOf("kB", line) - line - 6).trimmed().toLongLong() / 1024;
}

std::unique_ptr<VelmoraApp> makeApp(const QList<QUrl>& files)
{
    auto app = std::make_unique<VelmoraApp>(std::make_unique<Preferences>(std::make_unique<MemoryPreferenceStore>()),
                                            std::make_unique<DemoAudio>());
    app->open(files);
    return app;
}

void turn(double seconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    do {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    } while (std::chrono::steady_clock::now() < end);
}

void report(const SliceMeter& meter, const char* what)
{
    printf("%-32s longest slice %6.1f ms of %d events (%s)\n", what, meter.longestMilliseconds(), meter.events(),
           qPrintable(meter.longestEvent()));
}

/// The work of one step counts as a slice of its own, with the repaint that follows measured as events.
/// \return processor time of the step, in milliseconds.
double step(SliceMeter& meter, const char* what, const std::function<void()>& work)
{
    meter.reset();
    const auto begin = std::chrono::steady_clock::now();
    const double before = SliceMeter::threadMilliseconds();
    work();
    const double processor = SliceMeter::threadMilliseconds() - before;
    const double took = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    turn(0.4);
    printf("%-24s call %6.1f ms (processor %5.1f), then at the longest %6.1f ms (%5.1f): %s\n", what, took, processor,
           meter.longestMilliseconds(), meter.longestCPUMilliseconds(), qPrintable(meter.longestEvent()));
    return processor;
}

int arrive(SliceMeter& meter, const QString& folder)
{
    const std::unique_ptr<VelmoraApp> app = makeApp({});
    turn(0.5);
    meter.reset();
    const auto begin = std::chrono::steady_clock::now();
    app->contentView().receiveDroppedTracks({FileURL::fromPath(folder)}, LibraryTab::Playlist);
    auto* list = &app->window().activeSection().list();
    int ticks = 0;
    do {
        turn(0.05);
        if (++ticks % 4 == 0 && list) // the list is scrolled during all of it
            list->verticalScrollBar()->setValue(ticks * 60 % std::max(1, list->verticalScrollBar()->maximum()));
    } while (ticks < 10 || app->store().imports().metadataLoadOperationCount() > 0);
    turn(1);
    printf("%d files in %.1f s\n", app->store().workspace().tracks().size(),
           std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    report(meter, "while they arrive");
    return 0;
}

/// The least that an operation on all rows can do, whoever does it: each row is found by its id, in the order in which
/// a selection holds them, and each copied into the list that takes the old one's place. In milliseconds.
double plainPass(const QList<Track>& rows)
{
    QSet<TrackID> selection;
    for (const Track& row : rows)
        selection.insert(row.id());
    double best = std::numeric_limits<double>::max();
    for (int round = 0; round < 5; ++round) {
        const double before = SliceMeter::threadMilliseconds();
        QHash<TrackID, int> places;
        for (const Track& row : rows)
            places.insert(row.id(), static_cast<int>(places.size()));
        QList<Track> copies;
        for (const TrackID& id : std::as_const(selection))
            copies.append(rows[places.value(id)]);
        best = std::min(best, SliceMeter::threadMilliseconds() - before);
    }
    return best;
}

/// What is done to very many rows at once, on the way that menus and keys take. \return whether it is in bounds.
bool largeSelection(SliceMeter& meter, VelmoraApp& app)
{
    SectionView& playlist = app.window().activeSection();
    CommandCenter& commands = app.contentView().commands();
    const auto sort = [&](TrackSortField field) { app.contentView().setTrackSortField(field, LibraryTab::Playlist); };
    const auto selectEveryOther = [&] {
        QSet<TrackID> ids;
        const QList<Track>& shown = playlist.model().rows();
        for (qsizetype row = 0; row < shown.size(); row += 2)
            ids.insert(shown[row].id());
        app.contentView().select(ids, std::nullopt);
    };
    const auto selectSecondHalf = [&] {
        QSet<TrackID> ids;
        const QList<Track>& shown = playlist.model().rows();
        for (qsizetype row = shown.size() / 2; row < shown.size(); ++row)
            ids.insert(shown[row].id());
        app.contentView().select(ids, shown.last().id());
    };
    const auto give = [&](CommandID id, int number = 0) {
        commands.perform(id, {.ids = playlist.selectedIDs(), .number = number});
    };
    const double plain = plainPass(playlist.model().rows());
    bool isGood = true;
    const auto bounded = [&](const char* what, double passes, const std::function<void()>& work) {
        const double took = step(meter, what, work);
        isGood = isGood && took <= std::max(kSliceLimit, passes * plain);
        printf("    %.1f plain passes   (limit %.0f)\n", took / plain, passes);
    };
    printf("a plain pass takes %.1f ms\n", plain);
    step(meter, "select one half", selectSecondHalf);
    bounded("sort by name", kSortPasses, [&] { sort(TrackSortField::Name); });
    bounded("turn the order", kSortPasses,
            [&] { app.contentView().setTrackSortDirection(TrackSortDirection::Ascending, LibraryTab::Playlist); });
    bounded("sort by tempo", kSortPasses, [&] { sort(TrackSortField::BPM); });
    step(meter, "select all", [&] { playlist.selectAll(); });
    bounded("set the tempo of all", kRowPasses, [&] { give(CommandID::SetTempo, 100); });
    bounded("double it", kRowPasses, [&] { give(CommandID::DoubleTempo); });
    bounded("undo", kRowPasses, [&] { app.store().history().undo(); });
    bounded("back to the base order", kSortPasses, [&] { sort(TrackSortField::Original); });
    step(meter, "select one half", selectSecondHalf);
    bounded("remove one half", kRemovalPasses, [&] { give(CommandID::Remove); });
    step(meter, "undo", [&] { app.store().history().undo(); });
    step(meter, "select every other", selectEveryOther);
    bounded("remove every other", kRemovalPasses, [&] { give(CommandID::Remove); });
    step(meter, "undo", [&] { app.store().history().undo(); });
    return isGood;
}

int large(SliceMeter& meter, int rows)
{
    const std::unique_ptr<VelmoraApp> app = makeApp({});
    LibraryStore& library = app->store();
    QList<Track> tracks;
    tracks.reserve(rows);
    for (int i = 0; i < rows; ++i) {
        Track track = Track::unread(FileURL::fromPath(QStringLiteral("/music/folder %1/Artist %2 - Title %3.mp3")
                                                          .arg(i / 50, 5, 10, QLatin1Char('0'))
                                                          .arg(i % 97)
                                                          .arg(i, 6, 10, QLatin1Char('0'))));
        track.setIsInPlaylist(true);
        track.setDuration(200 + i % 100);
        tracks.append(track);
    }
    step(meter, "fill", [&] { library.workspace().setTracks(tracks); });
    const QList<Track> shown = library.order().playlistTracks();
    const TrackID middle = shown[rows / 2].id();
    for (int round = 0; round < 2; ++round) {
        step(meter, "select one", [&] { app->contentView().select({middle}, middle); });
        step(meter, "toggle a favourite",
             [&] { app->contentView().commands().perform(CommandID::Favorite, {.ids = {middle}}); });
        step(meter, "select all", [&] { app->window().activeSection().selectAll(); });
        step(meter, "play",
             [&] { app->contentView().commands().perform(CommandID::PlayRow, {.track = shown[rows / 2]}); });
        step(meter, "play the next row", [&] { app->contentView().commands().perform(CommandID::NextTrack); });
        step(meter, "to Favorites", [&] { app->contentView().activateTab(LibraryTab::Favorites); });
        step(meter, "to Covers", [&] { app->contentView().activateTab(LibraryTab::Covers); });
        step(meter, "to Playlist", [&] { app->contentView().activateTab(LibraryTab::Playlist); });
        step(meter, "select one", [&] { app->contentView().select({middle}, middle); });
    }
    step(meter, "undo", [&] { app->store().history().undo(); });
    return largeSelection(meter, *app) ? 0 : 1;
}

/// A start with a kept workspace whose files are all there, until its rows are painted.
int restore(SliceMeter& meter, int rows)
{
    const QTemporaryDir folder;
    SessionRecord record;
    record.activeTab = rawValue(LibraryTab::Playlist);
    for (int i = 0; i < rows; ++i) {
        const QString parent = folder.filePath(QStringLiteral("Папка %1").arg(i % 300));
        if (i < 300)
            QDir().mkpath(parent);
        QFile file(parent + QStringLiteral("/Artist %1 - Title %2.mp3").arg(i % 97).arg(i));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot make the files");
        const QUrl url = FileURL::fromPath(file.fileName());
        Track track = Track::restored(freshID(), url, Track::fallbackTags(url));
        track.setIsInPlaylist(true);
        record.tracks.append(track);
    }
    auto storage = std::make_unique<WorkspaceSessionStorage>(folder.filePath(QStringLiteral("data")),
                                                             WorkspaceSessionStorage::Options{.skipInTests = false});
    storage->write(SessionCoding::encode(record), 0);
    record = {};
    auto preferences = std::make_unique<Preferences>(std::make_unique<MemoryPreferenceStore>());
    preferences->defaultsMigrated.set(true);
    const double before = processSeconds();
    const auto begin = std::chrono::steady_clock::now();
    VelmoraApp app(std::move(preferences), std::make_unique<DemoAudio>(), std::move(storage));
    app.open({});
    meter.reset();
    while (app.store().workspace().isRestoringWorkspaceSession())
        turn(0);
    report(meter, "until the rows are put in place");
    meter.reset();
    app.window().grab();
    printf("rows on the screen after %.2f s, processor %.2f s, rows %d\n",
           std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(), processSeconds() - before,
           app.window().section(LibraryTab::Playlist).model().rowCount());
    turn(3);
    report(meter, "while their files are read");
    printf("resident memory %lld MB   (limit 600)\n", static_cast<long long>(residentMegabytes()));
    return 0;
}

int start()
{
    const std::unique_ptr<VelmoraApp> app = makeApp({});
    while (!app->window().isVisible() || app->window().grab().isNull())
        turn(0.01);
    printf("CPU time to the first painted window: %.3f s   (limit 0.4)\n", processSeconds());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    SliceMeter meter(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString mode = arguments.value(1);
    if (mode == QLatin1StringView("arrive") && arguments.size() > 2)
        return arrive(meter, arguments[2]);
    if (mode == QLatin1StringView("large"))
        return large(meter, std::max(1, arguments.value(2, QStringLiteral("100000")).toInt()));
    if (mode == QLatin1StringView("restore"))
        return restore(meter, std::max(1, arguments.value(2, QStringLiteral("100000")).toInt()));
    if (mode == QLatin1StringView("start"))
        return start();
    fprintf(stderr, "usage: bench_window arrive FOLDER | large [rows] | restore [rows] | start\n");
    return 2;
}
