#pragma once

#include "work/WorkKind.h"

#include <QList>

/// The kinds of work that the library does in the background, with their rules; docs/work.md shows them as a table.
namespace WorkKinds {

/// Kinds that listen to the whole spectrum of a file, which takes all of a processor: one of them at a time.
constexpr int kSpectra = 1;

/// The rules; their numbers stand in docs/work.md, and a test compares the two.
extern const WorkKind kMusicalKey;
extern const WorkKind kWaveform;
extern const WorkKind kTempo;

/// Places on the board of what the user waits for, in their order.
enum Awaited { MovingFiles = 1, WritingTags, ReadingTags };

/// All kinds with their names, by rank.
QList<std::pair<const char*, const WorkKind*>> all();

} // namespace WorkKinds
