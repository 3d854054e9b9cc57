#include "tags/text/Windows1251.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Windows1251 {

namespace {

/// Bytes 0x80 to 0xBF. Source: the code page's table as registered with IANA, windows-1251.
constexpr std::u16string_view kUpperHalf =
    u"\u0402\u0403\u201A\u0453\u201E\u2026\u2020\u2021\u20AC\u2030\u0409\u2039\u040A\u040C\u040B\u040F"
    u"\u0452\u2018\u2019\u201C\u201D\u2022\u2013\u2014\uFFFD\u2122\u0459\u203A\u045A\u045C\u045B\u045F"
    u"\u00A0\u040E\u045E\u0408\u00A4\u0490\u00A6\u00A7\u0401\u00A9\u0404\u00AB\u00AC\u00AD\u00AE\u0407"
    u"\u00B0\u00B1\u0406\u0456\u0491\u00B5\u00B6\u00B7\u0451\u2116\u0454\u00BB\u0458\u0405\u0455\u0457"; // not shown
static_assert(kUpperHalf.size() == 64);

/// Letters outside the block of the 64 Russian ones: Ё ё Ґ ґ Є є І і Ї ї Ў ў.
constexpr std::string_view kFurtherLetters = "\xA8\xB8\xA5\xB4\xAA\xBA\xB2\xB3\xAF\xBF\xA1\xA2";

/// Words of two letters that stand alone in titles, and a long one without vowels.
constexpr std::u16string_view kKnownWords =
    u" мы ты он вы ей их её ее им мой ой ай ах ох эх эй да не ни на по за из от до но ну ли бы во со об ко"
    u" ум ад яд юг ёж уж ил як що та де би ми ти ці ссср "; // not shown

/// Western words made of accented letters alone.
constexpr std::u16string_view kLatinWords = u" æøå øæå åæø åäö äöå åöä äöü äüö öäü öüä ";

bool isRussianLetter(uchar byte)
{
    return byte >= 0xC0;
}

bool isPlainLetter(uchar byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

/// The further letters double as Latin-1 signs ("¿", "²", "º"); beside a letter of the main block they are letters.
bool isHighLetter(QByteArrayView bytes, qsizetype index)
{
    const auto at = [&](qsizetype place) {
        return place >= 0 && place < bytes.size() ? static_cast<uchar>(bytes[place]) : uchar(0);
    };
    if (isRussianLetter(at(index)))
        return true;
    return kFurtherLetters.find(bytes[index]) != std::string_view::npos &&
           (isRussianLetter(at(index - 1)) || isRussianLetter(at(index + 1)));
}

bool isListed(std::u16string_view list, QStringView lowerWord)
{
    const QString framed = u' ' + lowerWord.toString() + u' ';
    return list.find(std::u16string_view(reinterpret_cast<const char16_t*>(framed.utf16()), framed.size())) !=
           std::u16string_view::npos;
}

/// Words have vowels, but for abbreviations of three letters.
bool isPronounceable(const QString& word, const QString& lowerWord)
{
    constexpr QStringView kVowels = u"аеёиоуыэюяєії"; // not shown
    const bool hasVowel = std::ranges::any_of(lowerWord, [&](QChar c) { return kVowels.contains(c); });
    return hasVowel || (word.size() == 3 && word == word.toUpper());
}

/// Words are written small, large, or with one large letter in front.
bool hasPlausibleCase(const QString& word)
{
    const QString rest = word.sliced(1);
    return rest == rest.toLower() || word == word.toUpper();
}

struct Count {
    qsizetype cyrillic = 0; ///< high letters in words that Latin text does not have
    qsizetype doubtful = 0; ///< in short or odd words of high letters alone
    qsizetype latin = 0;    ///< in words with plain letters
};

/// Signs such as "¤" or "±" inside words: double-byte text of East Asia, which has every byte value everywhere.
bool hasSignsInWords(QByteArrayView bytes)
{
    constexpr std::string_view kSigns = "\xA4\xA6\xA7\xA9\xAC\xAE\xB0\xB1\xB5\xB6";
    for (qsizetype index = 1; index + 1 < bytes.size(); ++index) {
        const auto isLetter = [&](qsizetype place) { return isRussianLetter(static_cast<uchar>(bytes[place])); };
        if (kSigns.find(bytes[index]) != std::string_view::npos && isLetter(index - 1) && isLetter(index + 1))
            return true;
    }
    return false;
}

void judgeWord(QByteArrayView word, qsizetype highLetters, Count& count)
{
    if (highLetters == 0)
        return;
    if (highLetters < word.size()) {
        count.latin += highLetters;
        return;
    }
    const QString text = decode(word);
    const QString lower = text.toLower();
    const bool isOneLetterRepeated = std::ranges::all_of(lower, [&](QChar c) { return c == lower.front(); });
    const bool isLatin = isOneLetterRepeated || isListed(kLatinWords, QString::fromLatin1(word).toLower());
    const bool isLongWord = word.size() >= 3 && hasPlausibleCase(text) && isPronounceable(text, lower);
    const bool isCyrillic = !isLatin && (isLongWord || isListed(kKnownWords, lower));
    (isCyrillic ? count.cyrillic : count.doubtful) += highLetters;
}

} // namespace

Evidence evidence(QByteArrayView bytes)
{
    if (hasSignsInWords(bytes))
        return Evidence::None;
    Count count;
    qsizetype begin = 0;
    qsizetype highLetters = 0;
    for (qsizetype index = 0; index <= bytes.size(); ++index) {
        const bool isHigh = index < bytes.size() && isHighLetter(bytes, index);
        if (isHigh || (index < bytes.size() && isPlainLetter(static_cast<uchar>(bytes[index])))) {
            highLetters += isHigh ? 1 : 0;
            continue;
        }
        judgeWord(bytes.sliced(begin, index - begin), highLetters, count);
        begin = index + 1;
        highLetters = 0;
    }
    // Twice: one borrowed Latin word with an accent does not make a Russian sentence French.
    if (count.cyrillic > 0 && count.cyrillic >= 2 * count.latin)
        return Evidence::Plain;
    return count.latin == 0 && count.doubtful > 0 ? Evidence::Possible : Evidence::None;
}

bool fitsCyrillicFile(QByteArrayView bytes)
{
    if (evidence(bytes) != Evidence::None)
        return true;
    if (bytes.isEmpty() || hasSignsInWords(bytes))
        return false;
    for (qsizetype index = 0; index + 1 < bytes.size(); ++index) {
        if (isHighLetter(bytes, index) && isHighLetter(bytes, index + 1))
            return true;
    }
    return std::ranges::all_of(bytes, [](char byte) { return kFurtherLetters.find(byte) != std::string_view::npos; });
}

QString decode(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    std::ranges::transform(bytes, text.begin(), [](char signedByte) {
        const auto byte = static_cast<uchar>(signedByte);
        if (byte < 0x80)
            return QChar(ushort(byte));
        return byte < 0xC0 ? QChar(kUpperHalf[byte - 0x80u]) : QChar(0x0410 + (byte - 0xC0));
    });
    return text;
}

} // namespace Windows1251
