#include "tags/writing/Id3v2Builder.h"

#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/TagsOf.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

AudioTags allTags()
{
    AudioTags tags;
    for (const AudioTags::Field& field : AudioTags::fields())
        tags.*field.value = QLatin1StringView(field.name);
    return tags;
}

AudioTags only(QString AudioTags::*field, const QString& value)
{
    AudioTags tags;
    tags.*field = value;
    return tags;
}

QByteArray text(const char* id, const char* value)
{
    return frame(id, '\x01' + utf16(QString::fromUtf8(value)));
}

TEST(Id3v2BuilderTest, writesTheFramesInTheirOrder)
{
    const QByteArray png = "\x89PNG and more";
    const QByteArray expected = text("TIT2", "title") + text("TPE1", "artist") + text("TALB", "album") +
                                text("TPE2", "albumArtist") + text("TCON", "genre") + text("TYER", "year") +
                                text("TRCK", "track") + text("TBPM", "bpm") + text("TKEY", "musicalKey") +
                                frame("COMM", QByteArray::fromHex("01656e670000") + utf16(QStringLiteral("comment"))) +
                                frame("APIC", QByteArray("\0image/png\0\3\0", 13) + png);
    EXPECT_EQ(Id3v2Builder::tag(allTags(), png), id3v2(expected));
}

TEST(Id3v2BuilderTest, writesWhatIsThereAsItIs)
{
    const std::tuple<const char*, AudioTags, std::optional<QByteArray>, QByteArray> cases[] = {
        {"nothing", {}, std::nullopt, {}},
        {"blanks", only(&AudioTags::comment, QStringLiteral("  ")), std::nullopt,
         id3v2(frame("COMM", QByteArray::fromHex("01656e670000fffe20002000")))},
        {"no number of a genre", only(&AudioTags::genre, QStringLiteral("(17)")), std::nullopt,
         id3v2(text("TCON", "(17)"))},
        {"no check of a year", only(&AudioTags::year, QStringLiteral("about 1999")), std::nullopt,
         id3v2(text("TYER", "about 1999"))},
        {"beyond one unit", only(&AudioTags::title, QStringLiteral("\U0001F3A7")), std::nullopt,
         id3v2(frame("TIT2", QByteArray::fromHex("01fffe3cd8a7df")))},
        {"a picture of any kind is a JPEG",
         {},
         "\x89PN",
         id3v2(frame("APIC", QByteArray("\0image/jpeg\0\3\0\x89PN", 17)))},
        {"an empty picture", {}, QByteArray(""), id3v2(frame("APIC", QByteArray("\0image/jpeg\0\3\0", 14)))},
    };
    for (const auto& [what, tags, artwork, expected] : cases)
        EXPECT_EQ(Id3v2Builder::tag(tags, artwork).toHex(' '), expected.toHex(' ')) << what;
}

TEST(Id3v2BuilderTest, expressesSizesOfSevenBits)
{
    for (const int size : {100, 127, 128, 16'383, 16'384, 2'097'151, 2'097'152, 30'000'000}) {
        const QByteArray tag = Id3v2Builder::tag({}, QByteArray(size, 'x'));
        EXPECT_EQ(tag.sliced(6, 4).toHex(' '), syncsafe(static_cast<quint32>(tag.size() - 10)).toHex(' ')) << size;
    }
}

TEST(Id3v2BuilderTest, knowsATagThatCannotTellItsSize)
{
    AudioTags tags;
    tags.title = QStringLiteral("a");
    const qsizetype rest = Id3v2Builder::tag(tags, QByteArray()).size() - 10;
    for (const qsizetype over : {-1, 0})
        EXPECT_EQ(Id3v2Builder::fits(Id3v2Builder::tag(tags, QByteArray((1 << 28) - rest + over, 'p'))), over < 0);
}

} // namespace
