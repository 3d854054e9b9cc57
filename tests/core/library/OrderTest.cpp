#include "support/SortRows.h"
#include "support/StoreFixture.h"

#include "core/library/order/TrackSorter.h"

#include <QRandomGenerator>

using Field = TrackSortField;
using Direction = TrackSortDirection;

class OrderTest : public StoreFixture {
protected:
    Order& order() { return store->order(); }
    QString shown() { return SortRows::titles(order().playlistTracks()); }
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
    void setTempo(const Track& track, const QString& bpm)
    {
        QList<Track> rows = workspace().tracks().rows();
        Track& changed = rows[*workspace().tracks().indexOf(track.id())];
        changed = SortRows::retagged(changed, [&](AudioTags& tags) { tags.bpm = bpm; });
        fill(rows);
    }

    QString tempoShown(const Track& track)
    {
        for (const Track& row : order().playlistTracks()) {
            if (row.id() == track.id())
                return row.tags().bpm;
        }
        return {};
    }

    Track a, b, c, d, e;
};

TEST_F(OrderTest, AFieldReordersWithinFolders)
{
    fillFolders();
    struct Case {
        Field field;
        Direction direction;
        const char* expected;
    };
    const Case cases[] = {
        {Field::Original, Direction::Descending, "a b c d e"}, {Field::BPM, Direction::Ascending, "c a b e d"},
        {Field::BPM, Direction::Descending, "a c b d e"}, // no tempo: last of its folder
        {Field::Name, Direction::Descending, "c b a e d"},     {Field::Rating, Direction::Descending, "a c b d e"},
        {Field::Original, Direction::Ascending, "a b c d e"},
    };
    const std::vector<PlaylistBase::FolderSection> folders{{QStringLiteral("/m/1"), 0, 3},
                                                           {QStringLiteral("/m/2"), 3, 5}};
    for (const Case& test : cases) {
        sortBy(test.field, test.direction);
        EXPECT_EQ(shown(), QLatin1StringView(test.expected)) << qPrintable(rawValue(test.field));
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
    EXPECT_EQ(shown(), QStringLiteral("c a b e d"));
    EXPECT_EQ(changes.size(), 1);
    preferences.playlistSortField.set(QStringLiteral("unheard of"));
    EXPECT_EQ(shown(), QStringLiteral("a b c d e"));
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
    EXPECT_EQ(shown(), QStringLiteral("c a b e d"));
    EXPECT_TRUE(order().playlistTracks()[1].isFavorite());
    EXPECT_EQ(since(), std::pair(0, 0)) << "a star moves nothing";

    setTempo(e, QStringLiteral("200"));
    EXPECT_EQ(shown(), QStringLiteral("c a b d e"));
    EXPECT_EQ(since(), std::pair(0, 1)) << "one folder, and the base order stays";

    QList<Track> rows = workspace().tracks().rows();
    rows.append(row("/m/2/0.mp3", "f", "150"));
    fill(rows);
    EXPECT_EQ(shown(), QStringLiteral("c a b d f e"));
    EXPECT_EQ(since(), std::pair(0, 2)) << "appended rows are placed, and only their folder is sorted";

    rows.removeFirst(); // e
    fill(rows);
    EXPECT_EQ(shown(), QStringLiteral("c a b d f"));
    EXPECT_EQ(since(), std::pair(1, 3));

    sortBy(Field::BPM, Direction::Descending);
    EXPECT_EQ(shown(), QStringLiteral("a c b f d"));
    EXPECT_EQ(since(), std::pair(1, 5));
}

TEST_F(OrderTest, NothingMovesWhileTheListScrolls)
{
    fillFolders();
    sortBy(Field::BPM, Direction::Ascending);
    const QString before = shown();
    order().setPlaylistScrolling(true);
    const int sorts = folderSorts();
    QSignalSpy changes(&workspace(), &Workspace::orderChanged);
    setTempo(c, QStringLiteral("140"));
    store->favorites().toggleFavorites({c.id(), e.id()});
    setTempo(d, QStringLiteral("80"));
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
    EXPECT_EQ(shown(), QStringLiteral("a c b d e"));
    clock.advance(async::seconds(5));
    EXPECT_EQ(changes.size(), 1) << "paid once";
}

TEST_F(OrderTest, WhatChangesTheRowsEndsTheFrost)
{
    const auto remove = [&] {
        QList<Track> rows = workspace().tracks().rows();
        rows.removeIf([&](const Track& track) { return track.id() == d.id(); });
        fill(rows);
    };
    const auto takeOut = [&] {
        QList<Track> rows = workspace().tracks().rows();
        for (Track& track : rows)
            track.setIsInPlaylist(track.id() != d.id());
        fill(rows);
    };
    const auto rename = [&] {
        QList<Track> rows = workspace().tracks().rows();
        for (Track& track : rows) {
            if (track.id() == d.id())
                track = row("/m/3/d.mp3", "d", "120").withID(d.id());
        }
        fill(rows);
    };
    const std::tuple<const char*, std::function<void()>, const char*> cases[] = {
        {"removed", remove, "a c b e"},
        {"left the playlist", takeOut, "a c b e"},
        {"renamed", rename, "a c b e d"},
    };
    for (const auto& [name, change, expected] : cases) {
        SCOPED_TRACE(name);
        fillFolders();
        sortBy(Field::BPM, Direction::Ascending);
        shown();
        order().setPlaylistScrolling(true);
        setTempo(c, QStringLiteral("140"));
        EXPECT_EQ(shown(), QStringLiteral("c a b e d"));
        change();
        EXPECT_EQ(shown(), QLatin1StringView(expected)) << "in order at once, what was owed too";
        order().setPlaylistScrolling(false);
        clock.advance(async::seconds(2));
        EXPECT_EQ(shown(), QLatin1StringView(expected));
    }
}

TEST_F(OrderTest, StreamingTagsReorderOnceTheyHaveStopped)
{
    reader = [](const QUrl& url, const AudioTags& fallback) -> std::optional<LoadedTrackMetadata> {
        LoadedTrackMetadata read;
        read.tags = fallback;
        read.tags.bpm = QString::number(1000 - url.fileName().section(u'.', 0, 0).toInt());
        return read;
    };
    QList<Track> tracks;
    for (int i = 0; i < 120; ++i)
        tracks.append(track(QStringLiteral("%1.mp3").arg(i)));
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
    reader = [old = reader](const QUrl& url, const AudioTags& fallback) {
        auto read = old(url, fallback);
        read->tags.bpm = QString::number(url.fileName().section(u'.', 0, 0).toInt());
        return read;
    };
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
    EXPECT_EQ(shown(), QStringLiteral("c a b e d"));
    changes.clear();
    order().updatePlaylistPopularitySortValues(values);
    EXPECT_EQ(changes.size(), 0) << "nothing new";
    order().updatePlaylistPopularitySortValues({{b.id(), {1, false, {}, {}}}});
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(shown(), QStringLiteral("b a c d e"));

    order().setPlaylistScrolling(true);
    order().updatePlaylistPopularitySortValues({});
    EXPECT_EQ(shown(), QStringLiteral("b a c d e"));
    order().setPlaylistScrolling(false);
    clock.advance(async::seconds(0.99));
    EXPECT_EQ(shown(), QStringLiteral("b a c d e"));
    clock.advance(async::seconds(0.02));
    EXPECT_EQ(shown(), QStringLiteral("a c b d e"));
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
    EXPECT_EQ(titles(), QStringLiteral("a c b d e"));

    own.setSearchingTempo(true);
    own.setEstimatedBPM(b.id(), QStringLiteral("150"));
    EXPECT_FALSE(own.settleBPMSort());
    EXPECT_EQ(titles(), QStringLiteral("a c b d e"));
    own.setPlaylistScrolling(true);
    own.setSearchingTempo(false);
    EXPECT_FALSE(own.settleBPMSort()) << "the list is in motion";
    own.setSearchingTempo(true);
    own.setPlaylistScrolling(false);
    clock.advance(async::seconds(3));
    EXPECT_EQ(titles(), QStringLiteral("a c b d e")) << "still counting";
    own.setPlaylistScrolling(true);
    own.setSearchingTempo(false);
    own.setPlaylistScrolling(false);
    EXPECT_EQ(titles(), QStringLiteral("a c b d e"));
    clock.advance(async::seconds(1.01));
    EXPECT_EQ(titles(), QStringLiteral("b a c d e"));
    EXPECT_FALSE(own.settleBPMSort()) << "paid already";
    own.setPlaylistScrolling(false);
    EXPECT_EQ(scrolls, QList<bool>({true, false, true, false})) << "what is no change is not passed on";

    own.setEstimatedBPM(b.id(), std::nullopt);
    EXPECT_TRUE(own.settleBPMSort());
    EXPECT_EQ(titles(), QStringLiteral("a c b d e"));
    own.setTrackSortField(Field::Name, LibraryTab::Playlist);
    own.setEstimatedBPM(b.id(), QStringLiteral("1"));
    EXPECT_FALSE(own.settleBPMSort()) << "names do not care";
    own.setEstimatedBPM(b.id(), QStringLiteral("150"));
    own.setTrackSortField(Field::BPM, LibraryTab::Playlist);
    EXPECT_EQ(titles(), QStringLiteral("b a c d e")) << "back before anybody looked at the names";
}

TEST_F(OrderTest, TheOrderFollowsAnyWalkOfChanges)
{
    QRandomGenerator random(815);
    const QStringList folders{QStringLiteral("/m/1"), QStringLiteral("/M/1"), QStringLiteral("/m/2")};
    const QStringList tempos{QString(), QStringLiteral("90"), QStringLiteral("128"), QStringLiteral("130")};
    const auto anyTrack = [&] {
        const QString path = folders[random.bounded(3)] + QStringLiteral("/%1.mp3").arg(random.bounded(30));
        Track made = track(path);
        return SortRows::retagged(made, [&](AudioTags& tags) { tags.bpm = tempos[random.bounded(4)]; });
    };
    for (int step = 0; step < 500; ++step) {
        QList<Track> rows = workspace().tracks().rows();
        const qsizetype some = rows.isEmpty() ? 0 : random.bounded(rows.size());
        switch (random.bounded(7)) {
        case 0:
            for (int count = random.bounded(4); count >= 0; --count)
                rows.append(anyTrack());
            fill(rows);
            break;
        case 1:
            if (!rows.isEmpty())
                rows.removeAt(some);
            fill(rows);
            break;
        case 2:
        case 3:
            if (!rows.isEmpty())
                setTempo(rows[some], tempos[random.bounded(4)]);
            break;
        case 4:
            if (!rows.isEmpty())
                store->favorites().toggleFavorites({rows[some].id()});
            break;
        case 5:
            sortBy(random.bounded(3) == 0 ? Field::Name : Field::BPM,
                   random.bounded(2) == 0 ? Direction::Ascending : Direction::Descending);
            break;
        case 6:
            if (!rows.isEmpty())
                order().setEstimatedBPM(rows[some].id(), tempos[random.bounded(4)]);
            order().settleBPMSort();
            break;
        }
        if (random.bounded(3) == 0) { // a frost that is over by the time of the question
            shown();
            order().setPlaylistScrolling(true);
            if (!workspace().tracks().isEmpty())
                setTempo(workspace().tracks().at(0), tempos[random.bounded(4)]);
            shown();
            order().setPlaylistScrolling(false);
            clock.advance(async::seconds(1.1));
        }

        TrackList list;
        list.assign(workspace().tracks().rows());
        PlaylistBase base;
        base.rebuild(list);
        QList<Track> expected;
        for (const PlaylistBase::FolderSection& folder : base.sections())
            expected += TrackSorter::sorted(base.rows().rows().sliced(folder.first, folder.end - folder.first),
                                            order().trackSortField(LibraryTab::Playlist),
                                            order().trackSortDirection(LibraryTab::Playlist),
                                            store->tempo().tempoTables().estimatedBPMByTrackID, {});
        const QList<Track>& result = order().playlistTracks();
        ASSERT_EQ(result.size(), expected.size()) << "step " << step;
        for (qsizetype row = 0; row < result.size(); ++row)
            ASSERT_TRUE(result[row].isSameValueAs(expected[row])) << "step " << step << " row " << row;
    }
}
