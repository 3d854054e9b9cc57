#include "ui/theme/ThemeColours.h"
#include "ui/waveform/BarDrawer.h"
#include "ui/waveform/BezierCurveDrawer.h"
#include "ui/waveform/DotDrawer.h"
#include "ui/waveform/LineDrawer.h"
#include "ui/waveform/LogarithmicBarDrawer.h"
#include "ui/waveform/WaveformColours.h"
#include "ui/waveform/WaveformDrawer.h"
#include "ui/waveform/WaveformPicture.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double kEpsilon = 1e-9;

/// A loud first half and a quiet second one, with a wave upon it.
std::vector<float> samples(int count)
{
    std::vector<float> values;
    for (int i = 0; i < count; ++i)
        values.push_back(static_cast<float>((i < count / 2 ? 0.8 : 0.2) + 0.15 * std::sin(i / 3.0)));
    return values;
}

QRectF bounds(const WaveformShape& shape)
{
    QRectF all = shape.area.boundingRect();
    for (const QRectF& mark : shape.marks)
        all |= mark;
    return all;
}

QImage drawn(WaveformPicture& picture, QSize size, double ratio, double split)
{
    QImage image(QSize(static_cast<int>(std::lround(size.width() * ratio)),
                       static_cast<int>(std::lround(size.height() * ratio))),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    picture.paint(painter, {0, 0}, split);
    return image;
}

} // namespace

TEST(WaveformDrawersTest, EveryShapeFillsItsRectangleAndIsMirrored)
{
    for (const WaveformDrawer drawer : kAllWaveformDrawers) {
        EXPECT_EQ(waveformDrawerFromRawValue(rawValue(drawer)), drawer);
        for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
            for (const int width : {1, 2, 3, 100, 463, 4096, 9000}) {
                for (const int count : {1, 2, 58, 4096}) {
                    for (const int height : {1, 26, 42, 105}) {
                        const QSize size(width, height);
                        const WaveformShape shape = waveformShape(drawer, samples(count), size, ratio);
                        const auto what = testing::Message() << qPrintable(rawValue(drawer)) << ' ' << width << 'x'
                                                             << height << " of " << count << " at " << ratio;
                        const QRectF all = bounds(shape);
                        ASSERT_FALSE(shape.isEmpty()) << what;
                        ASSERT_TRUE(QRectF(QPointF(), QSizeF(size)).adjusted(-1e-6, -1e-6, 1e-6, 1e-6).contains(all))
                            << what << all.left() << " " << all.right() << " " << all.top();
                        ASSERT_GE(all.width(), width - 8 * ratio) << what << ": the whole width is used";
                        // Dots stand on whole pixels, whose middle need not be the height's.
                        const double slack = drawer == WaveformDrawer::Dots ? 1 : 1e-6;
                        ASSERT_NEAR(all.top() + all.bottom(), height, slack) << what;
                    }
                }
            }
        }
    }
    EXPECT_EQ(waveformDrawerFromRawValue(QStringLiteral("spiral")), WaveformDrawer::Bars);
}

TEST(WaveformDrawersTest, NothingComesOfNothing)
{
    for (const WaveformDrawer drawer : kAllWaveformDrawers) {
        EXPECT_TRUE(waveformShape(drawer, {}, {100, 40}, 1).isEmpty());
        for (const QSize size : {QSize(0, 40), QSize(100, 0), QSize(-3, -3), QSize()})
            EXPECT_TRUE(waveformShape(drawer, samples(4096), size, 1).isEmpty());
    }
}

