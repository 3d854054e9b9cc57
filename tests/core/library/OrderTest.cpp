#include "support/SortRows.h"
#include "support/StoreFixture.h"

#include "core/library/order/TrackSorter.h"
#include "platform/Collation.h"

#include <QRandomGenerator>

using Field = TrackSortField;
using Direction = TrackSortDirection;

namespace {

/// The order without a sort, by definition.
QList<Track> reference(const TrackList& tracks)
{
    QList<Track> rows;
    std::ranges::copy_if(tracks, std::back_inserter(rows), &Track::isInPlaylist);
    std::ranges::sort(rows, [](const Track& left, const Track& right) {
        if (const int order =
                Collation::standardCompare(FileURL::folderPath(left.url()), FileURL::folderPath(right.url())))
            return order < 0;
        const int order =
            Collation::standardCompare(FileURL::lastPathComponent(left.url()), FileURL::lastPathComponent(right.url()));
        return order != 0 ? order < 0 : left.id().toString() < right.id().toString();
    });
    return rows;
}

} // namespace

class OrderTest : public StoreFixture {
protected:
    Order& order() { return store->order(); }
    std::string shown() { return SortRows::titles(order().playlistTracks()); }
    int folderSorts() { return order().work().folderSorts; }

    static Track row(const char* path, const char* title, const char* bpm)
    {
        return SortRows::track({.title = title, .bpm = bpm}, QString::fromUtf8(path));
    }

    /// Two folders; by file name "a b c" and "d e".
    void fillFolders()
    {
        a = row("/m/1/1.mp3", "a", "130");
        b = row("/m/1/2.mp3", "b", "");
        c = row("/m/1/3.mp3", "c", "90");
        d = row("/m/2/1.mp3", "d", "120");
        e = row("/m/2/2.mp3", "e", "100");
        fill({e, d, c, b, a});
    }

    void sortBy(Field field, Direction direction)
    {
        order().setTrackSortField(field, LibraryTab::Playlist);
        order().setTrackSortDirection(direction, LibraryTab::Playlist);
    }

    /// Gives a track another tempo, all else as it is.
    void setTempo(const Track& track, const char* bpm) { replace(track, {{&AudioTags::bpm, bpm}}); }

    QString tempoShown(const Track& track)
    {
        const QList<Track>& rows = order().playlistTracks();
        return std::ranges::find(rows, track.id(), &Track::id)->tags().bpm;
    }

    Track a, b, c, d, e;
};

TEST_F(OrderTest, AFieldReordersWithinFolders)
{
    fillFolders();
    const struct {
        Field field;
        Direction direction;
        const char* expected;
    } cases[] = {
        {Field::Original, Direction::Descending, "a b c d e"}, {Field::BPM, Direction::Ascending, "c a b e d"},
        {Field::BPM, Direction::Descending, "a c b d e"}, // no tempo: last of its folder
        {Field::Name, Direction::Descending, "c b a e d"},     {Field::Rating, Direction::Descending, "a c b d e"},
        {Field::Original, Direction::Ascending, "a b c d e"},
    };
    const std::vector<PlaylistBase::FolderSection> folders{{QStringLiteral("/m/1"), 0, 3},
                                                           {QStringLiteral("/m/2"), 3, 5}};
    for (const auto& test : cases) {
        sortBy(test.field, test.direction);
        EXPECT_EQ(shown(), test.expected) << qPrintable(rawValue(test.field));
        EXPECT_EQ(order().playlistFolderSections(), folders) << qPrintable(rawValue(test.field));
    }
}

