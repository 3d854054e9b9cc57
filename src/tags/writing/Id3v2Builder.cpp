#include "tags/writing/Id3v2Builder.h"

#include "core/model/AudioTags.h"
#include "tags/writing/ByteOrder.h"

namespace Id3v2Builder {

namespace {
constexpr qint64 kTooLarge = qint64(1) << 28; // four bytes of seven bits hold less

// Source: ID3v2.3.0, sections 3.1, 3.3, 4.2, 4.11 and 4.15.
constexpr QByteArrayView kHeader("ID3\x03\x00\x00", 6);
constexpr QByteArrayView kFrameFlags("\0\0", 2);
constexpr char kUtf16 = 1;
/// UTF-16, English, an empty description.
constexpr QByteArrayView kCommentStart("\x01"
                                       "eng\0\0",
                                       6);
/// The end of the type's name, front cover, an empty description.
constexpr QByteArrayView kPictureStart("\0\x03\0", 3);
constexpr QByteArrayView kPngStart("\x89PNG");

struct TextFrame {
    const char* id;
    QString AudioTags::*value;
};

constexpr TextFrame kTextFrames[] = {
    {"TIT2", &AudioTags::title},       {"TPE1", &AudioTags::artist}, {"TALB", &AudioTags::album},
    {"TPE2", &AudioTags::albumArtist}, {"TCON", &AudioTags::genre},  {"TYER", &AudioTags::year},
    {"TRCK", &AudioTags::track},       {"TBPM", &AudioTags::bpm},    {"TKEY", &AudioTags::musicalKey},
};

QByteArray utf16(const QString& text)
{
    QByteArray bytes("\xff\xfe");
    bytes.reserve(2 + 2 * text.size());
    for (const QChar unit : text) {
        bytes.append(static_cast<char>(unit.cell()));
        bytes.append(static_cast<char>(unit.row()));
    }
    return bytes;
}

void appendFrame(const char* id, const QByteArray& payload, QByteArray& frames)
{
    frames += id;
    frames += ByteOrder::big32(static_cast<quint32>(payload.size()));
    frames += kFrameFlags;
    frames += payload;
}

} // namespace

QByteArray tag(const AudioTags& tags, const std::optional<QByteArray>& artwork)
{
    QByteArray frames;
    for (const TextFrame& frame : kTextFrames) {
        const QString& value = tags.*frame.value;
        if (!value.isEmpty())
            appendFrame(frame.id, textPayload(value), frames);
    }
    if (!tags.comment.isEmpty())
        appendFrame("COMM", kCommentStart.toByteArray() + utf16(tags.comment), frames);
    if (artwork)
        appendFrame("APIC", picturePayload(*artwork), frames);
    if (frames.isEmpty())
        return {};
    return kHeader.toByteArray() + ByteOrder::syncsafe(static_cast<quint32>(frames.size())) + frames;
}

bool fits(const QByteArray& tag)
{
    return tag.size() < kHeader.size() + 4 + kTooLarge;
}

QByteArray textPayload(const QString& text)
{
    return QByteArray(1, kUtf16) + utf16(text);
}

QByteArray picturePayload(const QByteArray& picture)
{
    QByteArray payload(1, '\0');
    payload += picture.startsWith(kPngStart) ? "image/png" : "image/jpeg";
    payload += kPictureStart;
    return payload + picture;
}

} // namespace Id3v2Builder
