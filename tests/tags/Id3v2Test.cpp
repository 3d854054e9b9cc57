#include "support/TagBytes.h"
#include "support/TagsOf.h"

#include <gtest/gtest.h>

#include <zlib.h>

namespace {

using namespace TagBytes;

std::vector<MetadataItem> itemsOf(const QByteArray& frames, int version = 3, quint8 flags = 0)
{
    return assetOf(id3v2(frames, version, flags) + mpegFrames(3)).items;
}

/// The text of the one item that a frame makes; "-" if it makes none or several.
QString textOf(const QByteArray& frames, int version = 3, quint8 flags = 0)
{
    const std::vector<MetadataItem> items = itemsOf(frames, version, flags);
    return items.size() == 1 ? items[0].stringValue.value_or(QString()) : QStringLiteral("-");
}

QByteArray withUnsynchronisation(const QByteArray& bytes)
{
    return QByteArray(bytes).replace('\xFF', QByteArray("\xFF\0", 2));
}

TEST(Id3v2Test, decodesTextInAllEncodings)
{
    const std::tuple<const char*, QByteArray, QString> cases[] = {
        {"Latin-1", QByteArray("\0Crue", 5), QStringLiteral("Crue")},
        {"terminated", QByteArray("\0Crue\0", 6), QStringLiteral("Crue")},
        {"UTF-16", '\1' + utf16(QStringLiteral("Мир")), QStringLiteral("Мир")},
        {"UTF-16 terminated", '\1' + utf16(QStringLiteral("Мир")) + QByteArray(2, '\0'), QStringLiteral("Мир")},
        {"UTF-16 without mark", '\1' + utf16(QStringLiteral("abc")).sliced(2), QStringLiteral("abc")},
        {"UTF-16BE", QByteArray("\2\0a\4\x10", 5), QStringLiteral("aА")},
        {"UTF-8", "\3" + QByteArray("Мир"), QStringLiteral("Мир")},
        {"no UTF-8", "\3" + QByteArray("Beyonc\xE9"), QStringLiteral("Beyoncé")},
        {"no UTF-8 but Cyrillic", "\3" + QByteArray("\xCA\xE8\xED\xEE"), QStringLiteral("Кино")},
        {"cut UTF-8", "\3" + QByteArray("Мир\xD0"), QStringLiteral("Мир\uFFFD")},
        {"several values", QByteArray("\3A\0B\0\0C", 7), QStringLiteral("A / B / C")},
        {"several marked values", '\1' + utf16(QStringLiteral("A")) + QByteArray(2, '\0') + utf16(QStringLiteral("B")),
         QStringLiteral("A / B")},
        {"values with a mark each", QByteArray("\1\xFF\xFE\x41\0\0\0\xFE\xFF\0\x42", 11), QStringLiteral("A / B")},
        {"several Latin-1 values", QByteArray("\0A\0B", 4), QStringLiteral("A / B")},
        {"no text", QByteArray(1, '\0'), QString()},
    };
    for (const auto& [what, body, text] : cases)
        EXPECT_EQ(textOf(frame("TIT2", body)), text) << what;
}

TEST(Id3v2Test, walksAllVersionsAndTheirOddities)
{
    const QByteArray title = textFrame("TIT2", "Title");
    const QByteArray longText(200, 'x');
    const QByteArray wronglySized4 = frame("TIT2", '\0' + longText, 3) + textFrame("TPE1", "A", 4);
    EXPECT_EQ(textOf(QByteArray("TT2\0\0\6\0Title", 12), 2), QStringLiteral("Title"));
    EXPECT_EQ(textOf(QByteArray("TT2\0\0\0\0\6\0\0\0Title", 16), 3), QStringLiteral("Title")) << "padded 2.2 id";
    EXPECT_EQ(textOf(textFrame("TIT2", "Title", 4) + QByteArray(50, '\0'), 4), QStringLiteral("Title")) << "padding";
    EXPECT_EQ(itemsOf(wronglySized4, 4).size(), 2u) << "plain size in a 2.4 tag";
    EXPECT_EQ(itemsOf(frame("TIT2", {}) + title).size(), 1u) << "an empty frame is stepped over";
    EXPECT_EQ(textOf(title + "TPE1" + big(5000, 4) + "\0\0" + "tail"), QStringLiteral("Title")) << "too long a frame";
    EXPECT_EQ(itemsOf(QByteArray("TT2\0\0\6\0Title", 12) + "TP1" + big(5000, 3) + QByteArray("\0tail", 5), 2).size(),
              1u)
        << "too long a frame of 2.2";
    EXPECT_EQ(textOf(big(6, 4) + QByteArray(6, '\0') + title, 3, 0x40), QStringLiteral("Title")) << "extended header";
    EXPECT_EQ(textOf(syncsafe(6) + "\1\0" + textFrame("TIT2", "Title", 4), 4, 0x40), QStringLiteral("-"))
        << "a wrong extended header loses the frames, not more";
    EXPECT_TRUE(itemsOf(title, 5).empty()) << "unknown version";
    EXPECT_TRUE(itemsOf(title, 2, 0x40).empty()) << "compressed 2.2 tag";
}

TEST(Id3v2Test, unpacksFrames)
{
    const QByteArray text = QByteArray(1, '\1') + utf16(QStringLiteral("ÿÿ")); // has FF bytes
    uLongf packedSize = 100;
    QByteArray packed(100, '\0');
    ::compress(reinterpret_cast<Bytef*>(packed.data()), &packedSize, reinterpret_cast<const Bytef*>(text.constData()),
               static_cast<uLong>(text.size()));
    packed.truncate(static_cast<qsizetype>(packedSize));
    const auto size = static_cast<quint32>(text.size());
    const QString expected = QStringLiteral("ÿÿ");
    const struct {
        const char* what;
        QByteArray frames;
        int version;
        quint8 tagFlags;
        QString text;
    } cases[] = {
        {"tag unsynchronised", withUnsynchronisation(frame("TIT2", text)), 3, 0x80, expected},
        {"frame unsynchronised", frame("TIT2", withUnsynchronisation(text), 4, 2), 4, 0, expected},
        {"with data length", frame("TIT2", syncsafe(size) + withUnsynchronisation(text), 4, 3), 4, 0x80, expected},
        {"grouped 2.3", frame("TIT2", 'g' + text, 3, 0x20), 3, 0, expected},
        {"grouped 2.4", frame("TIT2", 'g' + text, 4, 0x40), 4, 0, expected},
        {"compressed 2.3", frame("TIT2", big(size, 4) + packed, 3, 0x80), 3, 0, expected},
        {"compressed 2.4", frame("TIT2", syncsafe(size) + packed, 4, 9), 4, 0, expected},
        {"bomb", frame("TIT2", big(1 << 30, 4) + packed, 3, 0x80), 3, 0, QStringLiteral("-")},
        {"lies about its size", frame("TIT2", big(2, 4) + packed, 3, 0x80), 3, 0, QStringLiteral("-")},
        {"encrypted", frame("TIT2", text, 3, 0x40), 3, 0, QStringLiteral("-")},
    };
    for (const auto& c : cases)
        EXPECT_EQ(textOf(c.frames, c.version, c.tagFlags), c.text) << c.what;
}

TEST(Id3v2Test, tellsCommentsFromPrivateFigures)
{
    const std::pair<const char*, bool> cases[] = {
        {"", true},          {"ID3v1 Comment", true},         {"description", true},
        {"iTunNORM", false}, {"iTunes_CDDB_IDs", false},      {"Songs-DB_Custom1", false},
        {"iTunSMPB", false}, {"MusicMatch_Situation", false}, {"c0", true}};
    for (const auto& [description, isComment] : cases) {
        const std::vector<MetadataItem> items = itemsOf(describedFrame("COMM", description, "text"));
        ASSERT_EQ(items.size(), 1u);
        EXPECT_EQ(items[0].commonKey == CommonKey::Description, isComment) << description;
        EXPECT_EQ(items[0].stringValue, QStringLiteral("text"));
        EXPECT_EQ(items[0].extraDescription, QString::fromLatin1(description));
    }
    // The form that this program writes: an empty wide description without mark.
    EXPECT_EQ(textOf(frame("COMM", QByteArray("\1eng\0\0", 6) + utf16(QStringLiteral("Мир")))), QStringLiteral("Мир"));
    EXPECT_EQ(textOf(frame("COMM", QByteArray("\0engonly text", 13))), QStringLiteral("only text"));
}

TEST(Id3v2Test, findsPicturesInAllLayouts)
{
    const QByteArray picture("\x89PNG\xFF\0\0 data", 12);
    const std::tuple<const char*, QByteArray, int, bool> cases[] = {
        {"plain", pictureFrame(picture), 3, true},
        {"wide description",
         frame("APIC", QByteArray("\1image/png\0\3", 12) + utf16(QStringLiteral("d")) + QByteArray(2, '\0') + picture),
         3, true},
        {"stray zero", frame("APIC", QByteArray("\0image/png\0\3d\0\0", 15) + picture), 3, true},
        {"narrow end of a wide description", frame("APIC", QByteArray("\1image/png\0\3\0", 13) + picture), 3, true},
        {"version 2.2", "PIC" + big(static_cast<quint64>(picture.size()) + 6, 3) + QByteArray("\0PNG\3\0", 6) + picture,
         2, true},
        {"link", frame("APIC", QByteArray("\0-->\0\3\0http://example.org", 25)), 3, false},
        {"cut short", frame("APIC", QByteArray("\0image/p", 8)), 3, false},
        {"no picture", pictureFrame({}), 3, false},
    };
    for (const auto& [what, frames, version, isFound] : cases) {
        const std::vector<MetadataItem> items = itemsOf(frames, version);
        ASSERT_EQ(items.size(), isFound ? 1u : 0u) << what;
        if (isFound) {
            EXPECT_EQ(items[0].dataValue, picture) << what;
        }
    }
    const QByteArray avif("\0\0\0\x1C"
                          "ftypavif",
                          12);
    EXPECT_EQ(itemsOf(pictureFrame(avif)).at(0).dataValue, avif) << "leading zeros are its own";
}

TEST(Id3v2Test, prefersTheFirstOfSeveralTags)
{
    const QByteArray bytes = id3v2(textFrame("TIT2", "First")) + id3v2(textFrame("TIT2", "Second")) +
                             id3v2(textFrame("TPE1", "Third")) + mpegFrames(3);
    const Asset asset = assetOf(bytes);
    ASSERT_EQ(asset.items.size(), 3u);
    EXPECT_EQ(asset.items[0].stringValue, QStringLiteral("Third"));
    EXPECT_EQ(asset.items[2].stringValue, QStringLiteral("First"));
    EXPECT_TRUE(asset.sound) << "the sound behind all is found";
}

} // namespace
