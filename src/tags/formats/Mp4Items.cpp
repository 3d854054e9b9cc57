#include "tags/formats/Mp4Items.h"

#include "tags/bytes/Atoms.h"
#include "tags/bytes/ByteReader.h"
#include "tags/bytes/FieldLimits.h"
#include "tags/fields/ItemCollector.h"
#include "tags/text/GenreNames.h"
#include "tags/text/TagText.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Mp4Items {

namespace {

/// Kinds of a "data" atom. Source: Apple, QuickTime File Format, "Well-Known Types".
enum class DataType : quint32 { Implicit = 0, Utf8 = 1, Utf16 = 2 };

struct KnownAtom {
    const char* type;
    CommonKey commonKey;
};
constexpr KnownAtom kKnownAtoms[] = {{"\xA9nam", CommonKey::Title},
                                     {"\xA9"
                                      "ART",
                                      CommonKey::Artist},
                                     {"\xA9"
                                      "alb",
                                      CommonKey::AlbumName},
                                     {"\xA9gen", CommonKey::Type},
                                     {"gnre", CommonKey::Type},
                                     {"\xA9"
                                      "cmt",
                                      CommonKey::Description},
                                     {"covr", CommonKey::Artwork}};

void addText(const FieldName& name, DataType type, QByteArrayView value, ItemCollector& items)
{
    if (name.key == QLatin1StringView("gnre")) {
        // Counted from 1, unlike in ID3v1.
        ByteReader reader(value);
        const int number = reader.u16be();
        if (!reader.hasFailed())
            items.addText(name, GenreNames::fromNumber(number - 1));
    } else if (type == DataType::Utf8 || type == DataType::Implicit) {
        items.addText(name, TagText::fromUtf8(value));
    } else if (type == DataType::Utf16) {
        items.addText(name, TagText::fromUtf16(value, TagText::ByteOrder::BigEndian));
    }
}

QString shortText(const ByteRange& text)
{
    return QString::fromUtf8(text.read(0, std::min(text.size(), FieldLimits::kTextBytes)));
}

FieldName fieldName(const Atom& atom)
{
    if (atom.type == "----") {
        constexpr qint64 kVersionAndFlags = 4;
        const ByteRange mean = childAtom(atom.body, "mean").from(kVersionAndFlags);
        const ByteRange name = childAtom(atom.body, "name").from(kVersionAndFlags);
        return {QLatin1StringView("itlk"), shortText(mean) + u'.' + shortText(name)};
    }
    FieldName name{QLatin1StringView("itsk"), QString::fromLatin1(atom.type)};
    for (const KnownAtom& known : kKnownAtoms) {
        if (atom.type == known.type)
            name.commonKey = known.commonKey;
    }
    return name;
}

} // namespace

void read(const ByteRange& list, ItemCollector& items)
{
    constexpr qint64 kValueHeaderSize = 8;                  // type, locale
    std::optional<std::pair<FieldName, ByteRange>> picture; // the last one is shown, so that no other is read
    AtomWalker fields(list);
    while (const std::optional<Atom> field = fields.next()) {
        const FieldName name = fieldName(*field);
        AtomWalker values(field->body);
        while (const std::optional<Atom> value = values.next()) {
            const ByteRange content = value->body.from(kValueHeaderSize);
            if (value->type != "data" || value->body.size() < kValueHeaderSize)
                continue;
            if (name.commonKey == CommonKey::Artwork) {
                if (content.size() > 0 && content.size() <= FieldLimits::kPictureBytes)
                    picture = {name, content};
            } else if (content.size() <= FieldLimits::kTextBytes) {
                const auto type = static_cast<DataType>(ByteReader(value->body.read(0, 4)).u32be() & 0xFFFFFF);
                addText(name, type, content.read(0, content.size()), items);
            }
        }
    }
    if (picture)
        items.addData(picture->first, picture->second.read(0, picture->second.size()));
}

} // namespace Mp4Items
