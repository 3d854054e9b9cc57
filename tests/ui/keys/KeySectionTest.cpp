#include "support/WindowFixture.h"

#include "ui/cells/KeyTexts.h"
#include "ui/keys/KeySection.h"
#include "ui/keys/KeyWheel.h"
#include "ui/sections/SectionBody.h"
#include "ui/sections/SectionHeader.h"
#include "ui/window/StatusStrip.h"

namespace {

MusicalKey key(const char* code)
{
    return *MusicalKey::fromCamelotCode(QString::fromLatin1(code));
}

/// The key section with the rows a to d: determined as 10B, undetermined, new, determined as 10B.
class KeySectionTest : public WindowFixture {
protected:
    KeySectionTest()
    {
        keyOf = [this](const QUrl& url) { return url == b.url() ? std::nullopt : std::optional(analysis); };
        workspace().setList(Track::MetadataDestination::MusicalKey, {a, b, c, d});
        dashboard.activateTab(LibraryTab::MusicalKey);
        show();
        store->keys().analyzeMusicalKey(ids({a, b, d}));
        turn();
        clock.advance(async::seconds(0.2)); // the facts and the counts of the wheel follow a little later
        dashboard.calls.clear();
    }

    SectionView& section() { return window->section(LibraryTab::MusicalKey); }
    KeySection& keys() { return static_cast<KeySection&>(*section().parts()); }
    QModelIndex cell(const Track& row, TrackColumn column)
    {
        return WindowFixture::cell(*section().model().rowOf(row.id()), column, LibraryTab::MusicalKey);
    }
    QString said(const Track& row, TrackColumn column) { return cell(row, column).data().toString(); }
    QString tooltip(const Track& row, TrackColumn column)
    {
        return static_cast<TrackDelegate*>(table(LibraryTab::MusicalKey).itemDelegate())
            ->tooltip(cell(row, column), QRect(0, 0, 500, 52));
    }

    StatusStrip& strip() { return *window->findChild<StatusStrip*>(); }
    /// What the status line says of work in the background.
    QString work() { return strip().accessibleDescription(); }

