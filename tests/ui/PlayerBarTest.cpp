#include "support/PaintMeter.h"
#include "support/WindowFixture.h"

#include "ui/player/EnvelopeArea.h"
#include "ui/player/NowPlaying.h"
#include "ui/player/PlayerBar.h"
#include "ui/player/PositionBar.h"
#include "ui/player/VolumeControl.h"
#include "ui/player/VolumeSlider.h"
#include "ui/text/Texts.h"

#include <QAccessible>

class PlayerBarTest : public WindowFixture {
protected:
    /// Three rows on the screen, the first one played; files last 200 seconds.
    void start()
    {
        tracks = rows(3);
        fill(tracks);
        show();
        play(tracks[0]);
        ASSERT_TRUE(player.isPlaying());
    }
    EnvelopeArea& envelope() { return *window->findChild<EnvelopeArea*>(); }
    PositionBar& position() { return *window->findChild<PositionBar*>(); }
    VolumeControl& volume() { return *window->findChild<VolumeControl*>(); }
    VolumeSlider& slider() { return *volume().findChild<VolumeSlider*>(); }
    PlayerBar& bar() { return *window->findChild<PlayerBar*>(); }
    ThemeButton* button(const QString& name) { return WindowFixture::button(bar(), name); }
    /// The place of a fraction of the track.
    QPoint at(double fraction)
    {
        const double margin = Metrics::kKnob / 2.0;
        return {static_cast<int>(std::lround(margin + fraction * (envelope().width() - 2 * margin))),
                envelope().height() / 2};
    }
    /// One pixel of the area in seconds.
    double pixel() { return 200.0 / (envelope().width() - Metrics::kKnob) + 0.01; }
    double heard() { return audio.last()->currentTime(); }

    QList<Track> tracks;
};

TEST_F(PlayerBarTest, AFileThatOpensSlowlyShowsThatTheClickWasHeard)
{
    start();
    ThemeButton* pause = button(QStringLiteral("Пауза"));
    ASSERT_TRUE(pause);
    player.play(tracks[1]);
    clock.advance(async::seconds(0.15));
    EXPECT_FALSE(pause->isBusy());
    const QImage before = pause->grab().toImage();
    clock.advance(async::seconds(0.1));
    EXPECT_TRUE(pause->isBusy());
    EXPECT_NE(pause->grab().toImage(), before);
    EXPECT_EQ(pause->accessibleDescription(), QStringLiteral("Файл открывается…"));
    executor.runAll();
    EXPECT_FALSE(pause->isBusy());
}

TEST_F(PlayerBarTest, TimesOfATrack)
{
    const QString minus(QChar(0x2212));
    const struct {
        double time, duration;
        const char* elapsed;
        const char* remaining; // behind the minus sign
    } kCases[]{
        {0, 324, "0:00", "5:24"},        {134.9, 355, "2:14", "3:41"},       {59.999, 60, "0:59", "0:01"},
        {60, 60, "1:00", "0:00"},        {224.6, 224.6, "3:45", "0:00"},     {224.4, 224.4, "3:44", "0:00"},
        {224.55, 224.6, "3:44", "0:01"}, {3600, 7325, "1:00:00", "1:02:05"}, {-3, 10, "0:00", "0:10"},
        {12, 10, "0:10", "0:00"},        {std::nan(""), 10, "0:00", "0:10"},
    };
    for (const auto& each : kCases) {
        EXPECT_EQ(Texts::position(each.time, each.duration), QString::fromLatin1(each.elapsed)) << each.time;
        EXPECT_EQ(Texts::remaining(each.time, each.duration), minus + QString::fromLatin1(each.remaining)) << each.time;
    }
    for (double unknown : {0.0, -1.0, std::nan(""), double(INFINITY)}) {
        EXPECT_EQ(Texts::remaining(5, unknown), QStringLiteral("—"));
        EXPECT_EQ(Texts::position(5, unknown), QStringLiteral("0:05"));
    }
}

TEST_F(PlayerBarTest, AClickSeeksAndADragHoldsThePosition)
{
    start();
    player.toggle(); // a paused player jumps at once
    QTest::mousePress(&envelope(), Qt::LeftButton, {}, at(0.25));
    EXPECT_TRUE(player.isScrubbing());
    EXPECT_NEAR(heard(), 50, pixel());
    QTest::mouseMove(&envelope(), at(0.5));
    EXPECT_TRUE(player.isScrubbing());
    EXPECT_NEAR(heard(), 100, pixel());
    EXPECT_EQ(position().elapsedText(), Texts::position(envelope().shownTime(), 200));
    EXPECT_NEAR(envelope().shownTime(), 100, pixel());
    QTest::mouseMove(&envelope(), QPoint(envelope().width() + 90, 5));
    EXPECT_DOUBLE_EQ(heard(), 200) << "beyond the edge is the edge";
    QTest::mouseRelease(&envelope(), Qt::LeftButton, {}, at(0.75));
    EXPECT_FALSE(player.isScrubbing());
    EXPECT_NEAR(heard(), 150, pixel());
    QTest::mouseMove(&envelope(), at(0.1));
    EXPECT_NEAR(heard(), 150, pixel()) << "the hand has let go";
    QTest::mousePress(&envelope(), Qt::RightButton, {}, at(0.1));
    EXPECT_FALSE(player.isScrubbing());
}

