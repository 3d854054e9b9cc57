#include "tags/formats/RiffInfo.h"

#include "tags/bytes/Chunks.h"
#include "tags/bytes/FieldLimits.h"
#include "tags/fields/ItemCollector.h"
#include "tags/text/TagText.h"

namespace RiffInfo {

namespace {

std::optional<CommonKey> commonKey(const QByteArray& id)
{
    if (id == "INAM")
        return CommonKey::Title;
    if (id == "IART")
        return CommonKey::Artist;
    if (id == "IPRD")
        return CommonKey::AlbumName;
    if (id == "IGNR")
        return CommonKey::Type;
    return id == "ICMT" ? std::optional(CommonKey::Description) : std::nullopt;
}

} // namespace

void read(const ByteRange& list, ItemCollector& items)
{
    ChunkWalker walker(list, ChunkWalker::Endian::Little);
    while (const std::optional<Chunk> chunk = walker.next()) {
        if (chunk->body.size() > FieldLimits::kTextBytes)
            continue;
        const QByteArray value = chunk->body.read(0, chunk->body.size());
        items.addLegacyText({QLatin1StringView("riff"), QString::fromLatin1(chunk->id), commonKey(chunk->id)},
                            TagText::untilZero(value));
    }
}

} // namespace RiffInfo
