#include "tags/formats/Id3v2Fields.h"

#include "tags/bytes/ByteReader.h"
#include "tags/fields/ItemCollector.h"
#include "tags/text/GenreNames.h"
#include "tags/text/TagText.h"

#include <algorithm>

namespace Id3v2 {

namespace {

constexpr QLatin1StringView kFormat("id3");

/// The encodings by their byte. Source: ID3v2.4.0 section 4, id3.org.
enum class Encoding : quint8 { Latin1 = 0, Utf16 = 1, Utf16BigEndian = 2, Utf8 = 3 };

struct KnownFrame {
    const char* id;
    const char* idVersion2;
    std::optional<CommonKey> commonKey;
};
constexpr KnownFrame kKnownFrames[] = {{"TIT2", "TT2", CommonKey::Title},       {"TPE1", "TP1", CommonKey::Artist},
                                       {"TALB", "TAL", CommonKey::AlbumName},   {"TCON", "TCO", CommonKey::Type},
                                       {"COMM", "COM", CommonKey::Description}, {"APIC", "PIC", CommonKey::Artwork},
                                       {"TKEY", "TKE", std::nullopt},           {"TXXX", "TXX", std::nullopt}};

FieldName fieldName(QByteArrayView frameID)
{
    for (const KnownFrame& known : kKnownFrames) {
        if (frameID == QByteArrayView(known.id) || frameID == QByteArrayView(known.idVersion2))
            return {kFormat, QString::fromLatin1(known.id), known.commonKey};
    }
    return {kFormat, QString::fromLatin1(frameID)};
}

bool isWide(Encoding encoding)
{
    return encoding == Encoding::Utf16 || encoding == Encoding::Utf16BigEndian;
}

/// Splits at the first terminator of the encoding; all is in front if there is none.
struct Terminated {
    QByteArrayView front;
    std::optional<QByteArrayView> behind;
};
Terminated splitAtTerminator(QByteArrayView bytes, Encoding encoding)
{
    const qsizetype step = isWide(encoding) ? 2 : 1;
    for (qsizetype index = 0; index + step <= bytes.size(); index += step) {
        if (bytes[index] == 0 && (step == 1 || bytes[index + 1] == 0))
            return {bytes.first(index), bytes.sliced(index + step)};
    }
    return {bytes, std::nullopt};
}

TagText::ByteOrder byteOrder(QByteArrayView text, Encoding encoding)
{
    using enum TagText::ByteOrder;
    return TagText::guessByteOrder(text, encoding == Encoding::Utf16BigEndian ? BigEndian : LittleEndian);
}

QString decoded(QByteArrayView text, Encoding encoding, TagText::ByteOrder order)
{
    if (isWide(encoding))
        return TagText::fromUtf16(text, order);
    return encoding == Encoding::Utf8 ? TagText::fromUtf8(text) : TagText::fromLegacy(text, false);
}

/// Adds a text in any encoding, several values joined.
void addText(const FieldName& name, QByteArrayView text, Encoding encoding, TagText::ByteOrder order,
             ItemCollector& items, QString (*transform)(const QString&) = nullptr)
{
    if (!isWide(encoding) && (encoding != Encoding::Utf8 || !TagText::isUtf8(text)))
        return items.addLegacyText(name, text, transform);
    items.addText(name, TagText::joined(decoded(text, encoding, order), transform));
}

/// Comments in which programs keep figures of their own, by the begin of their description.
bool isPrivate(const QString& description)
{
    static constexpr QLatin1StringView kPrefixes[] = {QLatin1StringView("iTun"), QLatin1StringView("Songs-DB_"),
                                                      QLatin1StringView("MusicMatch_"),
                                                      QLatin1StringView("Media Jukebox:")};
    return std::ranges::any_of(kPrefixes, [&](QLatin1StringView prefix) { return description.startsWith(prefix); });
}

/// User-defined text and comments: a description, then the text.
void addDescribedText(FieldName name, QByteArrayView bytes, Encoding encoding, ItemCollector& items)
{
    const TagText::ByteOrder order = byteOrder(bytes, encoding);
    const bool isComment = name.commonKey.has_value();
    const Terminated parts = splitAtTerminator(bytes, encoding);
    // Without terminator a comment is all text, a user-defined field all description.
    const bool isAllText = isComment && !parts.behind;
    name.extraDescription = isAllText ? QString() : decoded(parts.front, encoding, order);
    if (isComment && isPrivate(*name.extraDescription))
        name.commonKey = std::nullopt;
    addText(name, isAllText ? parts.front : parts.behind.value_or(QByteArrayView()), encoding, order, items);
}

/// Whether a picture of a kind known by its first bytes begins here.
bool beginsPicture(QByteArrayView bytes)
{
    static constexpr QByteArrayView kSignatures[] = {"\xFF\xD8\xFF", "\x89PNG", "GIF8", "BM"};
    return std::ranges::any_of(kSignatures, [&](QByteArrayView signature) { return bytes.startsWith(signature); }) ||
           (bytes.startsWith("RIFF") && bytes.size() >= 12 && bytes.sliced(8, 4) == QByteArrayView("WEBP"));
}

/// The picture behind its description. Pictures may begin with zeros and hold some, so that what writers got wrong
/// about the terminator is only put right if a known picture then begins.
QByteArrayView behindDescription(QByteArrayView bytes, Encoding encoding)
{
    const QByteArrayView picture = splitAtTerminator(bytes, encoding).behind.value_or(QByteArrayView());
    if (beginsPicture(picture))
        return picture;
    // A wide description that ends with three zeros, or a narrow one with two, leaves one too many.
    if (picture.startsWith('\0') && beginsPicture(picture.sliced(1)))
        return picture.sliced(1);
    const QByteArrayView behindZero = splitAtTerminator(bytes, Encoding::Latin1).behind.value_or(QByteArrayView());
    return isWide(encoding) && beginsPicture(behindZero) ? behindZero : picture;
}

void addPicture(const FieldName& name, QByteArrayView content, bool isVersion2, ItemCollector& items)
{
    ByteReader reader(content);
    const auto encoding = static_cast<Encoding>(reader.u8());
    const QByteArrayView mediaType =
        isVersion2 ? reader.bytes(3) : TagText::untilZero(content.sliced(reader.position()));
    reader.skip(isVersion2 ? 0 : mediaType.size() + 1);
    reader.skip(1); // kind of picture: any may be the cover
    const QByteArrayView picture = behindDescription(reader.rest(), encoding);
    const bool isLink = mediaType == QByteArrayView("-->");
    if (!picture.isEmpty() && !isLink)
        items.addData(name, picture.toByteArray());
}

} // namespace

bool isWanted(QByteArrayView frameID)
{
    return frameID.startsWith('T') || fieldName(frameID).commonKey.has_value();
}

void addField(QByteArrayView frameID, QByteArrayView content, int majorVersion, ItemCollector& items)
{
    const FieldName name = fieldName(frameID);
    if (content.isEmpty())
        return;
    if (name.commonKey == CommonKey::Artwork)
        return addPicture(name, content, frameID.size() == 3, items);
    const auto encoding = static_cast<Encoding>(content.front());
    const QByteArrayView text = content.sliced(1);
    constexpr qsizetype kLanguageSize = 3;
    if (name.commonKey == CommonKey::Description) {
        if (text.size() >= kLanguageSize)
            addDescribedText(name, text.sliced(kLanguageSize), encoding, items);
    } else if (name.key == QLatin1StringView("TXXX")) {
        addDescribedText(name, text, encoding, items);
    } else if (name.commonKey == CommonKey::Type) {
        addText(name, text, encoding, byteOrder(text, encoding), items,
                majorVersion == 4 ? &GenreNames::withNumbers : &GenreNames::withReferences);
    } else {
        addText(name, text, encoding, byteOrder(text, encoding), items);
    }
}

} // namespace Id3v2