TEST_F(PlayerBarTest, ATrackThatGoesAwayIsLetGo)
{
    start();
    QTest::mousePress(&envelope(), Qt::LeftButton, {}, at(0.5));
    player.stopAndClear();
    EXPECT_FALSE(player.isScrubbing());
    EXPECT_FALSE(envelope().isHeld());
    EXPECT_FALSE(envelope().isEnabled());
    EXPECT_EQ(position().elapsedText(), QStringLiteral("0:00"));
    QTest::mousePress(&envelope(), Qt::LeftButton, {}, at(0.5));
    EXPECT_FALSE(player.isScrubbing()) << "nothing to seek in";
    play(tracks[0]);
    QTest::mousePress(&envelope(), Qt::LeftButton, {}, at(0.5));
    window->hide();
    EXPECT_FALSE(player.isScrubbing()) << "a hidden window hears of no release";
}

TEST_F(PlayerBarTest, TheWheelOverThePositionObeysItsPreference)
{
    start();
    player.toggle();
    player.setVolume(0.5);
    player.scheduleSeek(100, false);
    wheel(envelope(), {}, {0, 120});
    EXPECT_NEAR(player.volumeState().value(), 0.55, 1e-4);
    EXPECT_DOUBLE_EQ(heard(), 100);
    preferences.waveformScrollAction.set(QStringLiteral("seek"));
    const std::tuple<QPoint, QPoint, bool, double> kCases[] = {
        {{}, {0, 120}, false, 103},     {{}, {0, -240}, false, 97},     {{}, {0, 60}, false, 97},   // half a notch
        {{}, {0, 60}, false, 100},      {{}, {0, 60}, false, 100},      {{}, {0, -60}, false, 100}, // turned round
        {{}, {0, -60}, false, 97},      {{0, 7}, {0, 7}, false, 97},    {{0, 7}, {0, 7}, false, 100},
        {{0, -1}, {0, -1}, false, 100}, {{0, 60}, {0, 60}, false, 103}, // one step at most
        {{}, {0, 120}, true, 100},
    };
    for (const auto& [pixels, angle, inverted, expected] : kCases) {
        wheel(envelope(), pixels, angle, inverted);
        EXPECT_DOUBLE_EQ(heard(), expected) << pixels.y() << " " << angle.y();
    }
    EXPECT_NEAR(player.volumeState().value(), 0.55, 1e-4);
}

TEST_F(PlayerBarTest, VolumeBySliderWheelAndMute)
{
    start();
    player.setVolume(0.62);
    EXPECT_EQ(slider().value(), 62);
    EXPECT_NEAR(player.volumeState().value(), 0.62, 1e-4) << "following rounds nothing";
    wheel(slider(), {}, {0, -120});
    EXPECT_NEAR(player.volumeState().value(), 0.57, 1e-4);
    ThemeButton* mute = button(QStringLiteral("Выключить звук"));
    ASSERT_TRUE(mute);
    mute->click();
    EXPECT_EQ(player.volumeState().value(), 0.0F);
    EXPECT_EQ(mute->accessibleName(), QStringLiteral("Включить звук"));
    mute->click();
    EXPECT_NEAR(player.volumeState().value(), 0.57, 1e-4);
    // A drag to silence passes by values that nobody chose.
    QTest::mousePress(&slider(), Qt::LeftButton, {}, QPoint(slider().width() / 2, 5));
    QTest::mouseMove(&slider(), QPoint(slider().width() / 4, 5));
    QTest::mouseMove(&slider(), QPoint(0, 5));
    QTest::mouseRelease(&slider(), Qt::LeftButton, {}, QPoint(0, 5));
    EXPECT_EQ(player.volumeState().value(), 0.0F);
    mute->click();
    EXPECT_NEAR(player.volumeState().value(), 0.57, 1e-4);
}

TEST_F(PlayerBarTest, TheCursorRepaintsItsStripAlone)
{
    start();
    EXPECT_TRUE(envelope().isAnimating());
    turn();
    PaintMeter background(bar());
    PaintMeter area(envelope());
    clock.advance(async::seconds(10.05)); // half a column of pixels would not do
    turn();
    for (int turns = 0; area.count == 0 && turns < 100; ++turns) // until a frame is due
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_GT(area.count, 0) << "the cursor moved";
    EXPECT_LT(area.region.boundingRect().width(), envelope().width() / 6);
    EXPECT_EQ(background.count, 0) << "what lies behind stays";
    player.toggle();
    EXPECT_FALSE(envelope().isAnimating()) << "nothing moves while it is paused";
    player.toggle();
    EXPECT_TRUE(envelope().isAnimating());
    window->hide();
    EXPECT_FALSE(envelope().isAnimating()) << "nor while nobody sees it";
}

