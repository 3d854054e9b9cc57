#pragma once

#include "tags/containers/Sound.h"

#include <QUrl>

#include <optional>

/// What an audio file says about its sound besides its length.
namespace AudioTechnicalInfo {

using Details = SoundDetails;

/// What the container itself tells; unlike AudioMetadataLoader it estimates no bit rate. Nothing if the file cannot
/// be opened or holds no sound that is known. Blocks; not for the main thread.
std::optional<Details> read(const QUrl& url);

} // namespace AudioTechnicalInfo
