#pragma once

#include "tags/bytes/ByteSource.h"

#include <optional>

namespace Id3v2 {

/// Bytes with the zero after every 0xFF taken out (ID3v2.4.0 section 6.1). Other bytes stay as they are.
QByteArray withoutUnsynchronisation(QByteArrayView bytes);

/// One frame of a tag, not read yet.
struct Frame {
    QByteArray id;  ///< four letters, or three in ID3v2.2
    ByteRange body; ///< as stored, with what the flags put in front
    bool isGrouped = false;
    bool isEncrypted = false;
    bool isCompressed = false;
    bool isUnsynchronised = false;
    bool hasDataLength = false;
    bool isVersion4 = false;
};

/// The frames of one tag, one after another.
class FrameWalker {
public:
    /// \param frames what follows the header and the extended header; must outlive the walk.
    /// \param majorVersion 2, 3 or 4.
    FrameWalker(ByteRange frames, int majorVersion, bool isUnsynchronised);

    /// The next frame; nothing at the padding, at what is no frame, and at a frame that claims more than there is.
    std::optional<Frame> next();
    /// The frame's content, unpacked. Empty if it is encrypted or broken, or if all unpacked content of this tag
    /// together would take more room than the whole file does.
    QByteArray content(const Frame& frame);

private:
    qint64 bodySize(QByteArrayView header, qint64 bodyOffset) const;
    bool mayFollow(qint64 offset) const;
    QByteArray inflated(QByteArrayView packed, qint64 size);

    const ByteRange m_frames;
    const int m_majorVersion;
    const bool m_isUnsynchronised;
    qint64 m_position = 0;
    qint64 m_unpackBudget;
};

} // namespace Id3v2
