#include "support/StoreFixture.h"

using Kind = ListChange::Kind;

TEST_F(StoreFixture, TellsHowTheListChanged)
{
    Track starred = b;
    starred.setIsInCoverWorkspace(true);
    Track moved = a.withID(a.id());
    const Track elsewhere(a.id(), FileURL::fromPath(QStringLiteral("/other/a.mp3")));

    const struct {
        const char* name;
        QList<Track> before, after;
        std::optional<Kind> kind; ///< nothing: no signal at all
        QList<int> rows;
        int first = 0;
        QList<TrackID> gone = {};
    } cases[] = {
        {"same values", {a, b}, {a, b}, {}, {}, 0},
        {"one value", {a, b}, {a, starred}, Kind::Contents, {1}, 0},
        {"a renamed file keeps its row", {a, b}, {elsewhere, b}, Kind::Contents, {0}, 0},
        {"appended", {a}, {a, b}, Kind::Appended, {}, 1},
        {"into the empty list", {}, {a, b}, Kind::Appended, {}, 0},
        {"appended with a change before", {b}, {starred, a}, Kind::Structure, {}, 0},
        {"removed", {a, b}, {b}, Kind::Removed, {}, 0, {a.id()}},
        {"removed at the end, with a change before", {b, a}, {starred}, Kind::Removed, {0}, 0, {a.id()}},
        {"removed all", {a, b}, {}, Kind::Removed, {}, 0, {a.id(), b.id()}},
        {"removed, and another came", {a, b, c}, {c, a}, Kind::Structure, {}, 0},
        {"swapped", {a, b}, {b, a}, Kind::Structure, {}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fill({});
        fill(c.before);
        std::optional<ListChange> seen;
        const auto connection = QObject::connect(&workspace(), &Workspace::tracksChanged, &workspace(),
                                                 [&](const ListChange& change) { seen = change; });
        fill(c.after);
        QObject::disconnect(connection);
        ASSERT_EQ(seen.has_value(), c.kind.has_value());
        if (seen) {
            EXPECT_EQ(seen->kind, *c.kind);
            EXPECT_EQ(seen->rows, c.rows);
            EXPECT_EQ(seen->first, c.first);
            EXPECT_EQ(seen->gone, c.gone);
        }
        for (int row = 0; row < c.after.size(); ++row) {
            EXPECT_EQ(workspace().tracks().indexOf(c.after[row].id()), row);
            EXPECT_EQ(workspace().tracks().indexOfURL(c.after[row].url()), row);
        }
        EXPECT_EQ(workspace().tracks().indexOfURL(a.url()).has_value(),
                  std::ranges::any_of(c.after, [&](const Track& t) { return t.url() == a.url(); }));
    }
}

TEST_F(StoreFixture, RevisionRisesWithEveryChangeButThatOfAStar)
{
    fill({a});
    const int before = workspace().playlistAnalysisRevision();
    store->favorites().toggleFavorites({a.id()});
    EXPECT_EQ(workspace().playlistAnalysisRevision(), before);
    fill({now(a), track(QStringLiteral("b.mp3"))});
    EXPECT_EQ(workspace().playlistAnalysisRevision(), before + 1);
    clock.advance(async::seconds(10));
}
