#include "support/Machine.h"
#include "support/PaintMeter.h"
#include "support/WindowFixture.h"

#include "WaveformScrubber/cache/EnvelopeFile.h"
#include "WaveformScrubber/cache/EnvelopeFolder.h"
#include "WaveformScrubber/cache/EnvelopeKey.h"
#include "ui/player/BarWaveform.h"
#include "ui/player/EnvelopeArea.h"
#include "ui/theme/Motion.h"
#include "ui/waveform/RowWaveforms.h"

#include <QScrollBar>

/// The window with rows of real, if empty, files, whose envelopes are made up.
class WaveformViewsTest : public WindowFixture {
protected:
    /// Shows so many rows; no job of the executor has run since.
    void start(int count)
    {
        for (int i = 0; i < count; ++i)
            tracks.append(track(file(QStringLiteral("%1.mp3").arg(i, 3, 10, QChar(u'0'))).toLocalFile()));
        window->resize(1440, 900);
        show();
        fill(tracks);
        QCoreApplication::processEvents();
    }
    EnvelopeArea& area() { return *window->findChild<EnvelopeArea*>(); }
    BarEnvelope::State state() { return area().waveform().source().state(); }
    RowWaveforms& rowWaveforms() { return window->rowWaveforms(); }
    QRect waveform(int row)
    {
        return TrackDelegate::waveformRect(table().visualRect(cell(row, TrackColumn::Waveform)));
    }
    int rowsInView() { return table().viewport()->height() / table().rowLayout().rowHeight() + 2; }
    /// Pixels of a colour in a row's waveform.
    int pixels(int row, const QColor& colour)
    {
        const QImage image = table().viewport()->grab(waveform(row)).toImage();
        int count = 0;
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, image.height() / 2) == colour;
        return count;
    }
    /// Puts an envelope onto the disk.
    void store(const Track& which)
    {
        const QString key = envelopeKey(which.url(), FileStamp::of(which.url()).value());
        const QString entry = EnvelopeFolder::entryPath(folder.filePath(QStringLiteral("waveforms")), key);
        ASSERT_TRUE(EnvelopeFile::write(entry, std::vector<float>(kEnvelopeSampleCount, 1.0F)));
    }

    QList<Track> tracks;
};

TEST_F(WaveformViewsTest, ThePlayedTrackGetsItsWaveformAndNothingMoves)
{
    start(3);
    turn();
    const QRect before = area().geometry();
    player.play(tracks[1]);
    async::MainQueue::drain();
    executor.runOne(); // the file is open
    EXPECT_EQ(state(), BarEnvelope::State::Loading);
    EXPECT_EQ(area().geometry(), before);
    const QImage placeholder = area().grab().toImage();
    turn();
    EXPECT_EQ(state(), BarEnvelope::State::Ready);
    EXPECT_EQ(extracted, QList<QUrl>{tracks[1].url()});
    EXPECT_EQ(area().geometry(), before);
    EXPECT_NE(area().grab().toImage(), placeholder);
    clock.advance(async::seconds(0.1));
    EXPECT_FALSE(area().waveform().isAnimating()) << "it has appeared";
}

TEST_F(WaveformViewsTest, ThePlayedPartReachesTheCursor)
{
    start(1);
    play(tracks[0]);
    ASSERT_EQ(state(), BarEnvelope::State::Ready);
    clock.advance(async::seconds(0.1));
    ASSERT_FALSE(area().waveform().isAnimating());
    player.toggle();
    const QRect place = area().waveform().rect(Metrics::kKnob / 2);
    const WaveformColours colours = area().waveform().colours();
    for (const double fraction : {0.0, 0.25, 0.6, 1.0}) {
        player.scheduleSeek(fraction * 200, false);
        turn();
        const QImage image = area().grab(place).toImage();
        int last = -1;
        int first = image.width();
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, image.height() / 2);
            if (colour == colours.played)
                last = x;
            if (colour == colours.unplayed)
                first = std::min(first, x);
        }
        EXPECT_LT(last, first) << fraction;
        const double cursor = fraction * image.width();
        EXPECT_NEAR(last, std::max(-1.0, cursor), 5) << fraction;
        EXPECT_NEAR(first, cursor, 5) << fraction;
    }
}

TEST_F(WaveformViewsTest, AFocusedTrackIsComputedAfterARestOnly)
{
    start(4);
    store(tracks[3]);
    for (const int row : {0, 1, 2}) {
        dashboard.select({tracks[row].id()}, tracks[row].id());
        turn();
        EXPECT_EQ(state(), BarEnvelope::State::Loading);
    }
    dashboard.select({tracks[3].id()}, tracks[3].id());
    turn();
    EXPECT_EQ(state(), BarEnvelope::State::Ready) << "what is on disk needs no rest";
    dashboard.select({tracks[2].id()}, tracks[2].id());
    turn();
    EXPECT_TRUE(extracted.isEmpty());
    clock.advance(BarEnvelope::kRest);
    turn();
    EXPECT_EQ(extracted, QList<QUrl>{tracks[2].url()}) << "not those passed by";
    EXPECT_EQ(state(), BarEnvelope::State::Ready);
}