TEST(WaveformDrawersTest, BarsStandOnPixelsAtEveryScale)
{
    const struct {
        double ratio;
        int width, count, pitch, bar;
    } kCases[]{
        {1, 119, 40, 3, 2},   {1, 1, 1, 3, 1},    {1, 2, 1, 3, 2},       {1.25, 149, 37, 4, 3},
        {1.5, 179, 36, 5, 3}, {2, 238, 40, 6, 4}, {1, 4096, 1365, 3, 2}, {1, 3840, 1280, 3, 2},
    };
    for (const auto& each : kCases) {
        const BarDrawer::Configuration configuration = BarDrawer::Configuration().scaled(each.ratio);
        const WaveformShape shape = BarDrawer::shape(samples(4096), {each.width, 42}, configuration);
        ASSERT_EQ(static_cast<int>(shape.marks.size()), each.count) << each.ratio << " " << each.width;
        EXPECT_EQ(BarDrawer::barCount(each.width, configuration), each.count);
        for (size_t i = 0; i < shape.marks.size(); ++i) {
            EXPECT_DOUBLE_EQ(shape.marks[i].left(), std::floor(shape.marks[i].left()));
            EXPECT_DOUBLE_EQ(shape.marks[i].width(), each.bar);
            if (i > 0) {
                EXPECT_DOUBLE_EQ(shape.marks[i].left() - shape.marks[i - 1].left(), each.pitch);
            }
        }
    }
}

TEST(WaveformDrawersTest, HeightsFollowTheAmplitude)
{
    BarDrawer::Configuration bars;
    bars.minBarHeight = 3;
    const double quarter = 1 + 20 * std::log10(0.25) / LogarithmicBarDrawer::kRange;
    const struct {
        float amplitude;
        double linear, logarithmic, line;
    } kCases[]{{0, 3, 3, 1}, {0.01F, 3, 3, 1}, {0.25F, 10, 40 * quarter, 10}, {1, 40, 40, 40}, {7, 40, 40, 40}};
    for (const auto& each : kCases) {
        const std::vector<float> flat(500, each.amplitude);
        const QSize size(90, 40);
        for (const QRectF& bar : BarDrawer::shape(flat, size, bars).marks)
            EXPECT_NEAR(bar.height(), each.linear, 1e-4) << each.amplitude;
        for (const QRectF& bar : LogarithmicBarDrawer::shape(flat, size, bars).marks)
            EXPECT_NEAR(bar.height(), each.logarithmic, 1e-4) << each.amplitude;
        EXPECT_NEAR(bounds(LineDrawer::shape(flat, size, {})).height(), each.line, 1e-4) << each.amplitude;
        EXPECT_NEAR(bounds(BezierCurveDrawer::shape(flat, size, {})).height(), each.line, 1e-4) << each.amplitude;
    }
    // Never higher than the picture, however little room there is.
    for (const QRectF& bar : BarDrawer::shape(samples(50), {90, 2}, bars).marks)
        EXPECT_DOUBLE_EQ(bar.height(), 2);
}

TEST(WaveformDrawersTest, DotsAreColumnsAroundTheMiddle)
{
    const struct {
        float amplitude;
        int dots; // in a column of 39 pixels at a pitch of 3: 6 above the middle one at most
    } kCases[]{{0, 1}, {0.05F, 1}, {0.5F, 7}, {1, 13}};
    for (const auto& each : kCases) {
        const WaveformShape shape = DotDrawer::shape(std::vector<float>(100, each.amplitude), {92, 40}, {1, 1});
        EXPECT_EQ(static_cast<int>(shape.marks.size()), each.dots * 31) << each.amplitude;
        for (const QRectF& dot : shape.marks)
            EXPECT_EQ(dot.topLeft(), QPointF(dot.topLeft().toPoint())) << "on whole pixels";
    }
}

TEST(WaveformDrawersTest, ACurveStaysBetweenItsValues)
{
    std::vector<float> steps(40, 0.1F);
    std::fill(steps.begin() + 20, steps.end(), 0.9F);
    for (const double curviness : {0.0, 0.5, 1.0, 4.0}) {
        BezierCurveDrawer::Configuration configuration;
        configuration.curviness = curviness;
        const QRectF all = bounds(BezierCurveDrawer::shape(steps, {200, 40}, configuration));
        EXPECT_NEAR(all.height(), 36, 1e-4) << curviness;
        EXPECT_NEAR(all.width(), 200, kEpsilon) << curviness;
    }
}

