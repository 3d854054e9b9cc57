#pragma once

#include "ui/waveform/WaveformShape.h"

#include <QString>

#include <array>
#include <span>

/// How an envelope is drawn, in the order of the settings.
enum class WaveformDrawer { Bars, LogarithmicBars, Line, Curve, Dots };

/// All of them in the order of WaveformDrawer.
inline constexpr std::array kAllWaveformDrawers{WaveformDrawer::Bars, WaveformDrawer::LogarithmicBars,
                                                WaveformDrawer::Line, WaveformDrawer::Curve, WaveformDrawer::Dots};

/// "bars", "logarithmicBars", "line", "curve" or "dots".
QString rawValue(WaveformDrawer drawer);
/// Bars for an unknown value.
WaveformDrawer waveformDrawerFromRawValue(const QString& raw);

/// The shape by the drawer's ordinary configuration. \param size in pixels of the device. \param ratio pixels of the
/// device to device-independent ones.
WaveformShape waveformShape(WaveformDrawer drawer, std::span<const float> samples, QSize size, double ratio);
