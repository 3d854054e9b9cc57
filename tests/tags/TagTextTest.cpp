#include "tags/text/TagText.h"

#include "support/TagBytes.h"
#include "support/TagsOf.h"
#include "tags/text/GenreNames.h"

#include <gtest/gtest.h>

namespace {

TEST(TagTextTest, decodesFieldsWithoutStatedEncoding)
{
    const std::tuple<QByteArray, bool, QString> cases[] = {
        {"Beyonc\xE9", false, QStringLiteral("Beyoncé")},
        {"Beyonc\xC3\xA9", false, QStringLiteral("Beyoncé")},      // UTF-8 by mistake
        {"\xD0\x9C\xD0\xB8\xD1\x80", true, QStringLiteral("Мир")}, // UTF-8 goes before Windows-1251
        {"\xCC\xE8\xF0", true, QStringLiteral("Мир")},
        {"Don\x92t \x96 go\x85", false, QStringLiteral("Don’t – go…")}, // Windows-1252
        {" kept ", false, QStringLiteral(" kept ")}};
    for (const auto& [bytes, isCyrillic, text] : cases)
        EXPECT_EQ(TagText::fromLegacy(bytes, isCyrillic), text);
}

TEST(TagTextTest, decodesUtf16WithAndWithoutMark)
{
    using enum TagText::ByteOrder;
    const std::tuple<QByteArray, TagText::ByteOrder, QString> cases[] = {
        {QByteArray("\xFF\xFE\x41\0", 4), BigEndian, QStringLiteral("A")},
        {QByteArray("\xFE\xFF\0\x41", 4), LittleEndian, QStringLiteral("A")},
        {QByteArray("\xFF\xFE\xFF\xFE\x41\0", 6), LittleEndian, QStringLiteral("A")}, // the mark twice
        {QByteArray("\0\x41", 2), BigEndian, QStringLiteral("A")},
        {QByteArray("\x41\0\x42", 3), LittleEndian, QStringLiteral("A")},                  // half a letter at the end
        {QByteArray("\x41\0\x00\xD8\x42\0", 6), LittleEndian, QStringLiteral("A\uFFFDB")}, // half a surrogate pair
        {QByteArray("\x3C\xD8\xB5\xDF", 4), LittleEndian, QStringLiteral("🎵")}};
    for (const auto& [bytes, assumed, text] : cases)
        EXPECT_EQ(TagText::fromUtf16(bytes, assumed), text);
    EXPECT_EQ(TagText::guessByteOrder("\4\x1A\4\x38\4\x3D\4\x3E", LittleEndian), BigEndian);           // Кино
    EXPECT_EQ(TagText::guessByteOrder("\x1A\4\x38\4\x3D\4\x3E\4", BigEndian), LittleEndian);           // Кино
    EXPECT_EQ(TagText::guessByteOrder("\x30\x55\x30\x4F\x30\x89", LittleEndian), BigEndian);           // さくら
    EXPECT_EQ(TagText::guessByteOrder(QByteArray("\x7B\x2C\x4E\0\x6B\x21", 6), BigEndian), BigEndian); // 第一次
    EXPECT_EQ(TagText::guessByteOrder(QByteArray("A\0B\0", 4), BigEndian), LittleEndian);
    EXPECT_EQ(TagText::guessByteOrder(QByteArray("\0A\0B", 4)), BigEndian);
    EXPECT_EQ(TagText::guessByteOrder(QByteArray("A\0B\0", 4)), LittleEndian);
}

TEST(TagTextTest, resolvesGenreReferences)
{
    const std::tuple<QStringView, QStringView, QStringView> cases[] = {
        {u"17", u"17", u"Rock"},
        {u"140", u"140", u"Contemporary Christian"},
        {u"(17)", u"Rock", u"Rock"},
        {u"(17)Rock", u"Rock", u"Rock"},
        {u"(4)Eurodisco", u"Eurodisco", u"Eurodisco"},
        {u"(31)(39)", u"Trance / Noise", u"Trance / Noise"},
        {u"(RX)", u"Remix", u"(RX)"},
        {u"CR", u"CR", u"Cover"},
        {u"((Foo)", u"(Foo)", u"((Foo)"},
        {u"(Not a number)", u"(Not a number)", u"(Not a number)"},
        {u"(17", u"(17", u"(17"},
        {u"(250)", u"(250)", u"(250)"},
        {u"255", u"255", u"255"},
        {u"(255)", u"(255)", u"(255)"},
        {u"1998", u"1998", u"1998"},
        {u"", u"", u""},
        {u"Drum & Bass", u"Drum & Bass", u"Drum & Bass"}};
    for (const auto& [raw, ofVersion3, ofVersion4] : cases) {
        EXPECT_EQ(GenreNames::withReferences(raw.toString()), ofVersion3.toString());
        EXPECT_EQ(GenreNames::withNumbers(raw.toString()), ofVersion4.toString());
    }
}

} // namespace
