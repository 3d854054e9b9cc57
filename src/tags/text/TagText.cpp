#include "tags/text/TagText.h"

#include "tags/text/Windows1251.h"

#include <QUtf8StringView>
#include <QtEndian>

#include <algorithm>
#include <bitset>
#include <string_view>

namespace TagText {

namespace {

/// Bytes 0x80 to 0x9F. Source: the code page's table as registered with IANA, windows-1252; unassigned ones as in
/// Latin-1.
constexpr std::u16string_view kWindows1252 =
    u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
    u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178";
static_assert(kWindows1252.size() == 32);

bool isHigh(char byte)
{
    return static_cast<uchar>(byte) >= 0x80;
}

QString fromWindows1252(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    std::ranges::transform(bytes, text.begin(), [](char signedByte) {
        const auto byte = static_cast<uchar>(signedByte);
        return byte >= 0x80 && byte < 0xA0 ? QChar(kWindows1252[byte - 0x80u]) : QChar(ushort(byte));
    });
    return text;
}

char16_t unit(QByteArrayView bytes, qsizetype offset, ByteOrder order)
{
    const char* place = bytes.data() + offset;
    return order == ByteOrder::LittleEndian ? qFromLittleEndian<char16_t>(place) : qFromBigEndian<char16_t>(place);
}

/// The bytes at even or at odd places of UTF-16 text.
struct ByteStatistics {
    qsizetype zeros = 0; ///< high bytes of plain letters
    qsizetype fours = 0; ///< high bytes of Cyrillic ones
    std::bitset<256> values;

    void add(char byte)
    {
        zeros += byte == 0 ? 1 : 0;
        fours += byte == 4 ? 1 : 0;
        values.set(static_cast<uchar>(byte));
    }
};

void replaceLoneSurrogates(QString& text)
{
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (!text[index].isSurrogate())
            continue;
        const bool isPair =
            text[index].isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate();
        if (isPair)
            ++index;
        else
            text[index] = QChar::ReplacementCharacter;
    }
}

} // namespace

QString fromLegacy(QByteArrayView bytes, bool isCyrillic)
{
    if (std::ranges::none_of(bytes, isHigh))
        return QString::fromLatin1(bytes);
    if (QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8())
        return QString::fromUtf8(bytes);
    return isCyrillic ? Windows1251::decode(bytes) : fromWindows1252(bytes);
}

QString fromUtf16(QByteArrayView bytes, ByteOrder assumed)
{
    ByteOrder order = assumed;
    bool isValueBegin = true;
    QString text;
    text.reserve(bytes.size() / 2);
    for (qsizetype offset = 0; offset + 2 <= bytes.size(); offset += 2) {
        const char16_t mark = unit(bytes, offset, ByteOrder::LittleEndian);
        if (isValueBegin && (mark == 0xFEFF || mark == 0xFFFE)) {
            // Some programs write the mark twice.
            order = mark == 0xFEFF ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
            continue;
        }
        isValueBegin = mark == 0;
        text += QChar(unit(bytes, offset, order));
    }
    replaceLoneSurrogates(text);
    return text;
}

QString fromUtf8(QByteArrayView bytes)
{
    if (!isUtf8(bytes))
        return fromLegacy(bytes, false);
    constexpr QByteArrayView kMark("\xEF\xBB\xBF");
    return QString::fromUtf8(bytes.startsWith(kMark) ? bytes.sliced(kMark.size()) : bytes);
}

bool isUtf8(QByteArrayView bytes)
{
    const QByteArrayView whole = withoutCutCharacter(bytes);
    return QUtf8StringView(whole.data(), whole.size()).isValidUtf8();
}

QByteArrayView withoutCutCharacter(QByteArrayView bytes)
{
    qsizetype begin = bytes.size() - 1;
    while (begin > 0 && bytes.size() - begin < 4 && (bytes[begin] & 0xC0) == 0x80)
        --begin;
    if (begin <= 0)
        return bytes;
    const auto lead = static_cast<uchar>(bytes[begin]);
    const qsizetype fullSize = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
    const QByteArrayView front = bytes.first(begin);
    // Without another such character in front this would be the "é" of a Latin-1 "Beyoncé".
    const bool isCut = lead <= 0xF4 && bytes.size() - begin < fullSize && std::ranges::any_of(front, isHigh) &&
                       QUtf8StringView(front.data(), front.size()).isValidUtf8();
    return isCut ? front : bytes;
}

ByteOrder guessByteOrder(QByteArrayView bytes, ByteOrder assumed)
{
    if (bytes.size() >= 2) {
        const char16_t mark = unit(bytes, 0, ByteOrder::LittleEndian);
        if (mark == 0xFEFF || mark == 0xFFFE)
            return mark == 0xFEFF ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
    }
    ByteStatistics statistics[2];
    qsizetype count = 0;
    for (qsizetype index = 0; index + 2 <= bytes.size(); index += 2) {
        if (bytes[index] == 0 && bytes[index + 1] == 0)
            continue;
        ++count;
        statistics[0].add(bytes[index]);
        statistics[1].add(bytes[index + 1]);
    }
    const auto& [first, second] = statistics;
    // "一" holds a zero too, so that a stated order yields to many of them only.
    const qsizetype zeros = std::max(first.zeros, second.zeros);
    if (first.zeros != second.zeros && (assumed == ByteOrder::LittleEndian || (count > 1 && 2 * zeros >= count)))
        return first.zeros > second.zeros ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
    if (first.fours != second.fours && 2 * std::max(first.fours, second.fours) >= count)
        return first.fours > second.fours ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
    const std::size_t inFirst = first.values.count();
    const std::size_t inSecond = second.values.count();
    if (count > 0 && 2 * std::min(inFirst, inSecond) <= std::max(inFirst, inSecond))
        return inFirst < inSecond ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
    return assumed;
}

QByteArrayView untilZero(QByteArrayView bytes)
{
    const qsizetype zero = bytes.indexOf('\0');
    return zero < 0 ? bytes : bytes.first(zero);
}

QString joined(QStringView values, QString (*transform)(const QString& value))
{
    QString text;
    for (QStringView value : values.tokenize(QChar(QChar::Null))) {
        if (value.startsWith(QChar::ByteOrderMark))
            value = value.sliced(1);
        if (value.isEmpty())
            continue;
        if (!text.isEmpty())
            text += QStringLiteral(" / ");
        text += transform ? transform(value.toString()) : value.toString();
    }
    return text;
}

} // namespace TagText
