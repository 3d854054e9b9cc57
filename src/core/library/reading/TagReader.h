#pragma once

#include "core/model/AudioTags.h"
#include "core/model/LoadedTrackMetadata.h"

#include <QUrl>

#include <optional>

/// What reads a file's tags and facts. This one reads nothing. Called on worker threads, several calls at a time.
class TagReader {
public:
    virtual ~TagReader() = default;

    /// Gives nothing for a file that cannot be read. \param fallbackTags what stands where the file tells nothing.
    virtual std::optional<LoadedTrackMetadata> read(const QUrl& url, const AudioTags& fallbackTags);

    /// The one that reads nothing.
    static TagReader& none();
};