TEST_F(PlayerBarTest, ItShowsTheFocusedTrackUntilOneIsPlayed)
{
    tracks = {fullTrack(QStringLiteral("first")), fullTrack(QStringLiteral("second"))};
    fill(tracks);
    show();
    ThemeButton& heart = bar().findChild<NowPlaying*>()->heart();
    ThemeButton* playButton = button(QStringLiteral("Воспроизвести"));
    ASSERT_TRUE(playButton);
    EXPECT_FALSE(playButton->isEnabled()) << "nothing to play";
    EXPECT_FALSE(envelope().isEnabled() || heart.isVisible());
    EXPECT_EQ(position().remainingText(), QStringLiteral("—"));
    workspace().setSelection(ids({tracks[1]}), tracks[1].id());
    EXPECT_TRUE(playButton->isEnabled() && heart.isVisible());
    EXPECT_EQ(bar().accessibleName(), Texts::spoken(tracks[1]));
    EXPECT_EQ(position().remainingText().mid(1), QStringLiteral("1:02:07")) << "the length that would be played";
    const QRect area = envelope().geometry();
    playButton->click();
    EXPECT_EQ(dashboard.count("playPause"), 1);

    play(tracks[0]);
    EXPECT_EQ(bar().accessibleName(), Texts::spoken(tracks[0]));
    EXPECT_EQ(playButton->accessibleName(), QStringLiteral("Пауза"));
    EXPECT_EQ(position().remainingText().mid(1), QStringLiteral("3:20"));
    EXPECT_EQ(envelope().geometry(), area) << "nothing jumps";
    playButton->click();
    EXPECT_FALSE(player.isPlaying()) << "the button belongs to the track of the bar, whatever is focused";
    EXPECT_EQ(heart.accessibleName(), QStringLiteral("Добавить в избранное"));
    QTest::mouseClick(&heart, Qt::LeftButton);
    EXPECT_EQ(heart.accessibleName(), QStringLiteral("Убрать из избранного"))
        << "the list knows more than the player's copy";
    EXPECT_TRUE(now(tracks[0]).isFavorite());
    const int below = bar().y();
    preferences.dashboardPlayerOnTop.set(true);
    turn();
    EXPECT_LT(bar().y(), below);
}

TEST_F(PlayerBarTest, NarrowWindowsLoseTheOutputFirstAndThenTheSlider)
{
    start();
    preferences.workspaceLayout.set(QStringLiteral("compact"));
    preferences.compactSidebarCollapsed.set(true);
    ThemeButton* output = button(QStringLiteral("Устройство вывода"));
    ASSERT_TRUE(output);
    bool hadOutput = true;
    bool hadSlider = true;
    for (int width = 2560; width >= 900; width -= 20) {
        window->resize(width, 700);
        turn();
        EXPECT_TRUE(hadOutput || !output->isVisible());
        EXPECT_TRUE(hadSlider || !slider().isVisible());
        hadOutput = output->isVisible();
        hadSlider = slider().isVisible();
        EXPECT_TRUE(hadSlider || !hadOutput) << width;
        EXPECT_GE(envelope().width(), 200) << width;
        EXPECT_LE(volume().geometry().right(), bar().width()) << width;
    }
    EXPECT_FALSE(hadSlider);
    ThemeButton* speaker = button(QStringLiteral("Выключить звук"));
    speaker->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(volume().popup().isVisible()) << "there it stands upright, for the keyboard too";
    EXPECT_TRUE(window->rect().contains(volume().popup().geometry()));
    auto* upright = volume().popup().findChild<VolumeSlider*>();
    player.setVolume(0.5);
    QTest::mouseClick(upright, Qt::LeftButton, {}, QPoint(upright->width() / 2, 0));
    EXPECT_NEAR(player.volumeState().value(), 1, 1e-4) << "up is louder";
}

TEST_F(PlayerBarTest, AssistiveTechnologyReadsAndMovesTheSliders)
{
    start();
    player.toggle();
    player.setVolume(0.8);
    player.scheduleSeek(61, false);
    const auto of = [](QWidget& widget) { return QAccessible::queryAccessibleInterface(&widget); };
    ASSERT_TRUE(of(envelope()) && of(envelope())->valueInterface());
    EXPECT_EQ(of(envelope())->role(), QAccessible::Slider);
    EXPECT_EQ(of(envelope())->text(QAccessible::Value), QStringLiteral("1:01 из 3:20"));
    EXPECT_EQ(of(envelope())->valueInterface()->maximumValue().toInt(), 200);
    of(envelope())->valueInterface()->setCurrentValue(90);
    EXPECT_DOUBLE_EQ(heard(), 90);
    EXPECT_EQ(of(slider())->text(QAccessible::Value), QStringLiteral("80 %"));
    of(slider())->valueInterface()->setCurrentValue(35);
    EXPECT_NEAR(player.volumeState().value(), 0.35, 1e-4);
    for (QWidget* each : bar().findChildren<QWidget*>()) {
        if (each->focusPolicy() != Qt::NoFocus) {
            EXPECT_TRUE(each->focusPolicy() & Qt::TabFocus) << qPrintable(each->accessibleName());
            EXPECT_FALSE(each->accessibleName().isEmpty());
        }
    }
}
