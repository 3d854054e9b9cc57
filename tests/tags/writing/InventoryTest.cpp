#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/keeping/TagInventoryReader.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

TagInventory holding(bool hasPicture, int otherEntries, const AudioTags& unread = {}, TagFields unwritable = {})
{
    return {hasPicture, otherEntries, unread, unwritable};
}

TagInventory unknown(int otherEntries)
{
    return {false, otherEntries, {}, {}, true};
}

TagInventory inventoryOf(const QString& name, const QByteArray& bytes)
{
    const FileFolder folder;
    return TagInventoryReader::read(folder.write(name, bytes));
}

/// The four texts that no read supplies.
const AudioTags kUnread = tagsWith({{&AudioTags::albumArtist, QStringLiteral("V")},
                                    {&AudioTags::year, QStringLiteral("1999")},
                                    {&AudioTags::track, QStringLiteral("3/9")},
                                    {&AudioTags::bpm, QStringLiteral("124")}});
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
    AudioTags otherTempo = kUnread;
    otherTempo.bpm = QStringLiteral("1");
    const AudioTags dated = tagsWith({{&AudioTags::year, QStringLiteral("1999")}});
    AudioTags numbered = dated;
    numbered.track = QStringLiteral("7");
    const TagFields notInM4A = TagFieldSet::kNeverRead | TagField::MusicalKey;
    const std::tuple<const char*, const char*, QByteArray, TagInventory> cases[] = {
        {"no tags", "a.mp3", mpegFrames(3), {}},
        {"what is read, and ID3v1", "a.mp3", id3v2(read + QByteArray(9, '\0')) + mpegFrames(3) + oldTag, {}},
        {"frames", "a.mp3", id3v2(read + others + unread + pictureFrame("p")) + mpegFrames(3),
         holding(true, 3, kUnread)},
        {"the first of several tags counts", "a.mp3",
         id3v2(textFrame("TBPM", "1")) + id3v2(unread + others) + mpegFrames(3), holding(false, 3, otherTempo)},
        {"items", "a.mp3",
         mpegFrames(3) + ape({"Title=T", "Year=1999", "Mood=x", "Key=8A", "Cover Art (Back)=p"}) + oldTag,
         holding(true, 2, dated)},
        {"broken behind the first frames", "a.mp3", id3v2(others + "tit2" + QByteArray(20, 'x')) + mpegFrames(3),
         unknown(3)},
        {"tag that is not understood, which a save drops", "a.mp3",
         id3v2(textFrame("TIT2", "T"), 3, 0x08) + mpegFrames(3) + ape({"Mood=x"}), unknown(1)},
        {"fewer items than counted", "a.mp3", mpegFrames(3) + withCount(ape({"Mood=x"}), 9), unknown(1)},
        {"old tag's year and track", "a.mp3", mpegFrames(3) + numberedTag, holding(false, 0, numbered)},
        {"the same in both tags", "a.mp3",
         id3v2(textFrame("TIT2", "x") + textFrame("TYER", "1999") + textFrame("TYER", "1999")) + mpegFrames(3) +
             numberedTag,
         holding(false, 0, numbered)},
        {"further frames and values", "a.mp3",
         id3v2(textFrame("TPE1", "A", 4) + textFrame("TPE1", "B", 4) + textFrame("TPE1", "A", 4) +
                   textFrame("TIT2", QByteArray("T\0U\0", 4), 4),
               4) +
             mpegFrames(3),
         holding(false, 2)},
        {"further comments", "a.flac", flac(100, {"ARTIST=A", "ARTIST=B", "artist=C", "TITLE=T", "TITLE=T"}),
         holding(false, 2)},
        {"broken comments", "a.flac", flac(100, {}, flacBlock(4, "broken")), unknown(0)},
        {"comments", "a.flac",
         flac(100, {"TITLE=T", "DESCRIPTION=d", "encoder=Lavf", "ALBUM ARTIST=V", "date=1999", "TRACK=3/9", "TEMPO=124",
                    "MOOD=x", "REPLAYGAIN_TRACK_GAIN=1"}),
         holding(false, 2, kUnread)},
        {"picture block, other blocks", "a.flac",
         flac(100, {}, flacBlock(6, flacPicture("p")) + flacBlock(2, "appldata")), holding(true, 0)},
        {"tags behind the sound, which a save leaves", "a.flac", flac(100, {}) + ape({"Mood=x"}) + oldTag, {}},
        {"list", "a.wav",
         wave(3, info(riffChunk("INAM", "T") + riffChunk("ICRD", "1999") + riffChunk("ISFT", "Lavf") +
                      riffChunk("ICOP", "me")) +
                     riffChunk("bext", "x")),
         holding(false, 1, dated)},
        {"tag in a chunk", "a.wav", wave(3, riffChunk("id3 ", id3v2(unread + others + pictureFrame("p")))),
         holding(true, 3, kUnread, kArtist)},
        {"chunks", "a.aiff",
         aiff(3, aiffChunk("NAME", "T") + aiffChunk("COMT", "x") + aiffChunk("(c) ", "me") +
                     aiffChunk("id3 ", id3v2(unread + others))),
         holding(false, 4, kUnread)},
        {"items", "a.m4a",
         m4a(atoms + itemAtom("\251nam", 1, "T") + itemAtom("\251too", 1, "Lavf") + itemAtom("covr", 14, "p") +
             itemAtom("cpil", 21, "\1") + freeformAtom("com.apple.iTunes", "initialkey", "8A")),
         holding(true, 1, kUnread, notInM4A)},
        {"nothing of the kind", "a.m4a", m4a(itemAtom("\251nam", 1, "T")), {}},
        {"not written", "a.ogg", "OggS", {}},
        {"another file", "a.flac", wave(3), {}},
        {"cut", "a.wav", wave(3, info(riffChunk("ICOP", "me"))) + "LIST" + little(99, 4), holding(false, 1)},
    };
    for (const auto& [what, name, bytes, expected] : cases) {
        SCOPED_TRACE(std::string(name) + ", " + what);
        const TagInventory found = inventoryOf(QLatin1StringView(name), bytes);
        EXPECT_EQ(found.hasPicture, expected.hasPicture);
        EXPECT_EQ(found.otherEntries, expected.otherEntries);
        EXPECT_EQ(found.unread, expected.unread);
        EXPECT_EQ(found.unwritable, expected.unwritable);
        EXPECT_EQ(found.isUnknown, expected.isUnknown);
        EXPECT_TRUE(!found.isUnknown || found.losesAnything(fullTags(), true));
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
