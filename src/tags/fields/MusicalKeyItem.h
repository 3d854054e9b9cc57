#pragma once

#include "tags/fields/MetadataItem.h"

/// Finds the field that holds a track's musical key, by its names alone.
namespace MusicalKeyItem {

/// The item's text, trimmed, if the item's identifier or key ends like the key fields of the tag formats, or if it is a
/// user-defined field described as the initial or musical key. Nothing for other items and for blank texts. The text is
/// not interpreted.
std::optional<QString> value(const MetadataItem& item);

} // namespace MusicalKeyItem
