#include "tags/containers/AiffFile.h"

#include "tags/bytes/ByteReader.h"
#include "tags/bytes/Chunks.h"
#include "tags/bytes/FieldLimits.h"
#include "tags/fields/ItemCollector.h"
#include "tags/formats/Id3v2.h"
#include "tags/text/TagText.h"

#include <cmath>

namespace AiffFile {

namespace {

constexpr qint64 kFileHeaderSize = 12;

/// 80-bit extended float of the SANE library, as AIFF keeps sample rates.
double extendedFloat(ByteReader& reader)
{
    const int exponent = reader.u16be() & 0x7fff;
    const quint64 mantissa = reader.u64be();
    constexpr int kBias = 16383;
    constexpr int kMantissaBits = 63;
    return exponent == 0x7fff ? 0 : std::ldexp(static_cast<double>(mantissa), exponent - kBias - kMantissaBits);
}

/// The "COMM" chunk. Source: Apple, Audio Interchange File Format 1.3 and AIFF-C.
std::optional<Sound> describe(const QByteArray& chunk, qint64 soundSize)
{
    ByteReader reader(chunk);
    const quint16 channels = reader.u16be();
    const quint32 frames = reader.u32be();
    const quint16 bits = reader.u16be();
    const double sampleRate = extendedFloat(reader);
    constexpr double kHighestSampleRate = 1e8; // chosen: far above any converter
    if (reader.hasFailed() || !(sampleRate > 0 && sampleRate < kHighestSampleRate))
        return std::nullopt;
    const QByteArrayView compression = reader.bytes(4);
    static constexpr const char* kLinear[] = {"NONE", "twos", "sowt", "fl32", "FL32",
                                              "fl64", "FL64", "in24", "in32", "raw "};
    const bool isLinear = reader.hasFailed() || std::ranges::any_of(kLinear, [&](const char* kind) {
                              return compression == QByteArrayView(kind);
                          });

    Sound sound;
    sound.seconds = frames / sampleRate;
    sound.details.bitDepth = isLinear ? bits : 0;
    sound.details.audioDataByteCount = static_cast<quint64>(soundSize);
    if (isLinear)
        sound.details.bitRate = sampleRate * channels * ((bits + 7) / 8) * 8; // samples fill whole bytes
    else if (frames > 0)
        sound.details.bitRate = double(soundSize) * 8 / *sound.seconds;
    return sound;
}

std::optional<FieldName> textField(const QByteArray& id)
{
    const QLatin1StringView format("aiff");
    if (id == "NAME")
        return FieldName{format, QStringLiteral("NAME"), CommonKey::Title};
    if (id == "AUTH")
        return FieldName{format, QStringLiteral("AUTH"), CommonKey::Artist};
    if (id == "ANNO")
        return FieldName{format, QStringLiteral("ANNO"), CommonKey::Description};
    return id == "(c) " ? std::optional(FieldName{format, QStringLiteral("(c) ")}) : std::nullopt;
}

} // namespace

std::optional<Sound> read(const ByteRange& file, ItemCollector& items)
{
    std::optional<QByteArray> common;
    std::optional<ByteRange> id3;
    qint64 soundSize = 0;
    ChunkWalker walker(file.from(kFileHeaderSize), ChunkWalker::Endian::Big);
    while (const std::optional<Chunk> chunk = walker.next()) {
        if (chunk->id == "COMM" && !common)
            common = chunk->body.read(0, 22);
        else if (chunk->id == "SSND" && soundSize == 0)
            soundSize = std::max<qint64>(0, chunk->body.size() - 8); // behind offset and block size
        else if ((chunk->id == "ID3 " || chunk->id == "id3 ") && !id3)
            id3 = chunk->body;
        else if (const std::optional<FieldName> field = textField(chunk->id);
                 field && chunk->body.size() <= FieldLimits::kTextBytes)
            items.addLegacyText(*field, TagText::untilZero(chunk->body.read(0, chunk->body.size())));
    }
    if (id3)
        Id3v2::read(*id3, items);
    return common ? describe(*common, soundSize) : std::nullopt;
}

} // namespace AiffFile