TEST_F(OrderTest, TheChoiceIsKeptAndFollowsThePreferences)
{
    fillFolders();
    QSignalSpy changes(&workspace(), &Workspace::orderChanged);
    order().setTrackSortDirection(Direction::Ascending, LibraryTab::Playlist);
    order().setTrackSortField(Field::Rating, LibraryTab::Playlist);
    EXPECT_EQ(preferences.playlistSortField.get(), QStringLiteral("rating"));
    EXPECT_EQ(preferences.playlistSortDirection.get(), QStringLiteral("descending")) << "the best come first";
    EXPECT_EQ(changes.size(), 2);
    order().setTrackSortDirection(Direction::Ascending, LibraryTab::Playlist);
    order().setTrackSortField(Field::Rating, LibraryTab::Playlist);
    EXPECT_EQ(order().trackSortDirection(LibraryTab::Playlist), Direction::Ascending) << "it was by rating before";
    order().setTrackSortField(Field::Rating, LibraryTab::Favorites);
    EXPECT_EQ(order().trackSortDirection(LibraryTab::Favorites), Direction::Ascending);
    changes.clear();
    for (const LibraryTab tab : {LibraryTab::Covers, LibraryTab::Analysis})
        order().setTrackSortField(Field::Name, tab);
    EXPECT_EQ(changes.size(), 0) << "these are never sorted";

    preferences.playlistSortField.set(QStringLiteral("bpm"));
    EXPECT_EQ(shown(), "c a b e d");
    EXPECT_EQ(changes.size(), 1);
    preferences.playlistSortField.set(QStringLiteral("unheard of"));
    EXPECT_EQ(shown(), "a b c d e");
    preferences.playlistSortDirection.set(QStringLiteral("sideways"));
    EXPECT_EQ(order().trackSortDirection(LibraryTab::Playlist), Direction::Descending) << "the default";
}

TEST_F(OrderTest, OnlyWhatChangedIsMadeAnew)
{
    fillFolders();
    sortBy(Field::BPM, Direction::Ascending);
    shown();
    const Order::Work before = order().work();
    const auto since = [&] {
        const Order::Work now = order().work();
        return std::pair(now.baseOrders - before.baseOrders, now.folderSorts - before.folderSorts);
    };
    shown();
    order().playlistFolderSections();
    store->selection().visibleTracks();
    EXPECT_EQ(since(), std::pair(0, 0)) << "finished rows are the answer";

    store->favorites().toggleFavorites({a.id()});
    EXPECT_EQ(shown(), "c a b e d");
    EXPECT_TRUE(order().playlistTracks()[1].isFavorite());
    EXPECT_EQ(since(), std::pair(0, 0)) << "a star moves nothing";

    setTempo(e, "200");
    EXPECT_EQ(shown(), "c a b d e");
    EXPECT_EQ(since(), std::pair(0, 1)) << "one folder, and the base order stays";

    QList<Track> rows = workspace().tracks().rows();
    rows.append(row("/m/2/0.mp3", "f", "150"));
    fill(rows);
    EXPECT_EQ(shown(), "c a b d f e");
    EXPECT_EQ(since(), std::pair(0, 2)) << "appended rows are placed, and only their folder is sorted";

    rows.removeFirst(); // e
    fill(rows);
    EXPECT_EQ(shown(), "c a b d f");
    EXPECT_EQ(since(), std::pair(0, 2)) << "what stays keeps its order";

    sortBy(Field::BPM, Direction::Descending);
    EXPECT_EQ(shown(), "a c b f d");
    EXPECT_EQ(since(), std::pair(0, 4));
}

TEST_F(OrderTest, NothingMovesWhileTheListScrolls)
{
    fillFolders();
    sortBy(Field::BPM, Direction::Ascending);
    const std::string before = shown();
    order().setPlaylistScrolling(true);
    const int sorts = folderSorts();
    QSignalSpy changes(&workspace(), &Workspace::orderChanged);
    setTempo(c, "140");
    store->favorites().toggleFavorites({c.id(), e.id()});
    setTempo(d, "80");
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(tempoShown(c), QStringLiteral("140")) << "the row itself is fresh";
    clock.advance(async::seconds(5));
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(changes.size(), 0);

    order().setPlaylistScrolling(false);
    clock.advance(async::seconds(0.6));
    order().setPlaylistScrolling(true); // takes the pause back
    clock.advance(async::seconds(5));
    EXPECT_EQ(shown(), before);
    order().setPlaylistScrolling(false);
    clock.advance(async::seconds(0.99));
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(folderSorts(), sorts);
    clock.advance(async::seconds(0.02));
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(shown(), "a c b d e");
    clock.advance(async::seconds(5));
    EXPECT_EQ(changes.size(), 1) << "paid once";
}

