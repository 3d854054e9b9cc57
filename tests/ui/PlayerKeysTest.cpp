#include "support/WindowFixture.h"

#include "ui/player/PlayerBar.h"
#include "ui/player/VolumeSlider.h"
#include "ui/tempo/TapButton.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>

class PlayerKeysTest : public WindowFixture {
protected:
    /// What the keys asked of the dashboard, e.g. "seekBack".
    QStringList asked()
    {
        QStringList names;
        for (const FakeDashboard::Call& call : std::as_const(dashboard.calls)) {
            if (call.name != QLatin1StringView("select"))
                names += call.text.isEmpty() ? call.name : call.name + u' ' + call.text;
        }
        return names;
    }
    QStringList press(QWidget& focused, int key, Qt::KeyboardModifiers modifiers = {})
    {
        focused.setFocus(Qt::TabFocusReason);
        turn();
        dashboard.calls.clear();
        QTest::keyClick(&focused, static_cast<Qt::Key>(key), modifiers);
        return asked();
    }
};

TEST_F(PlayerKeysTest, InAListTheyBelongToThePlayerAndToTheRows)
{
    const QList<Track> tracks = showRows(4);
    EXPECT_EQ(press(table(), Qt::Key_Delete), QStringList()) << "nothing is selected";
    const QSet<TrackID> chosen = ids({tracks[0], tracks[2]});
    dashboard.select(chosen, tracks[2].id());
    const struct {
        int key;
        Qt::KeyboardModifiers modifiers;
        const char* asked;
        bool isForRows = false;
    } kCases[]{
        {Qt::Key_F, {}, "favorite", true},
        {Qt::Key_Z, Qt::ControlModifier, "undo"},
        {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier, "redo"},
        {Qt::Key_O, Qt::ControlModifier, "addFiles"},
        {Qt::Key_Delete, {}, "remove", true},
        {Qt::Key_Backspace, {}, "remove", true},
        {Qt::Key_Delete, Qt::ShiftModifier, "trash", true},
        {Qt::Key_Backspace, Qt::ControlModifier, "trash", true},
        {Qt::Key_Delete, Qt::AltModifier, nullptr},
        {Qt::Key_Space, {}, "playPause"},
        {Qt::Key_M, {}, "toggleMute"},
        {Qt::Key_T, {}, "tapTempo"},
        {Qt::Key_Left, {}, "seekBack"},
        {Qt::Key_Right, {}, "seekForward"},
        {Qt::Key_Up, {}, "previousTrack"},
        {Qt::Key_Down, {}, "nextTrack"},
        {Qt::Key_Left, Qt::ControlModifier, "previousTrack"},
        {Qt::Key_Right, Qt::ControlModifier, "nextTrack"},
        {Qt::Key_Space, Qt::ShiftModifier, nullptr},
        {Qt::Key_Down, Qt::ShiftModifier, nullptr},
        {Qt::Key_Left, Qt::AltModifier, nullptr},
        {Qt::Key_3, Qt::ControlModifier, "showCovers"},
    };
    for (const auto& each : kCases) {
        const QStringList expected = each.asked ? QStringList{QString::fromLatin1(each.asked)} : QStringList();
        EXPECT_EQ(press(table(), each.key, each.modifiers), expected) << each.key;
        EXPECT_TRUE(!each.isForRows || dashboard.calls.last().ids == chosen) << each.key;
    }
    EXPECT_TRUE(now(tracks[2]).isFavorite()) << "starred, taken back and done again";
    for (LibraryTab tab : {LibraryTab::Covers, LibraryTab::Analysis}) {
        open(tab);
        QWidget& list = window->section(tab).list();
        EXPECT_EQ(press(tab == LibraryTab::Covers ? list : *window, Qt::Key_Left),
                  QStringList{QStringLiteral("seekBack")});
    }
}

