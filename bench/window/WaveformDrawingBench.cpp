// What drawing a waveform costs: making the picture of a bar 3840 pixels wide by every drawer, painting it whole,
// moving the cursor, and painting a screen of rows. usage: bench_waveform_drawing

#include "Measure.h"
#include "ui/waveform/WaveformPicture.h"

#include <QApplication>
#include <QPainter>

#include <cmath>
#include <cstdio>

namespace {

constexpr int kRounds = 101;
constexpr double kBarLimit = 2;      // milliseconds
constexpr double kCursorLimit = 0.5; // milliseconds
constexpr double kMakingLimit = 16;  // milliseconds; a frame, paid once for each envelope and size
constexpr double kRowsLimit = 1;     // milliseconds
constexpr int kRows = 30;

Envelope envelope()
{
    std::vector<float> samples(kEnvelopeSampleCount);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>(0.5 + 0.4 * std::sin(double(i) / 90) * std::sin(double(i) / 7));
    return std::make_shared<const std::vector<float>>(std::move(samples));
}

double milliseconds(const std::function<void()>& work)
{
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round)
        times.push_back(Measure::secondsOf(work) * 1000);
    return Measure::median(times);
}

bool report(const QString& what, double took, double limit)
{
    printf("%-44s %7.3f ms   (limit %.1f)%s\n", qPrintable(what), took, limit, took > limit ? "   TOO SLOW" : "");
    return took <= limit;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const WaveformColours colours{QColor(0x5B8CFF), QColor(0x5F636C)};
    const QColor ground(0x1B1D23);
    const QSize size(3840, 60);
    const Envelope shown = envelope();
    QPixmap surface(size);
    bool isGood = true;
    for (const WaveformDrawer drawer : kAllWaveformDrawers) {
        WaveformPicture picture;
        const WaveformPicture::Look look{drawer, size, 1, colours};
        const auto paint = [&](const QRect& clip, double split) {
            QPainter painter(&surface);
            painter.setClipRect(clip);
            painter.fillRect(clip, ground);
            picture.paint(painter, {0, 0}, split);
        };
        const double making = milliseconds([&] {
            picture.clear();
            picture.prepare(shown, look);
            paint(surface.rect(), 1900);
        });
        double split = 0;
        const double whole = milliseconds([&] { paint(surface.rect(), split += 7.3); });
        const double cursor = milliseconds([&] {
            split += 0.4;
            paint({static_cast<int>(split) - 8, 0, 17, size.height()}, split);
        });
        isGood = report(rawValue(drawer) + QStringLiteral(": made and painted"), making, kMakingLimit) && isGood;
        isGood = report(rawValue(drawer) + QStringLiteral(": the whole bar"), whole, kBarLimit) && isGood;
        isGood = report(rawValue(drawer) + QStringLiteral(": a step of the cursor"), cursor, kCursorLimit) && isGood;
    }
    std::vector<WaveformPicture> rows(kRows);
    for (WaveformPicture& row : rows)
        row.prepare(shown, {WaveformDrawer::Bars, {119, 26}, 1, colours});
    const double screen = milliseconds([&] {
        QPainter painter(&surface);
        for (int row = 0; row < kRows; ++row)
            rows[static_cast<size_t>(row)].paint(painter, QPointF(row * 125, 10), row == 3 ? 40 : 0);
    });
    isGood = report(QStringLiteral("%1 rows").arg(kRows), screen, kRowsLimit) && isGood;
    return isGood ? 0 : 1;
}
