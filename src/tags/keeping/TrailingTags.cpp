#include "tags/keeping/TrailingTags.h"

#include "tags/keeping/Id3v1Editor.h"
#include "tags/keeping/TagEntry.h"
#include "tags/writing/ApeFilter.h"
#include "tags/writing/RewritePlan.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace {

using Part = TrailingTags::Part;

/// Chosen: as large as a tag in front can be.
constexpr qint64 kLargestTag = qint64(1) << 28;

} // namespace

TrailingTags::TrailingTags(const RewriteSource& source, qint64 soundOffset)
    : m_source(source)
    , m_begin(source.size())
{
    const TrailerParts::Read read = [&](qint64 offset, qint64 count) { return source.read(offset, count); };
    while (const std::optional<Part> part = TrailerParts::partBefore(read, m_begin, soundOffset, source.path())) {
        m_parts.push_back(*part);
        m_begin = part->offset;
    }
    std::ranges::reverse(m_parts);
}

void TrailingTags::addEdited(RewritePlan& plan, const KeepEdits& edits) const
{
    for (const Part& part : m_parts) {
        switch (part.kind) {
        case Part::Kind::Id3v1:
            plan.add(Id3v1Editor::edited(m_source.read(part.offset, part.size), edits));
            break;
        case Part::Kind::Ape:
            plan.add(editedApe(part, edits));
            break;
        case Part::Kind::Lyrics:
            plan.keep(part.offset, part.size);
            break;
        }
    }
}

QByteArray TrailingTags::editedApe(const Part& part, const KeepEdits& edits) const
{
    if (part.size > kLargestTag)
        throw FileError(FileError::Case::fileWriteOutOfSpace, m_source.path());
    const ApeFilter::IsDropped goes = [&](const QString& key, QByteArrayView item) {
        const bool isFront = key.compare(QLatin1StringView("COVER ART (FRONT)"), Qt::CaseInsensitive) == 0;
        return isFront ? edits.artwork.has_value() : TagEntries::ofApeItem(item).isField(edits.fields);
    };
    const std::optional<QByteArray> tag = ApeFilter::filtered(m_source.read(part.offset, part.size), goes);
    if (!tag)
        m_source.failCorrupt();
    return *tag;
}
