#include "tags/containers/Mp4Sound.h"

#include "tags/bytes/Atoms.h"
#include "tags/bytes/ByteReader.h"
#include "tags/containers/Mp4Fragments.h"

#include <algorithm>

namespace Mp4Sound {

namespace {

struct Times {
    double scale = 0; ///< units per second
    double duration = 0;
};

/// The times of an atom "mvhd" or "mdhd", which begin alike. Source: ISO/IEC 14496-12, 8.2.2 and 8.4.2.
Times times(const ByteRange& header)
{
    const QByteArray bytes = header.read(0, 32);
    ByteReader reader(bytes);
    const bool isLong = reader.u8() == 1;
    reader.skip(3 + (isLong ? 16 : 8)); // flags, dates
    const quint32 timeScale = reader.u32be();
    const quint64 duration = isLong ? reader.u64be() : reader.u32be();
    const quint64 unknown = isLong ? ~quint64(0) : quint64(0xFFFFFFFF);
    if (reader.hasFailed())
        return {};
    return {static_cast<double>(timeScale), duration == unknown ? 0 : static_cast<double>(duration)};
}

std::optional<double> seconds(double duration, double scale)
{
    return duration > 0 && scale > 0 ? std::optional(duration / scale) : std::nullopt;
}

/// The length of a track: its own, else that of its fragments, else that of the movie.
std::optional<double> seconds(const ByteRange& file, const ByteRange& movie, const ByteRange& track)
{
    const Times own = times(childAtom(childAtom(track, "mdia"), "mdhd"));
    if (own.duration > 0 && own.scale > 0)
        return seconds(own.duration, own.scale);
    const Times whole = times(childAtom(movie, "mvhd"));
    if (const std::optional<double> stated = seconds(Mp4Fragments::statedDuration(movie).value_or(0), whole.scale))
        return stated;
    const ByteRange header = childAtom(track, "tkhd");
    const bool isLong = header.read(0, 1) == "\1";
    const quint32 trackID = ByteReader(header.read(isLong ? 20 : 12, 4)).u32be();
    const std::optional<double> counted = Mp4Fragments::countedDuration(file, movie, trackID);
    const std::optional<double> length = seconds(counted.value_or(0), own.scale);
    return length ? length : seconds(whole.duration, whole.scale);
}

/// Bytes of all samples by the atom "stsz"; 0 if it does not say. Source: ISO/IEC 14496-12, 8.7.3.
quint64 sampleBytes(const ByteRange& sizes)
{
    constexpr qint64 kHeaderSize = 12;
    const QByteArray header = sizes.read(0, kHeaderSize);
    ByteReader reader(header);
    reader.skip(4); // version, flags
    const quint64 commonSize = reader.u32be();
    const quint64 count = reader.u32be();
    if (commonSize == 1) // QuickTime files count plain samples so, whatever their size
        return 0;
    if (commonSize != 0)
        return commonSize * count;
    const ByteRange table = sizes.part(kHeaderSize, static_cast<qint64>(count) * 4);
    constexpr qint64 kBlockSize = 64 * 1024;
    quint64 sum = 0;
    for (qint64 offset = 0; offset < table.size(); offset += kBlockSize) {
        const QByteArray block = table.read(offset, kBlockSize);
        ByteReader entries(block);
        while (entries.remaining() >= 4)
            sum += entries.u32be();
    }
    return sum;
}

/// The child of a sample entry, which QuickTime files keep one level deeper in "wave".
ByteRange configuration(const ByteRange& children, QByteArrayView type)
{
    const ByteRange found = childAtom(children, type);
    return found.size() > 0 ? found : childAtom(childAtom(children, "wave"), type);
}

/// Bits per second of an elementary stream descriptor. Source: ISO/IEC 14496-1, 7.2.6.
double averageBitRate(const QByteArray& esds)
{
    enum class Tag : quint8 { Stream = 3, DecoderConfiguration = 4 };
    ByteReader reader(esds);
    const auto skipLength = [&] {
        for (int index = 0; index < 4 && reader.u8() & 0x80; ++index) {
        }
    };
    reader.skip(4); // version, flags
    if (static_cast<Tag>(reader.u8()) != Tag::Stream)
        return 0;
    skipLength();
    reader.skip(2); // id
    const quint8 flags = reader.u8();
    reader.skip(flags & 0x80 ? 2 : 0);           // depends on another stream
    reader.skip(flags & 0x40 ? reader.u8() : 0); // URL
    reader.skip(flags & 0x20 ? 2 : 0);           // clock
    if (static_cast<Tag>(reader.u8()) != Tag::DecoderConfiguration)
        return 0;
    skipLength();
    reader.skip(9); // kind, buffer size, largest bit rate
    return reader.u32be();
}

/// Bits per sample as the lossless codecs keep them; 0 for the others.
int bitDepth(const QByteArray& codec, int statedBits, const ByteRange& children)
{
    if (codec == "alac") {
        const QByteArray bytes = configuration(children, "alac").read(9, 1); // version, flags, frame length, version
        return bytes.isEmpty() ? 0 : static_cast<uchar>(bytes[0]);
    }
    if (codec == "fLaC") {
        const QByteArray bytes = configuration(children, "dfLa").read(18, 8); // as in a FLAC file's first block
        ByteReader reader(bytes);
        const quint64 packed = reader.u64be();
        return reader.hasFailed() ? 0 : static_cast<int>(packed >> 36 & 0x1f) + 1;
    }
    static constexpr const char* kLinear[] = {"sowt", "twos", "lpcm", "ipcm", "fpcm", "in24", "in32", "fl32", "fl64"};
    const auto isCodec = [&](const char* name) { return codec == name; };
    return std::ranges::any_of(kLinear, isCodec) ? statedBits : 0;
}

/// The first entry of "stsd". Source: ISO/IEC 14496-12, 8.5.2 and 12.2.3; Apple, QuickTime File Format.
SoundDetails describe(const ByteRange& sampleTable)
{
    SoundDetails details;
    const ByteRange descriptions = childAtom(sampleTable, "stsd").from(8);
    const std::optional<Atom> entry = AtomWalker(descriptions).next();
    if (!entry)
        return details;
    const QByteArray bytes = entry->body.read(0, 28);
    ByteReader reader(bytes);
    reader.skip(8);
    const quint16 version = reader.u16be();
    reader.skip(8);
    const quint16 bits = reader.u16be();
    if (reader.hasFailed())
        return details;
    const ByteRange children = entry->body.from(28 + (version == 1 ? 16 : version == 2 ? 36 : 0));
    details.bitDepth = bitDepth(entry->type, bits, children);
    const ByteRange esds = configuration(children, "esds");
    details.bitRate = averageBitRate(esds.read(0, 64));
    return details;
}

} // namespace

std::optional<Sound> read(const ByteRange& file, const ByteRange& movie, qint64 mediaBytes)
{
    std::optional<ByteRange> soundTrack;
    int trackCount = 0;
    AtomWalker walker(movie);
    while (const std::optional<Atom> atom = walker.next()) {
        if (atom->type != "trak")
            continue;
        ++trackCount;
        if (!soundTrack && childAtom(childAtom(atom->body, "mdia"), "hdlr").read(8, 4) == "soun")
            soundTrack = atom->body;
    }
    if (!soundTrack)
        return std::nullopt;
    const ByteRange sampleTable = childAtom(childAtom(childAtom(*soundTrack, "mdia"), "minf"), "stbl");
    Sound sound;
    sound.seconds = seconds(file, movie, *soundTrack);
    sound.details = describe(sampleTable);
    // What was really coded, rather than the rate that the encoder aimed at.
    auto bytes = static_cast<quint64>(mediaBytes);
    if (trackCount > 1) {
        bytes = sampleBytes(childAtom(sampleTable, "stsz"));
        if (bytes > static_cast<quint64>(mediaBytes))
            bytes = 0;
    }
    if (bytes > 0) {
        sound.details.audioDataByteCount = bytes;
        if (sound.seconds && (trackCount == 1 || sound.details.bitRate == 0))
            sound.details.bitRate = static_cast<double>(bytes) * 8 / *sound.seconds;
    }
    return sound;
}

} // namespace Mp4Sound
