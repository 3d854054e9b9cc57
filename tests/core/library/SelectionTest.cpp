#include "support/StoreFixture.h"

TEST_F(StoreFixture, ActiveSelectionFallsBackOnTheFocus)
{
    const Track a = favorite(QStringLiteral("a.mp3"));
    fill({a, b});
    EXPECT_TRUE(workspace().activeSelection().isEmpty());
    workspace().setSelection({}, a.id());
    EXPECT_EQ(workspace().activeSelection(), ids({a}));
    workspace().setSelection(ids({a, b}), a.id());
    EXPECT_EQ(workspace().activeSelection(), ids({a, b}));
}

TEST_F(StoreFixture, SelectionSurvivesASectionSwitch)
{
    const Track a = favorite(QStringLiteral("a.mp3"));
    using State = Selection::State;

    const struct {
        const char* name;
        State remembered;
        QList<Track> later; ///< the list when the section is entered again
        State expected;
    } cases[] = {
        {"all still there", {ids({a, b}), b.id()}, {a, b, c}, {ids({a, b}), b.id()}},
        {"one is gone, the lone rest is focused", {ids({a, b}), b.id()}, {a, c}, {ids({a}), a.id()}},
        {"the focus is gone, two rest", {ids({a, b, c}), c.id()}, {a, b}, {ids({a, b}), std::nullopt}},
        {"a focus alone is selected", {{}, b.id()}, {a, b}, {ids({b}), b.id()}},
        {"nothing is left", {ids({b}), b.id()}, {a}, {{}, std::nullopt}},
        {"left the playlist but not the list", {ids({a, b}), a.id()}, {}, {ids({b}), b.id()}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        fill({a, b, c});
        workspace().setSelection(test.remembered.ids, test.remembered.focusedID);
        store->selection().rememberSelection(LibraryTab::Playlist);
        workspace().setSelection({}, std::nullopt);
        if (test.later.isEmpty()) {
            Track out = a;
            out.setIsInPlaylist(false);
            fill({out, b, c});
        } else {
            fill(test.later);
        }
        EXPECT_EQ(store->selection().selectionState(LibraryTab::Playlist), test.expected);
    }
    EXPECT_EQ(store->selection().selectionState(LibraryTab::Covers), State()) << "never remembered";
}

TEST_F(StoreFixture, EverySectionShowsItsRows)
{
    const Track b = favorite(QStringLiteral("b.mp3"));
    Track coverOnly = track(QStringLiteral("c.mp3"));
    coverOnly.setIsInPlaylist(false);
    coverOnly.setIsInCoverWorkspace(true);
    const Track analysed = track(QStringLiteral("d.mp3"));
    fill({b, coverOnly, a});
    workspace().setList(Track::MetadataDestination::Analysis, {analysed});

    const QList<QPair<LibraryTab, QStringList>> expected{
        {LibraryTab::Playlist, {QStringLiteral("a"), QStringLiteral("b")}},
        {LibraryTab::Favorites, {QStringLiteral("b")}},
        {LibraryTab::Covers, {QStringLiteral("b"), QStringLiteral("c")}},
        {LibraryTab::Converter, {QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("a")}},
        {LibraryTab::Analysis, {QStringLiteral("d")}},
        {LibraryTab::MusicalKey, {}},
        {LibraryTab::Duplicates, {}},
    };
    for (const auto& [tab, rows] : expected) {
        EXPECT_EQ(titles(store->selection().tracks(tab)), rows) << qPrintable(rawValue(tab));
        for (const Track& row : store->selection().tracks(tab))
            EXPECT_TRUE(store->selection().isSelectable(tab, row.id()));
    }
    workspace().setSelection({}, coverOnly.id());
    EXPECT_FALSE(store->selection().selectedTrack()) << "not visible in the playlist";
    workspace().setActiveTab(LibraryTab::Covers);
    EXPECT_EQ(store->selection().selectedTrack()->id(), coverOnly.id());
}

TEST_F(StoreFixture, SelectsAllVisibleRows)
{
    const Track b = favorite(QStringLiteral("b.mp3"));
    fill({a, b});
    store->selection().selectAll();
    EXPECT_EQ(workspace().selectedIDs(), ids({a, b}));
    EXPECT_EQ(workspace().selectedID(), a.id());
    workspace().setActiveTab(LibraryTab::Favorites);
    store->selection().selectAll();
    EXPECT_EQ(workspace().selectedIDs(), ids({b}));
}
