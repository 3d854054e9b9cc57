#include "ui/waveform/WaveformDrawer.h"

#include "ui/waveform/BezierCurveDrawer.h"
#include "ui/waveform/DotDrawer.h"
#include "ui/waveform/LineDrawer.h"
#include "ui/waveform/LogarithmicBarDrawer.h"

#include <algorithm>

QString rawValue(WaveformDrawer drawer)
{
    switch (drawer) {
    case WaveformDrawer::Bars:
        return QStringLiteral("bars");
    case WaveformDrawer::LogarithmicBars:
        return QStringLiteral("logarithmicBars");
    case WaveformDrawer::Line:
        return QStringLiteral("line");
    case WaveformDrawer::Curve:
        return QStringLiteral("curve");
    case WaveformDrawer::Dots:
        return QStringLiteral("dots");
    }
    Q_UNREACHABLE();
}

WaveformDrawer waveformDrawerFromRawValue(const QString& raw)
{
    const auto found =
        std::ranges::find_if(kAllWaveformDrawers, [&](WaveformDrawer drawer) { return rawValue(drawer) == raw; });
    return found == kAllWaveformDrawers.end() ? WaveformDrawer::Bars : *found;
}

WaveformShape waveformShape(WaveformDrawer drawer, std::span<const float> samples, QSize size, double ratio)
{
    switch (drawer) {
    case WaveformDrawer::Bars:
        return BarDrawer::shape(samples, size, BarDrawer::Configuration().scaled(ratio));
    case WaveformDrawer::LogarithmicBars:
        return LogarithmicBarDrawer::shape(samples, size, LogarithmicBarDrawer::Configuration().scaled(ratio));
    case WaveformDrawer::Line:
        return LineDrawer::shape(samples, size, LineDrawer::Configuration().scaled(ratio));
    case WaveformDrawer::Curve:
        return BezierCurveDrawer::shape(samples, size, BezierCurveDrawer::Configuration().scaled(ratio));
    case WaveformDrawer::Dots:
        return DotDrawer::shape(samples, size, DotDrawer::Configuration().scaled(ratio));
    }
    Q_UNREACHABLE();
}
