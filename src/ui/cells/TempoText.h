#pragma once

#include "core/library/tempo/Tempo.h"
#include "core/model/Track.h"

/// What the window says of a tempo. Thread: main.
namespace TempoText {

/// The mark in front of an estimate, a blank behind it.
extern const QString kEstimateMark;

/// The cell of a list: "…" under analysis, else the estimate as "≈ 126", else the tag, else "—".
QString bpmDisplayText(const Track& track, const PlaylistBPMState& state);
/// The same in words.
QString spoken(const Track& track, const PlaylistBPMState& state);
/// Where an estimate is from: how sure it is, and the other tempos that it may be, a line each. Empty without estimate.
QString toolTip(const Tempo& tempo, const TrackID& id);

} // namespace TempoText
