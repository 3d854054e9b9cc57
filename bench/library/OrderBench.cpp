// How long the orders of a large playlist take, in CPU time of the one thread, and what a change costs afterwards.
// usage: bench_order [tracks] [folders]

#include "Measure.h"
#include "core/library/order/Order.h"
#include "core/library/results/TempoResults.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "support/ManualClock.h"
#include "work/Scheduler.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <cstdio>
#include <ctime>

namespace {

constexpr int kRounds = 7;

double cpuSeconds(const std::function<void()>& work)
{
    const std::clock_t start = std::clock();
    work();
    return double(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Names, tempos and genres as collections have them: some thousand words, tempos that many tracks share.
QList<Track> makeTracks(int count, int folders)
{
    static const char* const kGenres[] = {"", "House", "Tech House", "Afro House", "Techno", "Disco", "Хаус"};
    QRandomGenerator random(100'000);
    QList<Track> tracks;
    tracks.reserve(count);
    for (int i = 0; i < count; ++i) {
        const int number = int(random.bounded(1'000'000));
        Track track = Track::unread(
            FileURL::fromPath(QStringLiteral("/music/Папка %1/Artist %2 - Название трека (Extended Mix) %3.mp3")
                                  .arg(i % folders)
                                  .arg(number % 977)
                                  .arg(number)));
        AudioTags tags = track.tags();
        tags.title = QStringLiteral("Название трека (Extended Mix) %1").arg(number);
        tags.genre = QString::fromUtf8(kGenres[random.bounded(quint32(std::size(kGenres)))]);
        tags.bpm = random.bounded(10) == 0 ? QString() : QString::number(100 + int(random.bounded(40)));
        track.replaceTags(tags);
        track.setIsInPlaylist(true);
        tracks.append(track);
    }
    std::shuffle(tracks.begin(), tracks.end(), random); // as no import brings them: the sort is never spared
    return tracks;
}

/// A workspace with its order and nothing else.
struct Library {
    ManualClock clock;
    Preferences preferences{std::make_unique<MemoryPreferenceStore>()};
    Notifications notifications;
    Workspace workspace;
    TempoResults tempo;
    Scheduler scheduler{clock};
    Order order{{workspace, tempo, preferences, notifications, scheduler, clock}};

    explicit Library(const QList<Track>& tracks) { workspace.setTracks(tracks); }

    /// Another tempo for a row in the middle, up to the finished rows.
    void changeOneRow(int round)
    {
        QList<Track> rows = workspace.tracks().rows();
        Track& row = rows[rows.size() / 2];
        AudioTags tags = row.tags();
        tags.bpm = QString::number(100 + round);
        row.replaceTags(tags);
        workspace.setTracks(rows);
        order.playlistTracks();
    }
};

/// Prints the median of several runs. \param prepare runs before each, unmeasured.
void report(const char* what, const std::function<void(int)>& prepare, const std::function<void(int)>& work)
{
    std::vector<double> seconds;
    for (int round = 0; round < kRounds; ++round) {
        if (prepare)
            prepare(round);
        seconds.push_back(cpuSeconds([&] { work(round); }));
    }
    printf("%-44s %8.2f ms\n", what, Measure::median(seconds) * 1e3);
}

void reportSorts(Library& library)
{
    const std::pair<const char*, TrackSortField> fields[] = {{"sort by tempo", TrackSortField::BPM},
                                                             {"sort by name", TrackSortField::Name},
                                                             {"sort by genre", TrackSortField::Genre},
                                                             {"sort by rating, none known", TrackSortField::Rating}};
    for (const auto& [name, field] : fields) {
        report(
            name,
            [&](int) {
                library.order.setTrackSortField(TrackSortField::Original, LibraryTab::Playlist);
                library.order.playlistTracks();
            },
            [&](int) {
                library.order.setTrackSortField(field, LibraryTab::Playlist);
                library.order.playlistTracks();
            });
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int count = argc > 1 ? atoi(argv[1]) : 100'000;
    const int folders = argc > 2 ? atoi(argv[2]) : 2'000;
    const QList<Track> tracks = makeTracks(count, folders);
    printf("tracks %d, folders %d, medians of %d rounds, CPU time\n", count, folders, kRounds);

    std::unique_ptr<Library> fresh;
    report(
        "base order from nothing", [&](int) { fresh.reset(); },
        [&](int) {
            fresh = std::make_unique<Library>(tracks);
            fresh->order.playlistTracks();
        });
    Library& library = *fresh;
    report("one row changed, the list alone", {}, [&](int round) {
        library.workspace.disconnect(&library.order);
        library.changeOneRow(round);
        QObject::connect(&library.workspace, &Workspace::tracksUpkeep, &library.order, &Order::tracksChanged);
    });
    library.order.tracksChanged({});
    library.order.playlistTracks();
    report("one row changed, base order", {}, [&](int round) { library.changeOneRow(round); });
    reportSorts(library);
    library.order.setTrackSortField(TrackSortField::BPM, LibraryTab::Playlist);
    library.order.playlistTracks();
    report("one row changed, by tempo", {}, [&](int round) { library.changeOneRow(round); });
    library.order.setPlaylistScrolling(true);
    report("one row changed, by tempo, while it scrolls", {}, [&](int round) { library.changeOneRow(round); });
    library.order.setPlaylistScrolling(false);
    return 0;
}
