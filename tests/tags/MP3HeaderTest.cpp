#include "tags/MP3Header.h"

#include "support/TagBytes.h"
#include "support/TagsOf.h"

#include <gtest/gtest.h>

namespace {

using std::nullopt;

TEST(MP3HeaderTest, readsTheTablesOfAllVersionsAndLayers)
{
    const std::pair<const char*, std::optional<double>> cases[] = {
        {"fffb9000", 128000},                        // MPEG-1 layer III
        {"fffbe000", 320000},  {"fffd9000", 160000}, // layer II
        {"ffff9000", 288000},                        // layer I
        {"fff39000", 80000},                         // MPEG-2 layer III
        {"fff59000", 80000},                         // layer II
        {"fff79000", 144000},                        // layer I
        {"ffe39000", 80000},                         // MPEG-2.5
        {"ffe7e000", 256000},  {"fffb1000", 32000},  // the lowest index
        {"fffb0f00", nullopt},                       // index 0: free format
        {"fffbf000", nullopt},                       // index 15
        {"ffeb9000", nullopt},                       // reserved version
        {"fff99000", nullopt},                       // reserved layer: AAC
        {"ffdb9000", nullopt},                       // no sync
        {"fffb9c00", 128000},                        // an impossible sample rate is not looked at
        {"fffb90", nullopt},                         // too short
    };
    for (const auto& [hex, bitRate] : cases)
        EXPECT_EQ(MP3Header::bitRate(QByteArray::fromHex(hex)), bitRate) << hex;
}

TEST(MP3HeaderTest, startsBehindTheTagAndStopsThreeBytesBeforeTheEnd)
{
    const QByteArray frame = QByteArray::fromHex("fffb9000");
    const QByteArray decoy = QByteArray::fromHex("fffbe000");
    EXPECT_EQ(MP3Header::bitRate(TagBytes::id3v2(decoy) + frame), 128000) << "what looks like a frame within the tag";
    EXPECT_EQ(MP3Header::bitRate("junk" + frame), 128000);
    EXPECT_EQ(MP3Header::bitRate("junk" + frame.first(3)), nullopt) << "no whole header";
    EXPECT_EQ(MP3Header::bitRate("ID3" + frame), 128000) << "too short for a tag: scanned from its begin";
    // The tag claims more than there is: the scan begins four bytes before the end.
    const QByteArray header = "ID3" + QByteArray("\3\0\0", 3) + TagBytes::syncsafe(100000);
    EXPECT_EQ(MP3Header::bitRate(header + decoy + frame), 128000);
    // High bits of the size are ignored.
    const QByteArray highBits = QByteArray("ID3\3\0\0", 6) + QByteArray::fromHex("80808004");
    EXPECT_EQ(MP3Header::bitRate(highBits + decoy + frame), 128000);
}

TEST(MP3HeaderTest, readsNoFurtherThan128KiB)
{
    const FileFolder folder;
    const QByteArray frame = QByteArray::fromHex("fffb9000");
    const auto inFile = [&](const QString& name, qsizetype offset) {
        return MP3Header::bitRate(folder.write(name, QByteArray(offset, 'x') + frame + QByteArray(100, 'x')));
    };
    EXPECT_EQ(inFile(QStringLiteral("a.mp3"), 0x20000 - 4), 128000);
    EXPECT_EQ(inFile(QStringLiteral("b.mp3"), 0x20000 - 3), nullopt);
    EXPECT_EQ(inFile(QStringLiteral("c.MP3"), 10), 128000);
    EXPECT_EQ(inFile(QStringLiteral("d.wav"), 0), nullopt) << "the name decides, not the content";
    EXPECT_EQ(MP3Header::bitRate(
                  folder.write(QStringLiteral("tagged.mp3"), TagBytes::id3v2(QByteArray(200 * 1024, '\0')) + frame)),
              nullopt);
    EXPECT_EQ(MP3Header::bitRate(QUrl::fromLocalFile(folder.path(QStringLiteral("missing.mp3")))), nullopt);
}

} // namespace
