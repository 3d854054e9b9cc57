#include "tags/writing/Id3v2Filter.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/FieldNames.h"
#include "tags/writing/Id3v2Builder.h"
#include "tags/writing/TagSizes.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace Id3v2Filter {

namespace {

/// The size field has four times seven bits.
constexpr qsizetype kBodyLimit = 1 << 28;
/// Version and size of the header, whose first six bytes stay as they are.
constexpr qsizetype kKeptHeader = 6;

/// What differs between the versions of the format. Source: ID3v2.2.0 section 3.2, ID3v2.3.0 section 3.3, ID3v2.4.0
/// section 4.
struct FrameForm {
    quint8 version;

    qsizetype idSize() const { return version == 2 ? 3 : 4; }
    qsizetype headerSize() const { return version == 2 ? 6 : 10; }

    std::optional<quint32> payloadSize(QByteArrayView header) const
    {
        ByteReader reader(header.sliced(idSize()));
        switch (version) {
        case 2:
            return reader.u24be();
        case 3:
            return reader.u32be();
        default:
            return TagSizes::syncsafe(header.sliced(idSize()));
        }
    }

    QByteArray textFrame(const char* shortId, const char* longId, const QString& text) const
    {
        const QByteArray payload = Id3v2Builder::textPayload(text);
        const auto size = static_cast<quint32>(payload.size());
        if (version == 2)
            return shortId + ByteOrder::big24(size) + payload;
        return longId + (version == 3 ? ByteOrder::big32(size) : ByteOrder::syncsafe(size)) + QByteArray(2, '\0') +
               payload;
    }
};

/// The frames that stay, or nothing if the tag is broken.
std::optional<QByteArray> keptFrames(QByteArrayView tag, FrameForm form, CleanerFields fields)
{
    QByteArray kept;
    for (QByteArrayView rest = tag.sliced(TagSizes::kId3HeaderSize); !rest.isEmpty();) {
        if (rest.front() == '\0') { // padding
            const bool isEmpty = std::ranges::all_of(rest, [](char byte) { return byte == '\0'; });
            return isEmpty ? std::optional(kept) : std::nullopt;
        }
        if (rest.size() < form.headerSize())
            return std::nullopt;
        const std::optional<quint32> payload = form.payloadSize(rest.first(form.headerSize()));
        if (!payload || *payload > rest.size() - form.headerSize())
            return std::nullopt;
        const qsizetype size = form.headerSize() + qsizetype(*payload);
        if (!FieldNames::isId3Frame(rest.first(form.idSize()), fields))
            kept += rest.first(size);
        rest = rest.sliced(size);
    }
    return kept;
}

} // namespace

QByteArray filtered(QByteArrayView tag, CleanerFields fields, const std::optional<QString>& title,
                    const std::optional<QString>& album, const QString& path)
{
    const bool isHeader = TagSizes::isId3Header(tag);
    if (!isHeader || tag[3] < 2 || tag[3] > 4 || tag[5] != 0)
        throw WriteError(WriteError::Case::rewriteFailed, QStringLiteral("ID3"));
    const FrameForm form{static_cast<quint8>(tag[3])};
    const std::optional<quint32> size = TagSizes::syncsafe(tag.sliced(kKeptHeader));
    if (!size || TagSizes::kId3HeaderSize + *size != tag.size())
        throw FileError(FileError::Case::fileReadCorruptFile, path);
    std::optional<QByteArray> body = keptFrames(tag, form, fields);
    if (!body)
        throw FileError(FileError::Case::fileReadCorruptFile, path);

    if (fields.testFlag(CleanerField::Title) && title && !title->isEmpty())
        *body += form.textFrame("TT2", "TIT2", *title);
    if (fields.testFlag(CleanerField::Album) && album && !album->isEmpty())
        *body += form.textFrame("TAL", "TALB", *album);
    if (body->size() >= kBodyLimit)
        throw FileError(FileError::Case::fileWriteOutOfSpace, path);
    return tag.first(kKeptHeader).toByteArray() + ByteOrder::syncsafe(static_cast<quint32>(body->size())) + *body;
}

} // namespace Id3v2Filter
