#include "support/WindowFixture.h"

#include "ui/cells/TempoText.h"
#include "ui/player/PlayerBar.h"
#include "ui/tempo/TapButton.h"
#include "ui/tempo/TempoMenu.h"

namespace {

Track withTag(const char* bpm)
{
    return TagTexts::on(Track::unread(FileURL::fromPath(QStringLiteral("/music/a.mp3"))), {{&AudioTags::bpm, bpm}});
}

} // namespace

TEST(TapTempo, FollowsTheLineThroughTheTaps)
{
    const std::tuple<const char*, std::vector<double>, std::optional<int>> kCases[] = {
        {"three say nothing", {0, 0.5, 1}, std::nullopt},
        {"even", {10, 10.5, 11, 11.5}, 120},
        {"one late finger", {0, 0.5, 1.02, 1.5, 2, 2.5, 3, 3.5}, 120},
        {"the last one early", {0, 0.47, 0.94, 1.41, 1.88, 2.30}, 130},
        {"a pause begins anew", {0, 0.5, 1, 1.5, 3.6, 4.0, 4.4, 4.8}, 150},
        {"nobody mixes that fast", {0, 0.1, 0.2, 0.3}, std::nullopt},
        {"all at once", {1, 1, 1, 1}, std::nullopt},
    };
    for (const auto& [what, seconds, bpm] : kCases) {
        TapTempo taps;
        for (const double second : seconds)
            taps.tap(async::seconds(second));
        EXPECT_EQ(taps.bpm(), bpm) << what;
    }
    TapTempo changing; // many slow beats do not hold the later ones back
    double now = 0;
    for (int beat = 0; beat < 200; ++beat)
        changing.tap(async::seconds(now += beat < 100 ? 0.6 : 0.4));
    EXPECT_EQ(changing.bpm(), 150);
}

TEST(TempoText, AnalysisComesFirstThenTheEstimateThenTheTag)
{
    const std::tuple<const char*, PlaylistBPMState, QString> kCases[] = {
        {"128", {true, QStringLiteral("64")}, QStringLiteral("…")},
        {"128", {false, QStringLiteral(" 64 ")}, QStringLiteral("≈ 64")},
        {" 127.98 ", {false, QStringLiteral("  ")}, QStringLiteral("127.98")},
        {" 127.98 ", {}, QStringLiteral("127.98")},
        {" ", {}, QStringLiteral("—")},
    };
    for (const auto& [tag, state, shown] : kCases)
        EXPECT_EQ(TempoText::bpmDisplayText(withTag(tag), state), shown);
}

/// Tempos in the window.
class TempoTest : public WindowFixture {
protected:
    Tempo& tempo() { return store->tempo(); }
    TapButton& tapButton() { return window->findChild<PlayerBar*>()->tapButton(); }
    QString shown(int row) { return cell(row, TrackColumn::BPM).data().toString(); }
    void tapAt(std::initializer_list<double> pauses)
    {
        for (const double pause : pauses) {
            clock.advance(async::seconds(pause));
            QTest::mouseClick(&tapButton(), Qt::LeftButton);
        }
    }
};

TEST_F(TempoTest, RowsFollowTheEstimates)
{
    const QList<Track> tracks = showRows(3);
    EXPECT_EQ(shown(1), QStringLiteral("—"));
    const QAbstractItemModel& model = *table().model();
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    store->tempoChoices().setTempo({tracks[1].id()}, 126);
    EXPECT_EQ(shown(1), QStringLiteral("≈ 126"));
    settle();
    ASSERT_EQ(changes.count(), 1) << "views and assistive tools are told by the model alone";
    EXPECT_EQ(changes[0][0].toModelIndex().data().toString(), QStringLiteral("≈ 126"));
    const QString told = TempoText::toolTip(tempo(), tracks[1].id());
    EXPECT_EQ(told, QStringLiteral("Определён темп: 126 BPM\nУверенность: 100 %"));
    EXPECT_EQ(TempoText::toolTip(tempo(), tracks[0].id()), QString());
}

TEST_F(TempoTest, TheMenuOffersWhatTheRowsAllow)
{
    QList<Track> tracks = rows(4);
    tracks[2] = TagTexts::on(tracks[2], {{&AudioTags::bpm, "100"}});
    tracks[3] = TagTexts::on(tracks[3], {{&AudioTags::bpm, "~"}});
    fill(tracks);
    show();
    store->tempoChoices().setTempo({tracks[1].id()}, 126);
    const struct {
        QSet<TrackID> ids;
        bool scales, writes, analyses;
    } kCases[] = {
        {{tracks[0].id()}, false, false, true},
        {{tracks[1].id()}, true, true, true},
        {{tracks[2].id()}, true, false, false},
        {{tracks[3].id()}, false, false, false}, // nothing that could be doubled
        {ids(tracks), true, true, true},
    };
    for (const auto& each : kCases) {
        QMenu menu;
        TempoMenu::fill(menu, context(), each.ids);
        const std::pair<QString, bool> kActions[] = {{QStringLiteral("Удвоить темп"), each.scales},
                                                     {QStringLiteral("Уменьшить темп вдвое"), each.scales},
                                                     {QStringLiteral("Записать темп в тег"), each.writes},
                                                     {QStringLiteral("Определить темп заново"), each.analyses}};
        for (const auto& [text, isEnabled] : kActions) {
            QAction* found = action(menu, text);
            ASSERT_TRUE(found) << qPrintable(text);
            EXPECT_EQ(found->isEnabled(), isEnabled) << qPrintable(text);
        }
    }
}

