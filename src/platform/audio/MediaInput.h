#pragma once

#include "platform/audio/AVHandles.h"
#include "platform/audio/PacketIndex.h"

#include <memory>

class FileImage;

/// The packets of the sound in one file, read from its image and from nowhere else: references to other files and to
/// the network are not followed.
class MediaInput {
public:
    /// Opens the file's format and chooses its sound; pictures and other streams are left out. Turns the library's
    /// own messages off for the whole process. Errors: AudioFileError (NoAudio, OutOfMemory).
    explicit MediaInput(std::shared_ptr<FileImage> image);

    /// The chosen sound. Belongs to this object and is replaced by rewind().
    const AVStream& stream() const { return *m_stream; }
    /// The bytes that all is read from.
    const FileImage& image() const { return *m_image; }

    /// The next packet of the sound; false at the end, which 64 errors of reading in a row count as. The packet is
    /// empty on entry; what it holds afterwards is the caller's to release. Errors: AudioFileError (OutOfMemory).
    bool next(AVPacket& packet);
    /// Goes to a packet from which decoding gives exact sound at \p time, in the stream's time base. \return false
    /// where the file cannot be gone through; then only rewind() helps.
    bool seek(int64_t time);
    /// Goes to the first packet, whatever happened before. Errors: AudioFileError when the file can no longer be read;
    /// the input then stays where it is.
    void rewind();

    /// Length that the file's head tells, in the stream's time base, unchecked; AV_NOPTS_VALUE where it tells none. For
    /// a bare stream of frames it is counted.
    int64_t statedDuration();
    /// Frames to be heard of an MP3 whose head tells them and agrees with the file's size.
    std::optional<qint64> trustedFrames() const;

private:
    void openFormat();
    bool isBareStream() const;
    const PacketIndex& index();
    PacketIndex scouted() const;
    void restoreTime(AVPacket& packet);
    static int readBytes(void* image, uint8_t* into, int byteCount);
    static int64_t seekBytes(void* image, int64_t offset, int whence);

    /// What the format reads through.
    struct Cursor {
        explicit Cursor(std::shared_ptr<FileImage> from)
            : image(std::move(from))
        {
        }
        std::shared_ptr<FileImage> image;
        int64_t offset = 0;
    };

    std::shared_ptr<FileImage> m_image;
    const AVInputFormat* m_kind; ///< null as long as it has to be found out
    std::unique_ptr<Cursor> m_cursor;
    av::Owner<AVIOContext> m_io;
    av::Owner<AVFormatContext> m_format;
    AVStream* m_stream = nullptr;
    /// Bare streams only, made when first needed.
    std::optional<PacketIndex> m_index;
    bool m_restoresTime = false;
    qint64 m_firstOffset = -1; ///< of the first packet
    int64_t m_firstTime = 0;
    int64_t m_nextTime = 0;
};
