#pragma once

#include "core/model/ArtworkData.h"
#include "core/model/AudioTags.h"

/// What one read of an audio file yields.
struct LoadedTrackMetadata {
    AudioTags tags;          ///< the caller's tags with the fields that the file supplied written over them
    double duration = 0;     ///< seconds; 0 when unknown
    ArtworkData artworkData; ///< null when the file has none
    double bitRate = 0;      ///< bits per second; 0 when unknown
    int bitDepth = 0;        ///< bits per channel; 0 when unknown or compressed
    QString format;          ///< the file name's extension in upper case
};