TEST_F(OrderTest, WhatChangesTheRowsEndsTheFrost)
{
    const std::tuple<const char*, std::function<void(QList<Track>&, int)>, const char*> cases[] = {
        {"removed", [](QList<Track>& rows, int place) { rows.removeAt(place); }, "a c b e"},
        {"left the playlist", [](QList<Track>& rows, int place) { rows[place].setIsInPlaylist(false); }, "a c b e"},
        {"renamed",
         [](QList<Track>& rows, int place) { rows[place] = row("/m/3/d.mp3", "d", "120").withID(rows[place].id()); },
         "a c b e d"},
    };
    for (const auto& [name, change, expected] : cases) {
        SCOPED_TRACE(name);
        fillFolders();
        sortBy(Field::BPM, Direction::Ascending);
        shown();
        order().setPlaylistScrolling(true);
        setTempo(c, "140");
        EXPECT_EQ(shown(), "c a b e d");
        QList<Track> rows = workspace().tracks().rows();
        change(rows, *workspace().tracks().indexOf(d.id()));
        fill(rows);
        EXPECT_EQ(shown(), expected) << "in order at once, what was owed too";
        order().setPlaylistScrolling(false);
        clock.advance(async::seconds(2));
        EXPECT_EQ(shown(), expected);
    }
}

TEST_F(OrderTest, StreamingTagsReorderOnceTheyHaveStopped)
{
    bool isTurned = true;
    reader = [&isTurned](const QUrl& url, AudioTags tags) {
        const int number = url.fileName().section(u'.', 0, 0).toInt();
        tags.bpm = QString::number(isTurned ? 1000 - number : number);
        return TagTexts::read(tags);
    };
    const QList<Track> tracks = numbered(120);
    fill(tracks);
    sortBy(Field::BPM, Direction::Ascending);
    const auto firstFile = [&] { return order().playlistTracks().first().url().fileName(); };
    EXPECT_EQ(firstFile(), QStringLiteral("0.mp3"));
    const int revision = workspace().playlistAnalysisRevision();
    store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
    settle();
    EXPECT_EQ(tempoShown(tracks[119]), QStringLiteral("881"));
    EXPECT_EQ(firstFile(), QStringLiteral("0.mp3"));
    EXPECT_EQ(workspace().playlistAnalysisRevision(), revision + 3) << "one for each batch";

    // A second load begins within the pause: it has to end first.
    clock.advance(async::seconds(0.5));
    store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
    clock.advance(async::seconds(5));
    EXPECT_EQ(firstFile(), QStringLiteral("0.mp3"));
    settle();
    EXPECT_EQ(firstFile(), QStringLiteral("0.mp3"));
    clock.advance(async::seconds(1.01));
    EXPECT_EQ(firstFile(), QStringLiteral("119.mp3"));

    // Results that are held back while the list scrolls count as a load.
    isTurned = false;
    order().setPlaylistScrolling(true);
    store->imports().scheduleMetadataLoads(workspace().tracks().rows(), Track::MetadataDestination::Library);
    executor.runAll();
    order().setPlaylistScrolling(false);
    clock.advance(async::seconds(0.1));
    EXPECT_EQ(tempoShown(tracks[5]), QStringLiteral("5"));
    clock.advance(async::seconds(1));
    EXPECT_EQ(firstFile(), QStringLiteral("119.mp3")) << "the pause begins when the last result is applied";
    clock.advance(async::seconds(0.2));
    EXPECT_EQ(firstFile(), QStringLiteral("0.mp3"));
}

