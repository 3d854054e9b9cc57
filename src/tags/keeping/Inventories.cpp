#include "tags/keeping/Inventories.h"

#include "tags/bytes/ByteReader.h"
#include "tags/bytes/FieldLimits.h"
#include "tags/keeping/Id3v2Walk.h"
#include "tags/keeping/InventoryCollector.h"
#include "tags/keeping/TrailingTags.h"
#include "tags/writing/AiffWriter.h"
#include "tags/writing/ApeFilter.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/FlacBlocks.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/RiffInfoWriter.h"
#include "tags/writing/TagSizes.h"
#include "tags/writing/VorbisCommentWriter.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>
#include <set>

namespace Inventories {

namespace {

/// Looks at a tag that a plain save drops unread.
template <typename Look>
void takeWhole(InventoryCollector& collector, const Look& look)
{
    collector.beginTag();
    try {
        look();
    } catch (const FileError&) {
        collector.setUnknown();
    } catch (const WriteError&) {
        collector.setUnknown();
    }
}

/// Values behind the first one of a text frame of ID3v2.4, where zeros part them; of earlier versions these are no
/// part of the text, but go as well.
int furtherValues(QByteArrayView content)
{
    if (content.isEmpty())
        return 0;
    const bool isWide = content.front() == 1 || content.front() == 2; // UTF-16. Source: ID3v2.4.0, section 4
    const qsizetype step = isWide ? 2 : 1;
    const QByteArrayView text = content.sliced(1);
    int count = 0;
    bool isInside = false;
    for (qsizetype place = 0; place + step <= text.size(); place += step) {
        const bool isEnd = text[place] == 0 && text[place + step - 1] == 0;
        count += !isEnd && !isInside ? 1 : 0;
        isInside = !isEnd;
    }
    return std::max(0, count - 1);
}

void takeFrame(const Id3v2Walk::Frame& frame, int version, InventoryCollector& collector)
{
    const TagEntry entry = TagEntries::ofId3Frame(frame.parts.id, frame.content, version);
    collector.add(entry);
    const bool isText = frame.parts.id.startsWith('T') && !frame.parts.id.startsWith("TXX");
    if (entry.kind != TagEntry::Kind::Field || !isText || entry.text.isEmpty())
        return;
    for (int further = furtherValues(frame.content); further > 0; --further)
        collector.addOther();
}

void takeId3v2(const ByteRange& file, const QString& path, InventoryCollector& collector)
{
    takeWhole(collector, [&] {
        qint64 size = 0;
        while (TagSizes::isId3Header(file.read(size, TagSizes::kId3HeaderSize))) {
            collector.beginTag();
            const Id3v2Walk walk(file.from(size), path);
            walk.forEach([&](const Id3v2Walk::Frame& frame) { takeFrame(frame, walk.version(), collector); });
            size += walk.size();
        }
    });
}

/// Year and track: no read supplies them. Source: the layout of ID3v1 and ID3v1.1, id3.org.
void takeId3v1(const QByteArray& tag, InventoryCollector& collector)
{
    constexpr qsizetype kYear = 93;
    constexpr qsizetype kTrack = 126;
    TagEntry entry;
    entry.kind = TagEntry::Kind::Field;
    entry.field = TagField::Year;
    entry.text = QString::fromLatin1(tag.sliced(kYear, 4).replace('\0', ' ')).trimmed();
    collector.add(entry);
    entry.field = TagField::Track;
    const int track = static_cast<uchar>(tag.at(kTrack));
    entry.text = tag.at(kTrack - 1) == 0 && track != 0 ? QString::number(track) : QString();
    collector.add(entry);
}

void takeApe(const QByteArray& tag, const RewriteSource& source, InventoryCollector& collector)
{
    const ApeFilter::IsDropped look = [&](const QString& /*key*/, QByteArrayView item) {
        collector.add(TagEntries::ofApeItem(item));
        return false;
    };
    takeWhole(collector, [&] {
        if (!ApeFilter::filtered(tag, look))
            source.failCorrupt();
    });
}

void takeComments(const QByteArray& block, const RewriteSource& source, InventoryCollector& collector)
{
    const VorbisCommentWriter::IsDropped look = [&](QByteArrayView comment) {
        collector.add(TagEntries::ofComment(comment));
        return false;
    };
    takeWhole(collector, [&] {
        if (!VorbisCommentWriter::filtered(block, look, {}))
            source.failCorrupt();
    });
}

void takeInfo(const FileChunk& list, const RewriteSource& source, InventoryCollector& collector)
{
    constexpr qint64 kKindSize = 4; // "INFO"
    takeWhole(collector, [&] {
        FileChunkWalker walker(ChunkForm::riff(), source, list.bodyOffset() + kKindSize,
                               list.bodyOffset() + list.bodySize, FileChunkWalker::LastPadding::Optional);
        while (const std::optional<FileChunk> chunk = walker.next()) {
            const qint64 size = chunk->bodySize <= FieldLimits::kTextBytes ? chunk->bodySize : 0;
            const QByteArray text = source.read(chunk->bodyOffset(), size);
            collector.add(TagEntries::ofInfoChunk(ChunkForm::riff().chunk(chunk->id, text)));
        }
    });
}

void takeChunks(const ChunkForm& form, const RewriteSource& source, const std::function<void(const FileChunk&)>& take)
{
    form.requireHeader(source);
    FileChunkWalker walker(form, source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next())
        take(*chunk);
}

} // namespace

void takeMp3(const RewriteSource& source, TagInventory& inventory)
{
    InventoryCollector collector(inventory);
    takeId3v2(source.range(0, source.size()), source.path(), collector);
    const TrailerParts::Read read = [&](qint64 offset, qint64 count) { return source.read(offset, count); };
    const TrailingTags trailing(source, TagSizes::behindId3Tags(read, source.size(), source.path()));
    for (const TrailingTags::Part& part : trailing.parts()) {
        if (part.kind == TrailingTags::Part::Kind::Ape)
            takeApe(source.read(part.offset, part.size), source, collector);
        else if (part.kind == TrailingTags::Part::Kind::Id3v1)
            takeId3v1(source.read(part.offset, part.size), collector);
    }
}

void takeFlac(const RewriteSource& source, TagInventory& inventory)
{
    InventoryCollector collector(inventory);
    FlacBlockWalker walker(source);
    while (const std::optional<FlacBlock> block = walker.next()) {
        if (block->type == FlacBlock::Picture)
            collector.addPicture();
        else if (block->type == FlacBlock::VorbisComment)
            takeComments(source.read(block->bodyOffset(), block->bodySize), source, collector);
    }
}

void takeWav(const RewriteSource& source, TagInventory& inventory)
{
    InventoryCollector collector(inventory, TagField::AlbumArtist); // a list has no chunk for it
    takeChunks(ChunkForm::riff(), source, [&](const FileChunk& chunk) {
        if (ChunkTagWriter::isID3(chunk))
            takeId3v2(source.range(chunk.bodyOffset(), chunk.bodySize), source.path(), collector);
        else if (RiffInfoWriter::isInfo(chunk, source))
            takeInfo(chunk, source, collector);
    });
}

void takeAiff(const RewriteSource& source, TagInventory& inventory)
{
    InventoryCollector collector(inventory);
    std::set<QByteArray> texts;
    takeChunks(ChunkForm::aiff(), source, [&](const FileChunk& chunk) {
        if (ChunkTagWriter::isID3(chunk))
            takeId3v2(source.range(chunk.bodyOffset(), chunk.bodySize), source.path(), collector);
        else if (chunk.id == "COMT")
            collector.addOther(); // goes with a plain save, and is not read
        else if (AiffWriter::isText(chunk) && !texts.insert(chunk.id).second)
            collector.addOther(); // one of each is read
    });
}

} // namespace Inventories
