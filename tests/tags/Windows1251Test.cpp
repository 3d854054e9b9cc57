#include "tags/text/Windows1251.h"

#include "support/TagBytes.h"
#include "support/TagsOf.h"

#include <gtest/gtest.h>

namespace {

using Windows1251::Evidence;

/// The bytes that an old program would have written for a Russian text.
QByteArray cyrillicBytes(const QString& text)
{
    QByteArray bytes;
    for (const QChar c : text) {
        for (int byte = 0; byte < 256; ++byte) {
            if (Windows1251::decode(QByteArray(1, static_cast<char>(byte))) == c) {
                bytes.append(static_cast<char>(byte));
                break;
            }
        }
    }
    return bytes;
}

TEST(Windows1251Test, leavesWesternTextAlone)
{
    for (QStringView text : {u"Beyoncé",      u"Mötley Crüe",  u"Ñ",         u"Ñandú",       u"¿Qué?",    u"¡Ándale!",
                             u"Motörhead",    u"À la Carte",   u"Où es-tu?", u"Ça ira",      u"Élan",     u"ÉTÉ À NOËL",
                             u"Für Elise",    u"Größe",        u"ÄRZTE",     u"Smörgåsbord", u"Åå",       u"Öö",
                             u"ÅÄÖ",          u"ÆØÅ",          u"äöü",       u"Coração",     u"São João", u"Þú",
                             u"Æði",          u"Sigur Rós",    u"N° 5",      u"÷",           u"×",        u"½ Life",
                             u"Naïve — 2nd²", u"Café del Mar", u"El Niño",   u"ééé",         u"Øye",      u"plain"}) {
        const QByteArray bytes = text.toString().toLatin1();
        EXPECT_NE(Windows1251::evidence(bytes), Evidence::Plain) << text.toString().toStdString();
    }
}

TEST(Windows1251Test, recognisesCyrillicText)
{
    for (QStringView text :
         {u"Любовь", u"ДДТ", u"СССР", u"Кино - Группа крови", u"ВИА Гра", u"МЫ", u"Ты и я", u"DJ Грув", u"Ёлка", u"Ещё",
          u"Океан Ельзи", u"Їжак", u"«Мастер и Маргарита»", u"Би-2 (Remix) Полковнику никто не пишет", u"Руки Вверх!",
          u"Мельница feat. Chelsea", u"Ночь №5", u"мальчик хочет в Тамбов"}) {
        const QByteArray bytes = cyrillicBytes(text.toString());
        EXPECT_EQ(Windows1251::evidence(bytes), Evidence::Plain) << text.toString().toStdString();
        EXPECT_EQ(Windows1251::decode(bytes), text.toString());
    }
}

// The neighbours in a file decide about these, or nobody does.
TEST(Windows1251Test, staysUndecidedAboutShortWords)
{
    for (QStringView text : {u"Юз", u"Я", u"Я 12 Ъ", u"Б-2"})
        EXPECT_EQ(Windows1251::evidence(cyrillicBytes(text.toString())), Evidence::Possible)
            << text.toString().toStdString();
}

TEST(Windows1251Test, doesNotTakeEastAsianBytesForCyrillic)
{
    // "Moon" songs in GBK.
    EXPECT_NE(Windows1251::evidence("\xBD\xC7\xC2\xE4\xD6\xAE\xB8\xE8"), Evidence::Plain);
    EXPECT_NE(Windows1251::evidence("\xCB\xD5\xD4\xC6"), Evidence::Plain);
}

TEST(Windows1251Test, readsMixedWordsInACyrillicFile)
{
    for (QStringView text : {u"МакSим", u"DJ Цветкоff", u"Чумаkoff", u"Ї", u"ЁЁ", u"5'nizza и «Ко»", u"Я"})
        EXPECT_TRUE(Windows1251::fitsCyrillicFile(cyrillicBytes(text.toString()))) << text.toString().toStdString();
    for (QStringView text : {u"Beyoncé", u"Mötley Crüe", u"Ágætis byrjun", u"5º", u"N° 5", u"plain", u""})
        EXPECT_FALSE(Windows1251::fitsCyrillicFile(text.toString().toLatin1())) << text.toString().toStdString();
}

TEST(Windows1251Test, plainFieldsDecideAboutShortOnesOfTheSameFile)
{
    const QByteArray tag = TagBytes::id3v1({.title = cyrillicBytes(QStringLiteral("Полковник")),
                                            .artist = cyrillicBytes(QStringLiteral("Юз")),
                                            .album = "Beyonc\xE9"});
    const std::vector<MetadataItem> items = assetOf(TagBytes::mpegFrames(3) + tag).items;
    ASSERT_GE(items.size(), 3u);
    EXPECT_EQ(items[0].stringValue, QStringLiteral("Полковник"));
    EXPECT_EQ(items[1].stringValue, QStringLiteral("Юз"));
    EXPECT_EQ(items[2].stringValue, QStringLiteral("Beyoncé"));

    const std::vector<MetadataItem> asLatin = assetOf(TagBytes::mpegFrames(3) + tag, {}, false).items;
    EXPECT_EQ(asLatin[1].stringValue, QStringLiteral("Þç")) << "the preference is off";
}

} // namespace