    const MusicalKeyAnalysis analysis{key("10B"), 0.744, -33, {{key("10B"), 1}, {key("11B"), 0.5}, {key("10A"), 0.25}}};
    const Track a = fullTrack(QStringLiteral("a"));
    const Track b = track(QStringLiteral("b - 8A - 124.mp3"));
    const Track d = track(QStringLiteral("d.mp3"));
};

TEST_F(KeySectionTest, CellsSayWhatIsKnown)
{
    const struct {
        const Track& row;
        TrackColumn column;
        const char* text;
        const char* spoken;
        const char* tooltip;
    } kCases[]{
        {a, TrackColumn::KeyInTag, "Am", "Am", "Am · 8A · ля минор"},
        {b, TrackColumn::KeyInTag, "8A", "8A · из имени", "8A · ля минор · В теге пусто, код стоит в имени файла"},
        {c, TrackColumn::KeyInTag, "", "Не указано", ""},
        {a, TrackColumn::FoundKey, "10B", "10B · ре мажор", "10B · ре мажор"},
        {b, TrackColumn::FoundKey, "Без результата", "Без результата", "Без результата"},
        {c, TrackColumn::FoundKey, "", "Не указано", ""},
        {a, TrackColumn::KeyConfidence, "0,74", "0,74", "Уверенность · 0,74"},
        {a, TrackColumn::KeyVariants, "11B · 10A", "11B · 10A", "11B · ля мажор · 0,50\n10A · си минор · 0,25"},
    };
    for (const auto& each : kCases) {
        EXPECT_EQ(said(each.row, each.column), QString::fromUtf8(each.text));
        EXPECT_EQ(cell(each.row, each.column).data(Qt::AccessibleTextRole).toString(), QString::fromUtf8(each.spoken));
        EXPECT_EQ(tooltip(each.row, each.column), QString::fromUtf8(each.tooltip)) << each.text;
    }
}

TEST_F(KeySectionTest, FactsAndButtonsFollowTheQueue)
{
    window->resize(1440, 900); // room for all buttons
    EXPECT_EQ(section().header().facts(), QStringLiteral("4 файла · определено 2 · без результата 1"));
    store->playback().playbackStateDidChange(true, std::nullopt);
    dashboard.select(ids({c}), c.id());
    turn();
    QTest::mouseClick(&keys().selectedButton(), Qt::LeftButton);
    EXPECT_EQ(dashboard.last("analyzeMusicalKey").ids, ids({c}));
    EXPECT_EQ(work(), QStringLiteral("Определение тональности: 0 из 1"));
    QTest::mouseClick(&keys().allButton(), Qt::LeftButton); // the others join
    EXPECT_EQ(dashboard.last("analyzeMusicalKey").ids, ids({a, b, c, d}));
    EXPECT_EQ(said(a, TrackColumn::FoundKey), QStringLiteral("В очереди"));
    clock.advance(async::seconds(0.2));
    EXPECT_EQ(section().header().facts(), QStringLiteral("4 файла · в очереди 4 · пауза"));
    EXPECT_EQ(work(), QStringLiteral("Определение тональности: 0 из 4"));
    EXPECT_FALSE(keys().writeButton().isEnabled());
    EXPECT_FALSE(keys().allButton().isEnabled()) << "all are queued";

    store->playback().playbackStateDidChange(false, std::nullopt);
    clock.advance(async::seconds(1));
    EXPECT_EQ(said(c, TrackColumn::FoundKey), QStringLiteral("Определяется…"));
    ThemeButton* stop = button(strip(), QStringLiteral("Остановить"));
    ASSERT_TRUE(stop && stop->isVisible());
    QTest::mouseClick(stop, Qt::LeftButton);
    EXPECT_EQ(said(c, TrackColumn::FoundKey), QString());
    EXPECT_EQ(work(), QString());
    EXPECT_FALSE(stop->isVisible());
    EXPECT_TRUE(keys().allButton().isEnabled());
}

TEST_F(KeySectionTest, CommandsReachTheRowsTheyName)
{
    EXPECT_FALSE(keys().selectedButton().isEnabled());
    dashboard.select(ids({c}), c.id());
    turn();
    QTest::mouseClick(&keys().writeButton(), Qt::LeftButton);
    EXPECT_EQ(dashboard.last("writeMusicalKeyTags").ids, ids({a, b, c, d}));
    emit section().contextMenuWanted({});
    auto* opened = window->findChild<QMenu*>();
    ASSERT_TRUE(opened);
    const auto offers = [&](const QString& text) {
        return action(*opened, text) && action(*opened, text)->isEnabled();
    };
    EXPECT_TRUE(offers(QStringLiteral("Определить выбранные")) && offers(QStringLiteral("Удалить из тональности")));
    EXPECT_FALSE(offers(QStringLiteral("Записать тональность"))) << "there is no result";
    opened->close();
}

TEST_F(KeySectionTest, ASegmentSelectsTheRowsInItsKey)
{
    emit keys().panel().wheel().keyChosen(key("10B"));
    EXPECT_EQ(workspace().selectedIDs(), ids({a, d}));
    EXPECT_EQ(workspace().selectedID(), a.id());
    emit keys().panel().wheel().keyChosen(key("1A")); // no row has it
    EXPECT_EQ(workspace().selectedIDs(), ids({a, d}));
}

TEST_F(KeySectionTest, KeysMoveOnTheWheelWhileItHasTheFocus)
{
    KeyWheel& wheel = keys().panel().wheel();
    wheel.setFocus();
    const QString before = wheel.accessibleDescription();
    QTest::keyClick(window->windowHandle(), Qt::Key_Right);
    EXPECT_NE(wheel.accessibleDescription(), before);
    EXPECT_EQ(dashboard.count("seekBack") + dashboard.count("nextTrack"), 0);
}

} // namespace

TEST(KeyTextsTest, NamesAndNeighbours)
{
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    const std::tuple<const char*, const char*, const char*> kCases[] = {{"10B", "ре мажор", "9B 11B 10A"},
                                                                        {"1A", "соль-диез минор", "12A 2A 1B"},
                                                                        {"12B", "ми мажор", "11B 1B 12A"},
                                                                        {"6B", "си-бемоль мажор", "5B 7B 6A"}};
    for (const auto& [code, name, mixes] : kCases) {
        QStringList codes;
        for (const MusicalKey& other : KeyTexts::compatible(key(code)))
            codes.append(other.camelot());
        EXPECT_EQ(codes.join(u' '), QString::fromLatin1(mixes)) << code;
        EXPECT_EQ(KeyTexts::name(key(code)), QString::fromUtf8(name));
    }
    EXPECT_EQ(KeyTexts::tuning(-32.6), QStringLiteral("−33 цента"));
    EXPECT_EQ(KeyTexts::tuning(0.4), QStringLiteral("0 центов"));
    EXPECT_EQ(KeyTexts::tuning(21), QStringLiteral("+21 цент"));
}

TEST(KeyPanelTest, LeavesWhereTheListNeedsTheRoom)
{
    const Theme theme(Appearance::Dark);
    SectionBody body;
    auto* panel = new KeyPanel(theme, &body);
    body.setPanel(panel, SectionBody::Narrow::Without);
    body.show();
    const struct {
        int width;
        int panel; // 0 for none
    } kCases[]{
        {1224, KeyPanel::kWidest}, {1130, 394}, {840, KeyPanel::kNarrowest}, {700, 0}, {840, KeyPanel::kNarrowest}};
    for (const auto& each : kCases) {
        body.resize(each.width, 500);
        EXPECT_EQ(panel->isHidden() ? 0 : panel->width(), each.panel) << each.width;
        EXPECT_EQ(body.content().width(), each.width - each.panel) << each.width;
    }
}
