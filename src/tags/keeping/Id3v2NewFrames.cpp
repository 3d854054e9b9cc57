#include "tags/keeping/Id3v2NewFrames.h"

#include "tags/text/GenreNames.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/Id3v2Builder.h"
#include "tags/writing/WriteErrors.h"

namespace Id3v2NewFrames {

namespace {

/// Below what four bytes of seven bits can say; every version's tags are smaller.
constexpr qsizetype kTooLarge = qsizetype(1) << 28;

// Source: ID3v2.2.0 section 4, ID3v2.3.0 section 4, ID3v2.4.0 section 4 of the frames.
struct TextFrame {
    QString AudioTags::*value;
    const char* ids[3]; ///< by version
};
constexpr TextFrame kTextFrames[] = {
    {&AudioTags::title, {"TT2", "TIT2", "TIT2"}},      {&AudioTags::artist, {"TP1", "TPE1", "TPE1"}},
    {&AudioTags::album, {"TAL", "TALB", "TALB"}},      {&AudioTags::albumArtist, {"TP2", "TPE2", "TPE2"}},
    {&AudioTags::genre, {"TCO", "TCON", "TCON"}},      {&AudioTags::year, {"TYE", "TYER", "TDRC"}},
    {&AudioTags::track, {"TRK", "TRCK", "TRCK"}},      {&AudioTags::bpm, {"TBP", "TBPM", "TBPM"}},
    {&AudioTags::musicalKey, {"TKE", "TKEY", "TKEY"}},
};

QByteArray frame(const char* id, const QByteArray& payload, int version)
{
    const qsizetype limit = version == 2 ? ByteOrder::kMaximum24 + 1 : kTooLarge;
    if (payload.size() >= limit)
        throw WriteError(WriteError::Case::rewriteFailed, QStringLiteral("ID3"));
    const auto size = static_cast<quint32>(payload.size());
    if (version == 2)
        return id + ByteOrder::big24(size) + payload;
    return id + (version == 3 ? ByteOrder::big32(size) : ByteOrder::syncsafe(size)) + QByteArray(2, '\0') + payload;
}

/// A genre that begins like a reference by number is escaped where the version has a way to.
QString genreText(const QString& genre, int version)
{
    const bool isMistaken = version < 4 && GenreNames::withReferences(genre) != genre;
    return isMistaken && genre.startsWith(u'(') ? u'(' + genre : genre;
}

/// The empty description has a mark of its own: some readers pass over a comment without it.
QByteArray commentPayload(const QString& comment)
{
    const QByteArray text = Id3v2Builder::textPayload(comment);
    return text.first(1) + "eng" + QByteArray("\xff\xfe\0\0", 4) + text.sliced(1);
}

/// ID3v2.2 has three letters for the kind of picture in the place of a media type.
QByteArray picturePayload(const QByteArray& picture, int version)
{
    if (version > 2)
        return Id3v2Builder::picturePayload(picture);
    constexpr char kFrontCover = 3;
    return QByteArray(1, '\0') + (picture.startsWith("\x89PNG") ? "PNG" : "JPG") + kFrontCover + '\0' + picture;
}

} // namespace

QByteArray frames(const KeepEdits& edits, int version)
{
    const AudioTags tags = edits.newTags();
    QByteArray bytes;
    for (const TextFrame& text : kTextFrames) {
        const QString& value = tags.*text.value;
        const QString written = text.value == &AudioTags::genre ? genreText(value, version) : value;
        if (!value.isEmpty())
            bytes += frame(text.ids[version - 2], Id3v2Builder::textPayload(written), version);
    }
    if (!tags.comment.isEmpty())
        bytes += frame(version == 2 ? "COM" : "COMM", commentPayload(tags.comment), version);
    if (edits.artwork)
        bytes += frame(version == 2 ? "PIC" : "APIC", picturePayload(*edits.artwork, version), version);
    return bytes;
}

} // namespace Id3v2NewFrames
