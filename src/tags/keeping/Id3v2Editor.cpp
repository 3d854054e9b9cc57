#include "tags/keeping/Id3v2Editor.h"

#include "tags/bytes/ByteReader.h"
#include "tags/keeping/Id3v2NewFrames.h"
#include "tags/keeping/Id3v2Walk.h"
#include "tags/keeping/TagEntry.h"
#include "tags/text/TagText.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/TagSizes.h"
#include "tags/writing/WriteErrors.h"

namespace Id3v2Editor {

namespace {

constexpr qsizetype kBodyLimit = 1 << 28; ///< four bytes of seven bits hold less
constexpr char kExperimental = 0x20;

/// The number of the kind of picture in a picture frame; nothing if the frame cannot be read.
std::optional<quint32> pictureType(QByteArrayView content, int version)
{
    ByteReader reader(content);
    reader.skip(1); // encoding
    if (version == 2)
        reader.skip(3);
    else if (!content.isEmpty())
        reader.skip(TagText::untilZero(content.sliced(1)).size() + 1);
    const quint8 type = reader.u8();
    return reader.hasFailed() ? std::nullopt : std::optional<quint32>(type);
}

bool goes(const Id3v2Walk::Frame& frame, int version, const KeepEdits& edits)
{
    const TagEntry entry = TagEntries::ofId3Frame(frame.parts.id, frame.content, version);
    if (entry.kind != TagEntry::Kind::Picture)
        return entry.isField(edits.fields);
    const std::optional<quint32> type = pictureType(frame.content, frame.parts.id.size() == 3 ? 2 : version);
    return type && edits.replacesPicture(*type);
}

QByteArray tagOf(const QByteArray& start, const QByteArray& frames, const QString& path)
{
    if (frames.size() >= kBodyLimit)
        throw FileError(FileError::Case::fileWriteOutOfSpace, path);
    return start + ByteOrder::syncsafe(static_cast<quint32>(frames.size())) + frames;
}

QByteArray editedTag(const Id3v2Walk& walk, const QByteArray& header, const KeepEdits& edits, News news,
                     const QString& path)
{
    QByteArray frames;
    walk.forEach([&](const Id3v2Walk::Frame& frame) {
        if (!goes(frame, walk.version(), edits))
            frames += walk.kept(frame);
    });
    if (news == News::Add)
        frames += Id3v2NewFrames::frames(edits, walk.version());
    const bool isExperimental = walk.version() > 2 && (header[5] & kExperimental) != 0;
    return tagOf(header.first(5) + (isExperimental ? kExperimental : '\0'), frames, path);
}

} // namespace

Edited edited(const ByteRange& file, const KeepEdits& edits, News news, const QString& path)
{
    Edited result;
    for (;;) {
        const ByteRange rest = file.from(result.oldSize);
        const QByteArray header = rest.read(0, TagSizes::kId3HeaderSize);
        if (!TagSizes::isId3Header(header))
            return result;
        const Id3v2Walk walk(rest, path);
        const bool isFirst = result.oldSize == 0;
        result.tags += editedTag(walk, header, edits, isFirst ? news : News::Leave, path);
        result.oldSize += walk.size();
    }
}

QByteArray newTag(const KeepEdits& edits, const QString& path)
{
    constexpr int kVersion = 3;
    const QByteArray frames = Id3v2NewFrames::frames(edits, kVersion);
    return frames.isEmpty() ? QByteArray() : tagOf(QByteArray("ID3\x03\0\0", 6), frames, path);
}

} // namespace Id3v2Editor
