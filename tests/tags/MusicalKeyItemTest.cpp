#include "tags/fields/MusicalKeyItem.h"

#include "support/TagsOf.h"

#include <gtest/gtest.h>

namespace {

TEST(MusicalKeyItemTest, goesByTheNamesOfTheItem)
{
    const struct {
        QStringView identifier;
        QStringView key;
        QStringView description; ///< null without one
        QStringView value;
        QStringView musicalKey; ///< null if the item is none
    } cases[] = {
        {u"id3/TKEY", u"TKEY", nullptr, u" 8A \n", u"8A"},
        {u"id3/TKEY", u"TKEY", nullptr, u" \t", nullptr},
        {u"vorbis/INITIALKEY", u"INITIALKEY", nullptr, u"Am", u"Am"},
        {u"itlk/com.apple.iTunes.initialkey", u"com.apple.iTunes.initialkey", nullptr, u"5m", u"5m"},
        {u"riff/IKEY", u"IKEY", nullptr, u"F#", u"F#"},
        {u"x/y", u"TKEY", nullptr, u"1A", u"1A"}, // either name counts
        {u"vorbis/KEY", u"KEY", nullptr, u"Am", nullptr},
        {u"id3/TKEX", u"TKEX", nullptr, u"Am", nullptr},
        {u"id3/TKEY2", u"", nullptr, u"Am", u"Am"}, // digits fall away
        {u"id3/TXXX", u"TXXX", u"initial_key", u"Am", u"Am"},
        {u"id3/TXXX", u"TXXX", u"MUSICAL-KEY 2", u"Am", u"Am"},
        {u"id3/TXXX", u"TXXX", u"key", u"Am", nullptr},
        {u"id3/TXXX", u"TXXX", u"my initial key", u"Am", nullptr},
        {u"id3/TXXX", u"TXXX", nullptr, u"Am", nullptr},
        {u"id3/COMM", u"COMM", u"initialkey", u"Am", nullptr},
    };
    for (const auto& c : cases) {
        MetadataItem item;
        item.identifier = c.identifier.toString();
        item.key = c.key.toString();
        if (!c.description.isNull())
            item.extraDescription = c.description.toString();
        item.stringValue = c.value.toString();
        const std::optional<QString> expected =
            !c.musicalKey.isNull() ? std::optional(c.musicalKey.toString()) : std::nullopt;
        EXPECT_EQ(MusicalKeyItem::value(item), expected) << item.identifier.toStdString();
        item.stringValue.reset();
        EXPECT_EQ(MusicalKeyItem::value(item), std::nullopt);
    }
}

} // namespace