TEST(WaveformPictureTest, TheSplitStandsOnItsPixelAtEveryScale)
{
    const WaveformColours colours{Qt::red, Qt::green};
    const auto full = std::make_shared<const std::vector<float>>(kEnvelopeSampleCount, 1.0F);
    const QSize size(200, 20);
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        WaveformPicture picture;
        // An area without gaps, so that every column shows which side it is on.
        EXPECT_TRUE(picture.prepare(full, {WaveformDrawer::Line, size, ratio, colours}));
        EXPECT_FALSE(picture.prepare(full, {WaveformDrawer::Line, size, ratio, colours}));
        for (const double fraction : {0.0, 0.1, 0.333, 0.5, 0.999, 1.0, 1.7, -0.2}) {
            const QImage image = drawn(picture, size, ratio, fraction * size.width());
            const int expected =
                std::clamp(static_cast<int>(std::lround(fraction * size.width() * ratio)), 0, image.width());
            int red = 0;
            int green = 0;
            for (int x = 0; x < image.width(); ++x) {
                const QColor colour = image.pixelColor(x, image.height() / 2);
                red += colour == QColor(Qt::red) && x < expected;
                green += colour == QColor(Qt::green) && x >= expected;
            }
            EXPECT_EQ(red, expected) << ratio << " " << fraction;
            EXPECT_EQ(green, image.width() - expected) << ratio << " " << fraction;
        }
    }
}

TEST(WaveformPictureTest, ItIsDrawnAnewWhenAnythingChanges)
{
    const auto one = std::make_shared<const std::vector<float>>(kEnvelopeSampleCount, 1.0F);
    const auto other = std::make_shared<const std::vector<float>>(kEnvelopeSampleCount, 0.2F);
    const WaveformPicture::Look look{WaveformDrawer::Bars, {60, 20}, 1, {Qt::red, Qt::green}};
    WaveformPicture picture;
    picture.prepare(one, look);
    const auto isChanged = [&](const Envelope& envelope, const WaveformPicture::Look& changed) {
        const QImage before = drawn(picture, changed.size, changed.ratio, 30);
        picture.prepare(envelope, changed);
        const QImage after = drawn(picture, changed.size, changed.ratio, 30);
        picture.prepare(one, look);
        return before != after;
    };
    EXPECT_FALSE(isChanged(one, look));
    EXPECT_TRUE(isChanged(other, look));
    EXPECT_TRUE(isChanged(nullptr, look));
    WaveformPicture::Look changed = look;
    changed.drawer = WaveformDrawer::Dots;
    EXPECT_TRUE(isChanged(one, changed));
    changed = look;
    changed.colours.played = Qt::blue;
    EXPECT_TRUE(isChanged(one, changed));
    changed = look;
    changed.size = {60, 10};
    EXPECT_TRUE(isChanged(one, changed));
}

TEST(WaveformColoursTest, EveryPresetCanBeReadOnBothThemes)
{
    const QColor customs[]{Qt::white, Qt::black, Qt::red, Qt::yellow, Qt::blue, QColor(0x1B1D23), QColor(0x808080)};
    for (const Appearance appearance : {Appearance::Dark, Appearance::Light}) {
        const QColor ground = ThemeColours::of(appearance).surface;
        for (const QString& preset : WaveformColours::presets()) {
            for (const QColor& custom : customs) {
                const WaveformColours colours = WaveformColours::of(preset, custom, appearance);
                EXPECT_GE(contrast(colours.played, ground), 3) << qPrintable(preset) << qPrintable(custom.name());
                EXPECT_GE(contrast(colours.unplayed, ground), 1.35) << qPrintable(preset) << qPrintable(custom.name());
                EXPECT_GE(contrast(colours.played, colours.unplayed), 1.5)
                    << qPrintable(preset) << qPrintable(custom.name());
            }
        }
        EXPECT_EQ(WaveformColours::of(QStringLiteral("custom"), QColor(0xB050A0), appearance).played, QColor(0xB050A0))
            << "what can be read is left as it is";
    }
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 0.01);
}
