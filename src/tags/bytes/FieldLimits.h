#pragma once

#include <QtGlobal>

/// What one field of a RIFF, AIFF or MPEG-4 tag may hold; a larger one is passed over, unread where its format
/// allows. Chosen: far above any real field, far below what many rows at once could cost.
namespace FieldLimits {

inline constexpr qint64 kPictureBytes = 64 * 1024 * 1024;
inline constexpr qint64 kTextBytes = 1024 * 1024;

} // namespace FieldLimits