TEST_F(TempoTest, TheMenuOffersTheAlternativesOfAnAnalysis)
{
    analyzer = [](const QUrl&, const BPMAnalysisMode&, const std::stop_token&) {
        return BPMAnalysisOutcome{BPMAnalysisOutcome::Case::Success, {128, 0.9, {{128, 1}, {64, 0.5}}}};
    };
    const QList<Track> tracks = showRows(2);
    store->tempoChoices().setTempo({tracks[0].id()},
                                   100); // as after a start: the estimate is known, what else it may be is not
    tempo().detectBPM(ids({tracks[1]}));
    settle();
    const struct {
        const Track& row;
        AppLanguage language;
        QStringList offered;
    } kCases[]{
        {tracks[0], AppLanguage::Russian, {QStringLiteral("Другие варианты даст новое определение")}},
        {tracks[1],
         AppLanguage::Russian,
         {QStringLiteral("128 BPM · сила 100 %"), QStringLiteral("64 BPM · сила 50 %")}},
        {tracks[1],
         AppLanguage::English,
         {QStringLiteral("128 BPM · strength 100%"), QStringLiteral("64 BPM · strength 50%")}},
    };
    for (const auto& each : kCases) {
        VelmoraLocalization::setLanguage(each.language);
        QMenu menu;
        TempoMenu::fill(menu, context(), {each.row.id()});
        QStringList offered;
        for (int place = 0; !menu.actions().at(place)->isSeparator(); ++place)
            offered.append(menu.actions().at(place)->text());
        EXPECT_EQ(offered, each.offered);
        EXPECT_EQ(menu.actions().first()->isEnabled(), each.offered.size() > 1);
    }
    QMenu menu;
    TempoMenu::fill(menu, context(), {tracks[1].id()});
    EXPECT_TRUE(menu.actions().at(0)->isChecked());
    menu.actions().at(1)->trigger();
    EXPECT_EQ(dashboard.last("setTempo").text, QStringLiteral("64"));
}

TEST_F(TempoTest, TapsAreSeenWhereTheButtonHasNoRoom)
{
    const QList<Track> tracks = showRows(1);
    window->resize(900, 620);
    turn();
    ASSERT_TRUE(tapButton().isHidden());
    workspace().setSelection(ids(tracks), tracks[0].id());
    const auto tap = [this] {
        clock.advance(async::seconds(0.5));
        QTest::keyClick(window.get(), Qt::Key_T);
        return statusText();
    };
    tap();
    tap();
    EXPECT_EQ(tap(), QStringLiteral("Нажатий в такт: 3"));
    EXPECT_EQ(tap(), QStringLiteral("Темп нажатий: 120 BPM"));
    clock.advance(async::seconds(3));
    EXPECT_EQ(dashboard.last("setTempo").text, QStringLiteral("120"));

    window->resize(1600, 900);
    turn();
    ASSERT_FALSE(tapButton().isHidden());
    clock.advance(async::seconds(10));
    tap();
    EXPECT_EQ(statusText(), QString()) << "the button says it";
}

TEST_F(TempoTest, TapsSetTheTempoOfTheTrackShown)
{
    const QList<Track> tracks = showRows(2);
    EXPECT_FALSE(tapButton().isEnabled()) << "nothing to tap to";
    workspace().setSelection({tracks[1].id()}, tracks[1].id());
    ASSERT_TRUE(tapButton().isEnabled());
    tapAt({0, 0.5, 0.5});
    clock.advance(async::seconds(5));
    EXPECT_EQ(dashboard.count("setTempo"), 0) << "three taps say nothing";
    tapAt({0, 0.5, 0.5, 0.5});
    EXPECT_EQ(tapButton().text(), QStringLiteral("120"));
    EXPECT_EQ(dashboard.count("setTempo"), 0) << "not before the end";
    QTest::keyClick(window.get(), Qt::Key_T);
    clock.advance(async::seconds(3));
    EXPECT_EQ(dashboard.count("setTempo"), 1);
    EXPECT_EQ(dashboard.last("setTempo").ids, ids({tracks[1]}));
    EXPECT_GT(dashboard.last("setTempo").text.toInt(), 100);
    EXPECT_EQ(tapButton().text(), QStringLiteral("TAP"));

    tapAt({0, 0.5, 0.5, 0.5});
    workspace().setSelection({tracks[0].id()}, tracks[0].id());
    clock.advance(async::seconds(3));
    EXPECT_EQ(dashboard.count("setTempo"), 1) << "taps are not for another track";
}

TEST_F(TempoTest, OneKeyEachDoublesAndHalves)
{
    const QList<Track> tracks = showRows(2);
    QTest::keyClick(window.get(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(dashboard.count("doubleTempo"), 0) << "nothing is selected";
    workspace().setSelection(ids(tracks), tracks[1].id());
    store->tempoChoices().setTempo(ids(tracks), 100);
    QTest::keyClick(window.get(), Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(window.get(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(dashboard.count("doubleTempo"), 1);
    EXPECT_EQ(dashboard.count("halveTempo"), 1);
    EXPECT_EQ(dashboard.last("halveTempo").ids, ids(tracks));
}
