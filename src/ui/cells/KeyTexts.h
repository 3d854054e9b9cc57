#pragma once

#include "ui/cells/KeyState.h"
#include "ui/cells/TrackColumns.h"

#include <QList>
#include <QString>

#include <optional>

/// Words and numbers for keys, in the language of the interface. Thread: main.
namespace KeyTexts {

/// The key that a tag's text names, as a code or as the name of a key.
std::optional<MusicalKey> keyOf(const QString& tag);
/// "ре мажор", "D major".
QString name(const MusicalKey& key);
/// The keys that mix with this one: its neighbours of the same letter, the lower number first, and its relative.
QList<MusicalKey> compatible(const MusicalKey& key);
/// "0,74".
QString confidence(double value);
/// "−33 цента"; a rounded zero has no sign.
QString tuning(double cents);

/// Whether a column shows what KeyState says.
bool isKeyColumn(TrackColumn column);
/// What the tag holds, or the code in the file's name where it holds nothing.
struct InTag {
    QString text;
    bool isFromName = false;
};
/// A code in a file's name counts only where the tag is empty.
InTag inTag(const Track& track);
/// The text of a cell of such a column; empty where nothing is known.
QString text(TrackColumn column, const Track& track, const KeyState& state);
/// What a screen reader says of it; never empty.
QString spoken(TrackColumn column, const Track& track, const KeyState& state);
/// The text in full, and what it rests on; empty where the cell says it all.
QString tooltip(TrackColumn column, const Track& track, const KeyState& state);
/// What is going on with a row that has no key yet; empty for a new one.
QString step(KeyState::Step step);
/// The other keys that were heard, the strongest first.
QList<MusicalKeyAnalysis::Alternative> variants(const MusicalKeyAnalysis& analysis);

} // namespace KeyTexts
