#include "support/StoreFixture.h"

class PlaybackTest : public StoreFixture {
protected:
    Playback& playback() { return store->playback(); }
    const Track d = track(QStringLiteral("d.mp3"));
};

TEST_F(PlaybackTest, GoesOnBehindWhatIsRemoved)
{
    const struct {
        const char* name;
        std::optional<Track> current;
        QList<Track> removed;
        std::optional<Track> next;
        bool stops;
    } cases[] = {
        {"from the middle", b, {b}, c, false},
        {"with those behind it", b, {b, c}, d, false},
        {"from the end", d, {d}, c, false},
        {"from the end with those before it", d, {b, c, d}, a, false},
        {"nearest before, not the last", c, {c, d}, b, false},
        {"another before it", c, {a, c}, d, false},
        {"all", b, {a, b, c, d}, {}, true},
        {"not the current one", b, {a, c, d}, {}, false},
        {"nothing is played", {}, {a, b, c, d}, {}, false},
        {"not among the rows", track(QStringLiteral("x.mp3")), {a, b, c, d}, {}, false},
    };
    const QList<Track> rows = {a, b, c, d};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        fill(rows);
        workspace().setSelection(ids({a, b}), a.id());
        player = {};
        if (test.current)
            player.current = test.current->id();
        QSet<TrackID> removed = ids(test.removed);
        if (test.current && !ids(rows).contains(test.current->id()))
            removed.insert(test.current->id());
        playback().continuePlaybackAfterRemoving(removed, rows);
        EXPECT_EQ(player.stops, test.stops ? 1 : 0);
        ASSERT_EQ(player.played.size(), test.next ? 1 : 0);
        if (test.next) {
            EXPECT_EQ(player.played.first(), test.next->id());
            EXPECT_EQ(workspace().selectedIDs(), ids({*test.next}));
            EXPECT_EQ(workspace().selectedID(), test.next->id());
        } else {
            EXPECT_EQ(workspace().selectedID(), a.id());
        }
    }
    playback().setPlayer(nullptr);
    playback().continuePlaybackAfterRemoving(ids(rows), rows);
    EXPECT_EQ(player.stops, 0) << "nobody to ask";
}
