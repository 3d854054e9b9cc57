#pragma once

#include "tags/bytes/ByteSource.h"
#include "tags/containers/Sound.h"

/// What the audio tracks of an MPEG-4 file say about themselves.
namespace Mp4Sound {

/// Of the first audio track: its length by its own header, else by its fragments, else by the movie's header; bit
/// rate and depth by its coding.
/// \param movie the body of the atom "moov".
/// \param file where its fragments are looked for.
/// \param mediaBytes bytes of all media data: the sound's own, if there is one track only.
/// \return nothing if there is no audio track.
std::optional<Sound> read(const ByteRange& file, const ByteRange& movie, qint64 mediaBytes);

} // namespace Mp4Sound
