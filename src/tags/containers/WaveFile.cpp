#include "tags/containers/WaveFile.h"

#include "tags/bytes/ByteReader.h"
#include "tags/bytes/Chunks.h"
#include "tags/formats/Id3v2.h"
#include "tags/formats/RiffInfo.h"

namespace WaveFile {

namespace {

constexpr qint64 kFileHeaderSize = 12;

/// The "fmt " chunk. Source: Microsoft, WAVEFORMATEX and WAVEFORMATEXTENSIBLE.
struct Format {
    static constexpr quint16 kPcm = 1;
    static constexpr quint16 kFloat = 3;
    static constexpr quint16 kExtensible = 0xFFFE;

    quint16 tag = 0;
    quint32 sampleRate = 0;
    quint32 bytesPerSecond = 0;
    quint16 bytesPerFrame = 0;
    quint16 bitsPerSample = 0;

    bool isLinear() const { return tag == kPcm || tag == kFloat; }
};

Format readFormat(const QByteArray& chunk)
{
    ByteReader reader(chunk);
    Format format;
    format.tag = reader.u16le();
    reader.skip(2); // channels
    format.sampleRate = reader.u32le();
    format.bytesPerSecond = reader.u32le();
    format.bytesPerFrame = reader.u16le();
    format.bitsPerSample = reader.u16le();
    if (reader.hasFailed())
        return {};
    if (format.tag == Format::kExtensible) {
        reader.skip(8);              // size of the extension, valid bits, speakers
        format.tag = reader.u16le(); // the begin of the kind's GUID
    }
    return format;
}

struct Chunks {
    std::optional<Format> format;
    std::optional<ByteRange> data;
    std::optional<ByteRange> info;
    std::optional<ByteRange> id3;
    quint64 longDataSize = 0; ///< from an RF64 file's table of sizes
    quint32 frames = 0;       ///< sample frames by the "fact" chunk
};

void take(const Chunk& chunk, Chunks& chunks)
{
    if (chunk.id == "fmt " && !chunks.format)
        chunks.format = readFormat(chunk.body.read(0, 64));
    else if (chunk.id == "fact")
        chunks.frames = ByteReader(chunk.body.read(0, 4)).u32le();
    else if (chunk.id == "ds64")
        chunks.longDataSize = ByteReader(chunk.body.read(8, 8)).u64le();
    else if (chunk.id == "LIST" && chunk.body.read(0, 4) == "INFO")
        chunks.info = chunk.body.from(4);
    else if ((chunk.id == "id3 " || chunk.id == "ID3 ") && !chunks.id3)
        chunks.id3 = chunk.body;
}

/// Whether one chunk after the other stands here up to the end.
bool holdsChunksOnly(const ByteRange& range)
{
    ChunkWalker walker(range, ChunkWalker::Endian::Little);
    qint64 end = range.begin;
    while (const std::optional<Chunk> chunk = walker.next()) {
        if (chunk->body.size() < chunk->statedSize)
            return false;
        end = chunk->body.end;
    }
    return range.end - end <= 1; // the last padding
}

Chunks readChunks(const ByteRange& file)
{
    Chunks chunks;
    const ByteRange body = file.from(kFileHeaderSize);
    ChunkWalker walker(body, ChunkWalker::Endian::Little);
    while (const std::optional<Chunk> chunk = walker.next()) {
        if (chunk->id != "data" || chunks.data) {
            take(*chunk, chunks);
            continue;
        }
        constexpr quint32 kSizeElsewhere = 0xFFFFFFFF;
        const bool isLong = chunk->statedSize == kSizeElsewhere && chunks.longDataSize > 0;
        qint64 size = isLong ? static_cast<qint64>(std::min<quint64>(chunks.longDataSize, file.size()))
                             : static_cast<qint64>(chunk->statedSize);
        // Recorders write the size at the end, and one that crashed never came to it.
        if (size == 0 && !holdsChunksOnly(body.from(chunk->body.begin - body.begin)))
            size = body.size();
        chunks.data = body.part(chunk->body.begin - body.begin, size);
        walker.continueAfter(size);
    }
    return chunks;
}

Sound describe(const Format& format, const Chunks& chunks)
{
    Sound sound;
    const qint64 bytes = chunks.data ? chunks.data->size() : 0;
    sound.details.audioDataByteCount = static_cast<quint64>(bytes);
    sound.details.bitDepth = format.isLinear() ? format.bitsPerSample : 0;
    const double linearRate = double(format.sampleRate) * format.bytesPerFrame;
    const double bytesPerSecond = format.isLinear() && linearRate > 0 ? linearRate : double(format.bytesPerSecond);
    if (!format.isLinear() && chunks.frames > 0 && format.sampleRate > 0) {
        sound.seconds = double(chunks.frames) / format.sampleRate;
        sound.details.bitRate = double(bytes) * 8 / *sound.seconds;
    } else if (bytesPerSecond > 0) {
        sound.seconds = double(bytes) / bytesPerSecond;
        sound.details.bitRate = bytesPerSecond * 8;
    }
    return sound;
}

} // namespace

std::optional<Sound> read(const ByteRange& file, ItemCollector& items)
{
    const Chunks chunks = readChunks(file);
    if (chunks.info)
        RiffInfo::read(*chunks.info, items);
    if (chunks.id3) {
        ByteRange tag = *chunks.id3;
        Id3v2::read(tag, items);
    }
    return chunks.format && chunks.data ? std::optional(describe(*chunks.format, chunks)) : std::nullopt;
}

} // namespace WaveFile
