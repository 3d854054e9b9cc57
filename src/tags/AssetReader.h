#pragma once

#include "tags/containers/Sound.h"
#include "tags/fields/MetadataItem.h"

#include <QStringView>

#include <vector>

class ByteSource;

/// What one pass over an audio file yields.
struct Asset {
    std::optional<Sound> sound; ///< nothing if no sound of a known kind was found
    /// Fields of all tags, from the least to the most trusted format, in file order within one:
    /// ID3v1, APEv2, RIFF INFO or AIFF text chunks, ID3v2, Vorbis comments, FLAC pictures; MP4 has one format only.
    std::vector<MetadataItem> items;
};

/// The reader of all containers: MP3, raw AAC, FLAC, WAV, AIFF and M4A, told apart by their bytes. It survives any
/// bytes: every length is checked against what is there, no array is larger than the file, and the source's limits
/// end it. A file that could not be read to its end yields nothing: half a text or a picture is worse than none.
namespace AssetReader {

struct Options {
    bool readsWindows1251 = true; ///< shows text in Latin-1 fields that is plainly Windows-1251 as Cyrillic
};

/// \param extension of the file's name; asked only where the bytes do not tell. Thread: any, one per source.
Asset read(ByteSource& source, QStringView extension, const Options& options);

} // namespace AssetReader