TEST_F(OrderTest, RatingsReorderAListSortedByThem)
{
    fillFolders();
    const TrackPopularitySortValues values{{c.id(), {5, true, 1, {}}}, {e.id(), {5, true, 1, {}}}};
    QSignalSpy changes(&workspace(), &Workspace::orderChanged);
    order().updatePlaylistPopularitySortValues(values);
    EXPECT_EQ(changes.size(), 0) << "not what the list is sorted by";
    order().setTrackSortField(Field::Rating, LibraryTab::Playlist);
    EXPECT_EQ(shown(), "c a b e d");
    changes.clear();
    order().updatePlaylistPopularitySortValues(values);
    EXPECT_EQ(changes.size(), 0) << "nothing new";
    order().updatePlaylistPopularitySortValues({{b.id(), {1, false, {}, {}}}});
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(shown(), "b a c d e");

    order().setPlaylistScrolling(true);
    order().updatePlaylistPopularitySortValues({});
    EXPECT_EQ(shown(), "b a c d e");
    order().setPlaylistScrolling(false);
    clock.advance(async::seconds(0.99));
    EXPECT_EQ(shown(), "b a c d e");
    clock.advance(async::seconds(0.02));
    EXPECT_EQ(shown(), "a c b d e");
}

TEST_F(OrderTest, EstimatedTemposWaitForTheirQueueAndForTheHand)
{
    fillFolders();
    Workspace alone;
    Scheduler scheduler(clock);
    QList<bool> scrolls;
    QObject::connect(&scheduler, &Scheduler::circumstancesChanged, &alone,
                     [&] { scrolls.append(scheduler.circumstances().isScrolling); });
    TempoResults tempos;
    Order own({alone, tempos, preferences, notifications, scheduler, clock});
    alone.setTracks(workspace().tracks().rows());
    own.setTrackSortField(Field::BPM, LibraryTab::Playlist);
    const auto titles = [&] { return SortRows::titles(own.playlistTracks()); };
    EXPECT_EQ(titles(), "a c b d e");

    own.setSearchingTempo(true);
    own.setEstimatedBPM(b.id(), QStringLiteral("150"));
    EXPECT_FALSE(own.settleBPMSort());
    EXPECT_EQ(titles(), "a c b d e");
    own.setPlaylistScrolling(true);
    own.setSearchingTempo(false);
    EXPECT_FALSE(own.settleBPMSort()) << "the list is in motion";
    own.setSearchingTempo(true);
    own.setPlaylistScrolling(false);
    clock.advance(async::seconds(3));
    EXPECT_EQ(titles(), "a c b d e") << "still counting";
    own.setPlaylistScrolling(true);
    own.setSearchingTempo(false);
    own.setPlaylistScrolling(false);
    EXPECT_EQ(titles(), "a c b d e");
    clock.advance(async::seconds(1.01));
    EXPECT_EQ(titles(), "b a c d e");
    EXPECT_FALSE(own.settleBPMSort()) << "paid already";
    own.setPlaylistScrolling(false);
    EXPECT_EQ(scrolls, QList<bool>({true, false, true, false})) << "what is no change is not passed on";

    own.setEstimatedBPM(b.id(), std::nullopt);
    EXPECT_TRUE(own.settleBPMSort());
    EXPECT_EQ(titles(), "a c b d e");
    own.setTrackSortField(Field::Name, LibraryTab::Playlist);
    own.setEstimatedBPM(b.id(), QStringLiteral("1"));
    EXPECT_FALSE(own.settleBPMSort()) << "names do not care";
    own.setEstimatedBPM(b.id(), QStringLiteral("150"));
    own.setTrackSortField(Field::BPM, LibraryTab::Playlist);
    EXPECT_EQ(titles(), "b a c d e") << "back before anybody looked at the names";
}

