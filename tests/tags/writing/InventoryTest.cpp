#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/keeping/TagInventoryReader.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

TagInventory inventoryOf(const QString& name, const QByteArray& bytes)
{
    const FileFolder folder;
    return TagInventoryReader::read(folder.write(name, bytes));
}

/// The four texts that no read supplies.
AudioTags unreadTags(const QString& artist, const QString& year, const QString& track, const QString& tempo)
{
    return tagsWith({{&AudioTags::albumArtist, artist},
                     {&AudioTags::year, year},
                     {&AudioTags::track, track},
                     {&AudioTags::bpm, tempo}});
}

const AudioTags kUnread =
    unreadTags(QStringLiteral("V"), QStringLiteral("1999"), QStringLiteral("3/9"), QStringLiteral("124"));
const TagFields kArtist = TagField::AlbumArtist;

TEST(InventoryTest, countsWhatAPlainSaveDrops)
{
    const QByteArray unread =
        textFrame("TPE2", "V") + textFrame("TYER", "1999") + textFrame("TRCK", "3/9") + textFrame("TBPM", "124");
    const QByteArray read = textFrame("TIT2", "T") + textFrame("TKEY", "8A") + describedFrame("COMM", "", "c") +
                            describedFrame("TXXX", "initial key", "8A") + textFrame("TSSE", "Lavf");
    const QByteArray others =
        frame("PRIV", "x") + describedFrame("COMM", "iTunNORM", "0") + describedFrame("TXXX", "MOOD", "x");
    const QByteArray oldTag = id3v1({.title = "x", .genre = 3});
    QByteArray numberedTag = id3v1({.title = "x"});
    numberedTag.replace(93, 4, "1999").replace(125, 2, QByteArray("\0\7", 2));
    const QByteArray atoms = itemAtom("aART", 1, "V") +
                             itemAtom("\251"
                                      "day",
                                      1, "1999") +
                             itemAtom("trkn", 0, QByteArray("\0\0\0\3\0\x09\0\0", 8)) +
                             itemAtom("tmpo", 21, QByteArray("\0\x7c", 2));
    const TagFields notInM4A = TagFieldSet::kNeverRead | TagField::MusicalKey;
    const struct {
        const char* what;
        const char* name;
        QByteArray bytes;
        TagInventory expected;
    } cases[] = {
        {"no tags", "a.mp3", mpegFrames(3), {}},
        {"what is read, and ID3v1", "a.mp3", id3v2(read + QByteArray(9, '\0')) + mpegFrames(3) + oldTag, {}},
        {"frames", "a.mp3", id3v2(read + others + unread + pictureFrame("p")) + mpegFrames(3), {true, 3, kUnread, {}}},
        {"the first of several tags counts",
         "a.mp3",
         id3v2(textFrame("TBPM", "1")) + id3v2(unread + others) + mpegFrames(3),
         {false,
          3,
          unreadTags(QStringLiteral("V"), QStringLiteral("1999"), QStringLiteral("3/9"), QStringLiteral("1")),
          {}}},
        {"items",
         "a.mp3",
         mpegFrames(3) + ape({"Title=T", "Year=1999", "Mood=x", "Key=8A", "Cover Art (Back)=p"}) + oldTag,
         {true, 2, unreadTags({}, QStringLiteral("1999"), {}, {}), {}}},
        {"broken behind the first frames",
         "a.mp3",
         id3v2(others + "tit2" + QByteArray(20, 'x')) + mpegFrames(3),
         {false, 3, {}, {}, true}},
        {"tag that is not understood, which a save drops",
         "a.mp3",
         id3v2(textFrame("TIT2", "T"), 3, 0x08) + mpegFrames(3) + ape({"Mood=x"}),
         {false, 1, {}, {}, true}},
        {"fewer items than counted", "a.mp3", mpegFrames(3) + withCount(ape({"Mood=x"}), 9), {false, 1, {}, {}, true}},
        {"old tag's year and track",
         "a.mp3",
         mpegFrames(3) + numberedTag,
         {false, 0, unreadTags({}, QStringLiteral("1999"), QStringLiteral("7"), {}), {}}},
        {"the same in both tags",
         "a.mp3",
         id3v2(textFrame("TIT2", "x") + textFrame("TYER", "1999") + textFrame("TYER", "1999")) + mpegFrames(3) +
             numberedTag,
         {false, 0, unreadTags({}, QStringLiteral("1999"), QStringLiteral("7"), {}), {}}},
        {"further frames and values",
         "a.mp3",
         id3v2(textFrame("TPE1", "A", 4) + textFrame("TPE1", "B", 4) + textFrame("TPE1", "A", 4) +
                   textFrame("TIT2", QByteArray("T\0U\0", 4), 4),
               4) +
             mpegFrames(3),
         {false, 2, {}, {}}},
        {"further comments",
         "a.flac",
         flac(100, {"ARTIST=A", "ARTIST=B", "artist=C", "TITLE=T", "TITLE=T"}),
         {false, 2, {}, {}}},
        {"broken comments", "a.flac", flac(100, {}, flacBlock(4, "broken")), {false, 0, {}, {}, true}},
        {"comments",
         "a.flac",
         flac(100, {"TITLE=T", "DESCRIPTION=d", "encoder=Lavf", "ALBUM ARTIST=V", "date=1999", "TRACK=3/9", "TEMPO=124",
                    "MOOD=x", "REPLAYGAIN_TRACK_GAIN=1"}),
         {false, 2, kUnread, {}}},
        {"picture block, other blocks",
         "a.flac",
         flac(100, {}, flacBlock(6, flacPicture("p")) + flacBlock(2, "appldata")),
         {true, 0, {}, {}}},
        {"tags behind the sound, which a save leaves", "a.flac", flac(100, {}) + ape({"Mood=x"}) + oldTag, {}},
        {"list",
         "a.wav",
         wave(3, info(riffChunk("INAM", "T") + riffChunk("ICRD", "1999") + riffChunk("ISFT", "Lavf") +
                      riffChunk("ICOP", "me")) +
                     riffChunk("bext", "x")),
         {false, 1, unreadTags({}, QStringLiteral("1999"), {}, {}), {}}},
        {"tag in a chunk",
         "a.wav",
         wave(3, riffChunk("id3 ", id3v2(unread + others + pictureFrame("p")))),
         {true, 3, kUnread, kArtist}},
        {"chunks",
         "a.aiff",
         aiff(3, aiffChunk("NAME", "T") + aiffChunk("COMT", "x") + aiffChunk("(c) ", "me") +
                     aiffChunk("id3 ", id3v2(unread + others))),
         {false, 4, kUnread, {}}},
        {"items",
         "a.m4a",
         m4a(atoms + itemAtom("\251nam", 1, "T") + itemAtom("\251too", 1, "Lavf") + itemAtom("covr", 14, "p") +
             itemAtom("cpil", 21, "\1") + freeformAtom("com.apple.iTunes", "initialkey", "8A")),
         {true, 1, kUnread, notInM4A}},
        {"nothing of the kind", "a.m4a", m4a(itemAtom("\251nam", 1, "T")), {}},
        {"not written", "a.ogg", "OggS", {}},
        {"another file", "a.flac", wave(3), {}},
        {"cut", "a.wav", wave(3, info(riffChunk("ICOP", "me"))) + "LIST" + little(99, 4), {false, 1, {}, {}}},
    };
    for (const auto& c : cases) {
        const TagInventory found = inventoryOf(QLatin1StringView(c.name), c.bytes);
        EXPECT_EQ(found.hasPicture, c.expected.hasPicture) << c.name << ", " << c.what;
        EXPECT_EQ(found.otherEntries, c.expected.otherEntries) << c.name << ", " << c.what;
        EXPECT_EQ(found.unread, c.expected.unread) << c.name << ", " << c.what;
        EXPECT_EQ(found.unwritable, c.expected.unwritable) << c.name << ", " << c.what;
        EXPECT_EQ(found.isUnknown, c.expected.isUnknown) << c.name << ", " << c.what;
        EXPECT_TRUE(!found.isUnknown || found.losesAnything(fullTags(), true)) << c.name << ", " << c.what;
    }
}

TEST(InventoryTest, ownFilesHaveNothingToLose)
{
    const FileFolder folder;
    for (const char* name : {"a.mp3", "a.flac", "a.wav", "a.aiff", "a.m4a"}) {
        SCOPED_TRACE(name);
        const QUrl url = makeSound(folder, QLatin1StringView(name));
        EXPECT_FALSE(TagInventoryReader::read(url).losesAnything({}, false));
        ASSERT_EQ(failureOf(writing(fullTags()), url), QString());
        EXPECT_FALSE(TagInventoryReader::read(url).losesAnything(fullTags(), false));
        ASSERT_EQ(failureOf(keeping(fullTags()), url), QString());
        const TagInventory kept = TagInventoryReader::read(url);
        EXPECT_EQ(kept.otherEntries, 0);
        EXPECT_EQ(kept.unread, tagsWith({{&AudioTags::albumArtist, fullTags().albumArtist},
                                         {&AudioTags::year, fullTags().year},
                                         {&AudioTags::track, fullTags().track},
                                         {&AudioTags::bpm, fullTags().bpm}}));
    }
}

} // namespace