TEST_F(PlayerKeysTest, TheFocusKeepsWhatItNeeds)
{
    const QList<Track> tracks = showRows(3);
    dashboard.select(ids({tracks[0]}), tracks[0].id()); // there is something to tap to, and to double the tempo of
    QLineEdit line(QStringLiteral("abc"), window.get());
    QLineEdit readOnly(QStringLiteral("abc"), window.get());
    readOnly.setReadOnly(true);
    QPlainTextEdit text(QStringLiteral("abc"), window.get());
    QSpinBox number(window.get());
    QComboBox choice(window.get());
    choice.addItems({QStringLiteral("a"), QStringLiteral("b")});
    const std::pair<int, Qt::KeyboardModifiers> removals[]{{Qt::Key_Delete, {}},
                                                           {Qt::Key_Backspace, {}},
                                                           {Qt::Key_Delete, Qt::ShiftModifier},
                                                           {Qt::Key_Backspace, Qt::ControlModifier},
                                                           {Qt::Key_Delete, Qt::AltModifier}};
    for (QWidget* each : std::initializer_list<QWidget*>{&line, &readOnly, &text}) {
        each->show();
        for (const auto& [key, modifiers] : removals)
            EXPECT_EQ(press(*each, key, modifiers), QStringList()) << each->metaObject()->className() << " " << key;
    }
    line.clear();
    for (QWidget* each : std::initializer_list<QWidget*>{&line, &text, &number, &choice}) {
        each->show();
        for (int key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_M, Qt::Key_T, Qt::Key_F})
            EXPECT_EQ(press(*each, key), QStringList()) << each->metaObject()->className() << " " << key;
        if (each != &choice) { // which they open
            for (int key : {Qt::Key_Up, Qt::Key_Down})
                EXPECT_EQ(press(*each, key, Qt::AltModifier), QStringList()) << each->metaObject()->className();
            EXPECT_EQ(press(*each, Qt::Key_Space), QStringList()) << each->metaObject()->className();
        }
    }
    EXPECT_EQ(line.text(), QStringLiteral("mtf "));
    TapButton& taps = window->findChild<PlayerBar*>()->tapButton();
    EXPECT_EQ(taps.text(), QStringLiteral("TAP"));
    press(table(), Qt::Key_T);
    EXPECT_EQ(taps.text(), QStringLiteral("•")) << "else the line above proved nothing";
    auto& volume = *window->findChild<VolumeSlider*>();
    player.setVolume(0.5);
    EXPECT_EQ(press(volume, Qt::Key_Left), QStringList());
    EXPECT_EQ(press(volume, Qt::Key_Up), QStringList());
    EXPECT_EQ(press(volume, Qt::Key_Up), QStringList());
    EXPECT_NEAR(player.volumeState().value(), 0.55, 1e-4);
    EXPECT_EQ(press(volume, Qt::Key_Space), QStringList{QStringLiteral("playPause")});
}

TEST_F(PlayerKeysTest, SpaceOnAButtonPressesItOnce)
{
    const QList<Track> tracks = showRows(3);
    play(tracks[0]);
    auto* bar = window->findChild<PlayerBar*>();
    int clicked = 0;
    for (ThemeButton* each : bar->findChildren<ThemeButton*>()) {
        if (each->accessibleName() != QStringLiteral("Пауза"))
            continue;
        ++clicked;
        EXPECT_EQ(press(*each, Qt::Key_Space), QStringList{QStringLiteral("playRow")});
        EXPECT_FALSE(player.isPlaying());
    }
    EXPECT_EQ(clicked, 1);
}

TEST_F(PlayerKeysTest, ARowThatTheKeysReachedIsSeenAndExtendsFromThere)
{
    const QList<Track> tracks = showRows(200);
    const QList<Track>& shown = table().tracks().rows();
    for (int row : {150, 3, 199}) {
        const TrackID id = shown[row].id();
        workspace().setSelection({id}, id); // as the dashboard does
        turn();
        EXPECT_TRUE(table().viewport()->rect().contains(table().visualRect(table().model()->index(row, 0)))) << row;
    }
    const TrackID id = shown[20].id();
    workspace().setSelection({id}, id);
    turn();
    press(table(), Qt::Key_Down, Qt::ShiftModifier);
    press(table(), Qt::Key_Down, Qt::ShiftModifier);
    turn();
    EXPECT_EQ(workspace().selectedIDs(), ids({shown[20], shown[21], shown[22]}));
}

TEST_F(PlayerKeysTest, SectionsWithAnOwnSelectionFollowTheProgramsEvents)
{
    using Direction = Notifications::Direction;
    fill(rows(2));
    QList<ConversionItem> jobs;
    for (int i = 0; i < 3; ++i)
        jobs.append(ConversionItem{QUuid::createUuid(), rows(3)[i].url(), {}, {}});
    workspace().setConversionItems(jobs);
    show();
    open(LibraryTab::Converter);
    const auto row = [&] { return table(LibraryTab::Converter).currentIndex().row(); };
    for (const auto& [direction, expected] :
         {std::pair{Direction::Down, 0}, {Direction::Down, 1}, {Direction::Up, 0}, {Direction::Up, 0}}) {
        emit notifications.velmoraNavigateConversionItems(direction);
        EXPECT_EQ(row(), expected);
    }
    emit notifications.velmoraNavigateDuplicateItems(Direction::Down);
    EXPECT_EQ(row(), 0) << "not its event";
}