TEST_F(WaveformViewsTest, WithoutAnEnvelopeTheLineStaysUsable)
{
    extract = [](const QUrl&) -> std::vector<float> { throw std::runtime_error("broken"); };
    start(2);
    play(tracks[0]);
    EXPECT_EQ(state(), BarEnvelope::State::Failed);
    EXPECT_FALSE(area().waveform().isAnimating());
    player.toggle();
    QTest::mouseClick(&area(), Qt::LeftButton, {}, area().rect().center());
    EXPECT_NEAR(audio.last()->currentTime(), 100, 2);
    extract = nullptr;
    player.toggle();
    turn();
    EXPECT_EQ(state(), BarEnvelope::State::Failed) << "not tried again so soon";
    clock.advance(BarEnvelope::kRetryDelay);
    player.toggle();
    turn();
    EXPECT_EQ(state(), BarEnvelope::State::Ready);
}

TEST_F(WaveformViewsTest, OnlyRowsInViewAskAndThoseScrolledAwayNoMore)
{
    start(200);
    const qsizetype asked = rowWaveforms().waitingCount();
    EXPECT_GT(asked, 5);
    EXPECT_LE(asked, rowsInView());
    QScrollBar& bar = *table().verticalScrollBar();
    bar.setValue(bar.maximum());
    EXPECT_EQ(rowWaveforms().waitingCount(), 0) << "dropped before the next are painted";
    QCoreApplication::processEvents();
    EXPECT_GT(rowWaveforms().waitingCount(), 5);
    EXPECT_LE(rowWaveforms().waitingCount(), rowsInView());
    turn();
    EXPECT_EQ(rowWaveforms().waitingCount(), 0);
    table().viewport()->repaint();
    EXPECT_EQ(rowWaveforms().waitingCount(), 0) << "what is not there is not asked for again";
    EXPECT_TRUE(extracted.isEmpty()) << "rows compute nothing";
}

TEST_F(WaveformViewsTest, RowsShowWhatTheDiskHoldsAndWhatArrives)
{
    start(5);
    const QColor grey = window->theme().colours().text3;
    turn();
    EXPECT_EQ(pixels(1, grey), 0);
    store(tracks[0]);
    rowWaveforms().arrived(tracks[0].url());
    PaintMeter meter(*table().viewport());
    turn();
    EXPECT_GE(pixels(0, grey), 60) << "from disk";
    EXPECT_EQ(pixels(1, grey), 0);
    QCoreApplication::processEvents();
    meter.region = {};
    play(tracks[1]);
    EXPECT_GE(pixels(1, grey), 60) << "as soon as the player's bar has it";
    EXPECT_TRUE(meter.region.contains(waveform(1)));
    rowWaveforms().emptyCache();
    turn();
    EXPECT_EQ(pixels(0, grey), 0);
    EXPECT_TRUE(QDir(folder.filePath(QStringLiteral("waveforms"))).isEmpty(QDir::Files));
}

TEST_F(WaveformViewsTest, WhatArrivesWhileTheDiskIsAskedIsDrawn)
{
    start(1); // the row was painted: the disk is being asked
    rowWaveforms().arrived(tracks[0].url());
    executor.runAll(); // and knew nothing yet
    store(tracks[0]);
    table().viewport()->repaint();
    turn();
    EXPECT_GE(pixels(0, window->theme().colours().text3), 60);
}

TEST_F(WaveformViewsTest, ThePlayedPartOfARowRepaintsItsStripAlone)
{
    start(5);
    play(tracks[1]);
    const WaveformColours colours = area().waveform().colours();
    clock.advance(async::seconds(50));
    turn();
    EXPECT_NEAR(pixels(1, colours.played), 20, 3) << "two pixels of three in a quarter of 119";
    EXPECT_EQ(pixels(0, colours.played), 0);
    PaintMeter meter(*table().viewport());
    clock.advance(async::seconds(0.3));
    turn();
    const int idle = meter.count;
    clock.advance(async::seconds(4));
    turn();
    EXPECT_LE(idle, 1) << "nothing to be seen in less than a pixel";
    EXPECT_GT(meter.count, idle);
    EXPECT_TRUE(waveform(1).contains(meter.region.boundingRect()));
    EXPECT_LE(meter.region.boundingRect().width(), 9);
}

TEST(MotionTest, TheDesktopsWishIsObeyed)
{
    const std::tuple<const char*, const char*, bool> kCases[] = {
        {"none", "", false},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=0\n", true},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=0.5\n", false},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=fast\n", false},
        {"gtk-4.0/settings.ini", "[Settings]\ngtk-enable-animations=false\n", true},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=0\n", true},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=1\n", false},
    };
    for (const auto& [file, text, isReduced] : kCases) {
        const QTemporaryDir folder;
        writeFile(folder.filePath(QString::fromLatin1(file)), text);
        EXPECT_EQ(Motion::isReduced(folder.path()), isReduced) << file << " " << text;
    }
}