TEST_F(OrderTest, TheOrderFollowsAnyWalkOfChanges)
{
    QRandomGenerator random(815);
    const char* const folders[]{"/m/2", "/m/10", "/m", "/M/2", "/м", "/m/2/x"};
    const char* const names[]{"2.mp3", "10.mp3", "Ёж.mp3", "еж.mp3", "a b.mp3", "ab.mp3"};
    const char* const tempos[]{"", "90", "128", "130"};
    const auto anyPath = [&] {
        return FileURL::fromPath(QString::fromUtf8(folders[random.bounded(6)]) + u'/' +
                                 QString::fromUtf8(names[random.bounded(6)]));
    };
    for (int step = 0; step < 700; ++step) {
        QList<Track> rows = workspace().tracks().rows();
        const qsizetype some = rows.isEmpty() ? 0 : random.bounded(rows.size());
        switch (rows.isEmpty() ? 0 : random.bounded(10)) {
        case 0:
        case 1:
            for (int count = random.bounded(5); count >= 0; --count)
                rows.append(
                    TagTexts::on(track(anyPath().toLocalFile()), {{&AudioTags::bpm, tempos[random.bounded(4)]}}));
            break;
        case 2:
            rows.removeAt(some);
            break;
        case 3:
            for (Track& row : rows) {
                if (random.bounded(4) == 0)
                    row.setDuration(random.bounded(100));
            }
            break;
        case 4:
            rows[some].setIsInPlaylist(random.bounded(2) == 0);
            break;
        case 5: { // a renamed file
            const Track renamed(rows[some].id(), anyPath());
            const bool isInPlaylist = rows[some].isInPlaylist();
            rows[some] = renamed;
            rows[some].setIsInPlaylist(isInPlaylist);
            break;
        }
        case 6:
            rows[some] = TagTexts::on(rows[some], {{&AudioTags::bpm, tempos[random.bounded(4)]}});
            break;
        case 7:
            rows[some].setIsFavorite(!rows[some].isFavorite());
            rows[some].setIsInCoverWorkspace(rows[some].isFavorite());
            break;
        case 8: {
            const Field fields[]{Field::Original, Field::Name, Field::BPM, Field::BPM};
            sortBy(fields[random.bounded(4)], random.bounded(2) == 0 ? Direction::Ascending : Direction::Descending);
            break;
        }
        case 9:
            order().setEstimatedBPM(rows[some].id(), QString::fromLatin1(tempos[random.bounded(4)]));
            order().settleBPMSort();
            break;
        }
        fill(rows);
        if (!rows.isEmpty() && random.bounded(3) == 0) { // a frost that is over by the time of the question
            shown();
            order().setPlaylistScrolling(true);
            setTempo(workspace().tracks().at(0), tempos[random.bounded(4)]);
            shown();
            order().setPlaylistScrolling(false);
            clock.advance(async::seconds(1.1));
        }

        const QList<Track> byPath = reference(workspace().tracks());
        QList<Track> expected;
        for (auto first = byPath.begin(); first != byPath.end();) {
            const QString folder = FileURL::folderPath(first->url());
            const auto last = std::find_if(first, byPath.end(),
                                           [&](const Track& row) { return FileURL::folderPath(row.url()) != folder; });
            expected += TrackSorter::sorted(QList<Track>(first, last), order().trackSortField(LibraryTab::Playlist),
                                            order().trackSortDirection(LibraryTab::Playlist),
                                            store->tempo().tempoTables().estimatedBPMByTrackID, {});
            first = last;
        }
        const QList<Track>& result = order().playlistTracks();
        ASSERT_EQ(result.size(), expected.size()) << "step " << step;
        for (qsizetype row = 0; row < result.size(); ++row)
            ASSERT_TRUE(result[row].isSameValueAs(expected[row])) << "step " << step << " row " << row;
    }
}
