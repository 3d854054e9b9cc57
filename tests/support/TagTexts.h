#pragma once

#include "core/model/LoadedTrackMetadata.h"
#include "core/model/Track.h"

#include <initializer_list>
#include <utility>

/// Tags for tests, told field by field: {{&AudioTags::genre, "House"}}.
namespace TagTexts {

using Texts = std::initializer_list<std::pair<QString AudioTags::*, const char*>>;

inline AudioTags of(Texts texts, AudioTags others = {})
{
    for (const auto& [field, text] : texts)
        others.*field = QString::fromUtf8(text);
    return others;
}

inline Track on(Track track, Texts texts)
{
    track.replaceTags(of(texts, track.tags()));
    return track;
}

/// What a read gives that finds these.
inline LoadedTrackMetadata read(const AudioTags& tags, const ArtworkData& artwork = {})
{
    LoadedTrackMetadata metadata;
    metadata.tags = tags;
    metadata.artworkData = artwork;
    return metadata;
}

} // namespace TagTexts
