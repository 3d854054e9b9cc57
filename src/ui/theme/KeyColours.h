#pragma once

#include "core/model/MusicalKey.h"

#include <QColor>

namespace KeyColours {

/// The colour of the key's place on the wheel, the same wherever a key is named.
QColor colour(const MusicalKey& key);
/// Near black: the colour of text on any of them.
QColor chipText();

} // namespace KeyColours
