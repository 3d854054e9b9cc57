#pragma once

#include "platform/audio/PacketIndex.h"

#include <optional>

class FileImage;

/// The chain of frames of an MP3 file, walked over their headers alone.
namespace MpegFrames {

/// What the information frame in front of the sound tells (known as Xing, Info and LAME header).
struct Information {
    qint64 frames = 0;    ///< frames behind it; 0 if not told or not to be believed
    qint64 byteCount = 0; ///< bytes of the sound with this frame; 0 if not told
    quint32 delay = 0;    ///< samples of the encoder in front, without the decoder's own; 0 if not told
    quint32 padding = 0;  ///< samples behind
    bool hasGaps = false; ///< delay and padding are told
};

/// Looks for the information frame right in front of the sound; nothing where there is none or it cannot be read.
/// \param firstFrame offset in bytes of the first frame of sound
std::optional<Information> informationBefore(const FileImage& image, qint64 firstFrame);

/// Samples of encoder and decoder delay and of padding that are not to be heard; 0 where they are not told.
qint64 silentSamples(const Information& information);

/// Every frame from \p firstFrame on, if they follow each other without a gap up to the end or to the tags behind; else
/// nothing. \param ticks length of one sample in the index's time base.
std::optional<PacketIndex> walk(const FileImage& image, qint64 firstFrame, qint64 ticks,
                                const std::optional<Information>& information);

} // namespace MpegFrames
