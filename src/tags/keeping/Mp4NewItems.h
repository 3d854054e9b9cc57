#pragma once

#include "core/model/AudioTags.h"

#include <QByteArray>

/// Items of an MPEG-4 file for all ten tags.
namespace Mp4NewItems {

/// The items of the tags that are not empty. A tempo that is no whole number stands rounded in its own item, where
/// players look, and as it is in a free one; a tempo or a track that is no number at all in the free one alone.
QByteArray items(const AudioTags& tags);

} // namespace Mp4NewItems
