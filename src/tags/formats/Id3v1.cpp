#include "tags/formats/Id3v1.h"

#include "tags/fields/ItemCollector.h"
#include "tags/text/GenreNames.h"
#include "tags/text/TagText.h"

namespace Id3v1 {

namespace {

// Source: the layout of ID3v1 and ID3v1.1, id3.org.
constexpr qint64 kTagSize = 128;
constexpr qsizetype kGenreOffset = 127;

struct Field {
    QLatin1StringView key;
    qsizetype offset;
    qsizetype size;
    std::optional<CommonKey> commonKey;
};
constexpr Field kFields[] = {{QLatin1StringView("TITLE"), 3, 30, CommonKey::Title},
                             {QLatin1StringView("ARTIST"), 33, 30, CommonKey::Artist},
                             {QLatin1StringView("ALBUM"), 63, 30, CommonKey::AlbumName},
                             {QLatin1StringView("YEAR"), 93, 4, std::nullopt},
                             {QLatin1StringView("COMMENT"), 97, 30, CommonKey::Description}};

/// Fields are filled up with zeros or with blanks. Full ones may end within a character.
QByteArrayView withoutFilling(QByteArrayView field)
{
    constexpr qsizetype kSmallestFullSize = 28; // a comment with a track number behind it
    field = TagText::untilZero(field);
    if (field.size() >= kSmallestFullSize)
        field = TagText::withoutCutCharacter(field);
    while (field.endsWith(' '))
        field.chop(1);
    return field;
}

} // namespace

void read(ByteRange& range, ItemCollector& items)
{
    // Three bytes more in front: an APEv2 footer "APETAGEX" at the right distance would look like this tag too.
    const qint64 lookBehind = std::min<qint64>(range.size() - kTagSize, 3);
    if (lookBehind < 0)
        return;
    const QByteArray bytes = range.read(range.size() - kTagSize - lookBehind, kTagSize + lookBehind);
    const QByteArrayView tag = QByteArrayView(bytes).sliced(std::min<qsizetype>(lookBehind, bytes.size()));
    if (tag.size() != kTagSize || !tag.startsWith("TAG") || bytes.startsWith("APETAGEX"))
        return;

    const QLatin1StringView format("id3v1");
    for (const Field& field : kFields) {
        const QByteArrayView value = withoutFilling(tag.sliced(field.offset, field.size));
        if (!value.isEmpty())
            items.addLegacyText({format, QString(field.key), field.commonKey}, value);
    }
    const QString genre = GenreNames::fromNumber(static_cast<uchar>(tag[kGenreOffset]));
    if (!genre.isEmpty())
        items.addText({format, QStringLiteral("GENRE"), CommonKey::Type}, genre);
    range.end -= kTagSize;
}

} // namespace Id3v1
