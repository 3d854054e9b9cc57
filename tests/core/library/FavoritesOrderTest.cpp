#include "support/SortRows.h"
#include "support/StoreFixture.h"

namespace {

Track liked(const SortRow& row, const QString& path = QStringLiteral("/m/x.mp3"))
{
    Track track = SortRows::track(row, path);
    track.setIsFavorite(true);
    track.setIsInCoverWorkspace(true);
    return track;
}

} // namespace

class FavoritesOrderTest : public StoreFixture {
protected:
    std::string shown()
    {
        const std::string titles = SortRows::titles(store->order().favoriteTracks());
        EXPECT_EQ(SortRows::titles(store->selection().tracks(LibraryTab::Favorites)), titles);
        return titles;
    }
    int sorts() { return store->order().work().favoriteSorts; }
};

TEST_F(FavoritesOrderTest, TheDefaultGroupsByGenre)
{
    const std::pair<std::vector<SortRow>, const char*> cases[] = {
        {{{"x"}, {"a", " "}, {"c", "Techno"}, {"b", "House"}}, "b c a x"},
        {{{"2", "House"}, {"10", "House"}}, "10 2"}, // not by value here
        {{{"b", "2 Step"}, {"a", "10 Step"}}, "a b"},
        {{{"b", "house"}, {"a", " House\n"}, {"C", "HOUSE"}}, "a b C"},
        {{{"A", "House"}, {"a", "house"}}, "A a"},
    };
    for (const auto& [rows, expected] : cases) {
        QList<Track> tracks;
        for (const SortRow& row : rows)
            tracks.append(liked(row));
        fill(tracks);
        EXPECT_EQ(shown(), expected);
    }
}

TEST_F(FavoritesOrderTest, AClickOnAHeadingSortsAndTurns)
{
    fill({liked({"b", "House", "MP3", "90"}), liked({"10", "Ambient", "FLAC"}), liked({"2", "", "AIFF", "120"})});
    Order& order = store->order();
    QSignalSpy changes(&workspace(), &Workspace::orderChanged);
    EXPECT_EQ(shown(), "10 b 2");
    order.activateFavoriteSortFromHeader(TrackSortField::Name);
    EXPECT_EQ(shown(), "2 10 b") << "the playlist's order of names";
    order.activateFavoriteSortFromHeader(TrackSortField::Name);
    EXPECT_EQ(shown(), "b 10 2");
    EXPECT_EQ(preferences.favoriteSortDirection.get(), QStringLiteral("descending"));
    order.activateFavoriteSortFromHeader(TrackSortField::BPM);
    EXPECT_EQ(shown(), "b 2 10") << "another field begins ascending";
    EXPECT_EQ(changes.size(), 3) << "one signal each";
    order.activateFavoriteSortFromHeader(TrackSortField::Original);
    EXPECT_EQ(preferences.favoriteSortField.get(), QStringLiteral("bpm"));
    order.setTrackSortField(TrackSortField::Original, LibraryTab::Favorites);
    EXPECT_EQ(shown(), "10 b 2");
    EXPECT_EQ(order.trackSortField(LibraryTab::Playlist), TrackSortField::Original) << "a choice of its own";
}

TEST_F(FavoritesOrderTest, RowsAreSortedAgainOnlyWhenSomethingMovesThem)
{
    const Track a = liked({"a", "House"});
    const Track b = liked({"b", "House"});
    const Track other = SortRows::track({"o", "Ambient"});
    fill({b, a, other});
    EXPECT_EQ(shown(), "a b");
    const int before = sorts();

    replace(other, {{&AudioTags::genre, "Techno"}});
    replace(a, {{&AudioTags::comment, "prime"}});
    EXPECT_EQ(shown(), "a b");
    EXPECT_EQ(store->order().favoriteTracks().first().tags().comment, QStringLiteral("prime"));
    store->favorites().removeFromFavorites({a.id()}, true);
    EXPECT_EQ(shown(), "b");
    EXPECT_EQ(sorts(), before);

    store->favorites().toggleFavorites({other.id(), a.id()});
    EXPECT_EQ(shown(), "a b o");
    EXPECT_EQ(sorts(), before + 1);
    replace(b, {{&AudioTags::genre, "Ambient"}});
    EXPECT_EQ(shown(), "b a o");
    preferences.favoriteGenreFilter.set(QStringLiteral("House"));
    EXPECT_EQ(shown(), "a");
    replace(b, {{&AudioTags::genre, "House"}});
    EXPECT_EQ(shown(), "a b") << "it passes the filter now";
    QList<Track> rows = workspace().tracks().rows();
    rows.append(liked({"aa", "House"}));
    fill(rows);
    EXPECT_EQ(shown(), "a aa b");
}

TEST_F(FavoritesOrderTest, EstimatedTemposCountOnceTheirRoundIsOver)
{
    const Track a = liked({"a", "", "", "100"});
    const Track b = liked({"b", "", "", "110"});
    fill({a, b});
    store->order().setTrackSortField(TrackSortField::BPM, LibraryTab::Favorites);
    EXPECT_EQ(shown(), "a b");
    store->order().setEstimatedBPM(a.id(), QStringLiteral("120"));
    EXPECT_EQ(shown(), "a b");
    EXPECT_TRUE(store->order().settleBPMSort());
    EXPECT_EQ(shown(), "b a");
    EXPECT_FALSE(store->order().settleBPMSort()) << "nothing more is owed";
    store->order().setTrackSortField(TrackSortField::Name, LibraryTab::Favorites);
    store->order().setEstimatedBPM(a.id(), QStringLiteral("90"));
    store->order().setTrackSortField(TrackSortField::BPM, LibraryTab::Favorites);
    EXPECT_EQ(shown(), "a b") << "back before anybody looked at the names";
}
