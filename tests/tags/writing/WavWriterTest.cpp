#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/MetadataWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.wav");
const QByteArray kPng = "\x89PNG picture";

QByteArray file(const QByteArray& chunks, const QByteArray& trailing = {})
{
    return "RIFF" + little(quint64(4 + chunks.size() + trailing.size()), 4) + "WAVE" + chunks + trailing;
}

const QByteArray kFormat =
    riffChunk("fmt ", little(1, 2) + little(1, 2) + little(8000, 4) + little(16000, 4) + little(2, 2) + little(16, 2));
const QByteArray kData = riffChunk("data", QByteArray(999, '\x5a')); // of odd size
const QByteArray kSound = kFormat + kData;
const QByteArray kCue = riffChunk("cue ", QByteArray(28, '\1'));
const QByteArray kBroadcast = riffChunk("bext", QByteArray(603, '\2'));
const QByteArray kOtherList = riffChunk("LIST", "adtl" + riffChunk("labl", "cue"));
const QByteArray kShortList = riffChunk("LIST", "IN");
const QByteArray kOldInfo = info(riffChunk("INAM", "Old"));
const QByteArray kOldID3 = riffChunk("id3 ", id3v2(textFrame("TIT2", "Old")));

TEST(WavWriterTest, replacesInfoAndID3Alone)
{
    const AudioTags tags =
        tagsWith({{&AudioTags::title, QStringLiteral("Ü")}, {&AudioTags::albumArtist, QStringLiteral("lost")}});
    const QByteArray own = info(riffChunk("INAM", "\xC3\x9C"));
    const struct {
        const char* what;
        AudioTags tags;
        QByteArray before;
        QByteArray after;
    } cases[] = {
        {"sound alone", tags, file(kSound), file(kSound + own)},
        {"other chunks", tags, file(kCue + kFormat + kBroadcast + kData + kOtherList + kShortList),
         file(kCue + kFormat + kBroadcast + kData + kOtherList + kShortList + own)},
        {"old tags anywhere", tags,
         file(kOldID3 + kFormat + kOldInfo + kData + kOldInfo + riffChunk("ID3 ", "x") + kCue),
         file(kSound + kCue + own)},
        {"nothing to write", {}, file(kSound + kOldInfo + kOldID3), file(kSound)},
        {"album artist alone", tagsWith({{&AudioTags::albumArtist, QStringLiteral("lost")}}), file(kSound),
         file(kSound)},
        {"trailing bytes", tags, file(kSound, "7 bytes"), file(kSound + own)},
        {"wrong size in the header", tags, "RIFF" + little(0xFFFFFFFF, 4) + "WAVE" + kSound, file(kSound + own)},
        {"no chunk at all", {}, file({}), file({})},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changed(kName, c.before, writing(c.tags)), c.after) << c.what;
}

TEST(WavWriterTest, writesEveryFieldInItsOrder)
{
    const QByteArray chunks = riffChunk("INAM", "Название") + riffChunk("IART", "Ärtist") + riffChunk("IPRD", "専辑") +
                              riffChunk("IGNR", "House") + riffChunk("ICRD", "1999") + riffChunk("ITRK", "3/9") +
                              riffChunk("ICMT", "Note") + riffChunk("IBPM", "124.5") + riffChunk("IKEY", "8A");
    EXPECT_EQ(changed(kName, file(kSound), writing(fullTags())), file(kSound + info(chunks)));
    const QByteArray tag = riffChunk("id3 ", MetadataWriter::id3Tag(fullTags(), kPng));
    EXPECT_EQ(changed(kName, file(kSound + kOldID3), assigning(kPng, fullTags())), file(kSound + info(chunks) + tag));
    // A save without a picture takes the old one out.
    EXPECT_EQ(changed(kName, file(kSound + tag), writing({})), file(kSound));
}

TEST(WavWriterTest, findsPicturesInTheirChunksAlone)
{
    const QByteArray large = QByteArray(3 * 1024 * 1024, '\0') + kPng;
    const struct {
        const char* what;
        QByteArray chunks;
        bool isFound;
    } cases[] = {
        {"in small letters", riffChunk("id3 ", kPng), true},
        {"in capital letters", riffChunk("ID3 ", "xx" + kPng + "x"), true},
        {"across the pieces of a search", riffChunk("id3 ", large.mid(kPng.size() - 5)), true},
        {"cut off", riffChunk("id3 ", kPng.chopped(1)), false},
        {"in another chunk", riffChunk("PICT", kPng) + kOldID3, false},
    };
    for (const auto& c : cases) {
        const FileFolder folder;
        const QUrl url = folder.write(kName, file(c.chunks + kSound));
        EXPECT_EQ(MetadataWriter::containsArtworkBytes(kPng, url), c.isFound) << c.what;
    }
}

TEST(WavWriterTest, cleansInPlace)
{
    const CleanerFields texts = CleanerField::Title | CleanerField::Album;
    const QString title = QStringLiteral("N");
    const QByteArray all = riffChunk("INAM", "t") + riffChunk("IART", "a") + riffChunk("IPRD", "b") +
                           riffChunk("IPRT", "1") + riffChunk("ITRK", "2") + riffChunk("ISFT", "odd");
    const QByteArray unpadded = "LIST" + little(4 + 8 + 3, 4) + "INFOISFT" + little(3, 4) + QByteArray("odd\0", 4);
    const QByteArray tag = textFrame("TIT2", "t") + textFrame("TPE1", "a");
    const struct {
        const char* what;
        CleanerFields fields;
        QString title;
        QByteArray before;
        QByteArray after;
    } cases[] = {
        {"fields with two ids",
         CleanerField::Track,
         {},
         file(info(all) + kSound),
         file(
             info(riffChunk("INAM", "t") + riffChunk("IART", "a") + riffChunk("IPRD", "b") + riffChunk("ISFT", "odd")) +
             kSound)},
        {"new title, in the first list", texts, title, file(kSound + kOldInfo + kCue + kOldInfo),
         file(kSound + info(riffChunk("INAM", "N")) + kCue + info({}))},
        {"new title, no list", texts, title, file(kSound + kOtherList, "rest"),
         file(kSound + kOtherList + info(riffChunk("INAM", "N")))},
        {"no title",
         texts,
         {},
         file(kSound + info(all), "rest"),
         file(kSound + info(riffChunk("IART", "a") + riffChunk("IPRT", "1") + riffChunk("ITRK", "2") +
                            riffChunk("ISFT", "odd")),
              "rest")},
        {"fields without an id", CleanerField::Artwork | CleanerField::AlbumArtist, title, file(kSound + info(all)),
         file(kSound + info(all))},
        {"list without its last padding", CleanerField::Genre, {}, file(unpadded + kSound), file(unpadded + kSound)},
        {"new title behind a missing padding", texts, title, file(unpadded + kSound),
         file(info(riffChunk("ISFT", "odd") + riffChunk("INAM", "N")) + kSound)},
        {"rest in a list",
         CleanerField::Genre,
         {},
         file(kSound + info(all + "rest")),
         file(kSound + info(all + "rest"))},
        {"ID3v2 in both letters",
         CleanerField::Title,
         {},
         file(riffChunk("id3 ", id3v2(tag)) + kSound + riffChunk("ID3 ", id3v2(tag))),
         file(riffChunk("id3 ", id3v2(textFrame("TPE1", "a"))) + kSound +
              riffChunk("ID3 ", id3v2(textFrame("TPE1", "a"))))},
        {"rest behind ID3v2",
         CleanerField::Title,
         {},
         file(kSound + riffChunk("id3 ", id3v2(tag) + "r")),
         file(kSound + riffChunk("id3 ", id3v2(textFrame("TPE1", "a")) + "r"))},
        {"empty ID3v2 chunk",
         CleanerField::Title,
         {},
         file(riffChunk("id3 ", {}) + kSound),
         file(riffChunk("id3 ", {}) + kSound)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changed(kName, c.before, cleaning(c.fields, c.title)), c.after) << c.what;
}

TEST(WavWriterTest, refusesWhatItCannotRewrite)
{
    const QByteArray good = file(kSound + kOldInfo);
    const QString corrupt = QStringLiteral("fileReadCorruptFile");
    const QString unsupported = QStringLiteral("unsupportedFormat wav");
    const Change write = writing(fullTags());
    const Change clean = cleaning(CleanerField::Title);
    const QByteArray flagged = id3v2(textFrame("TIT2", "T"), 3, 0x80);
    const struct {
        const char* what;
        QByteArray bytes;
        Change change;
        QString failure;
    } cases[] = {
        {"empty", {}, write, unsupported},
        {"header cut", good.left(11), write, unsupported},
        {"RF64", "RF64" + good.mid(4), write, unsupported},
        {"RF64, cleaning", "RF64" + good.mid(4), clean, unsupported},
        {"other kind of RIFF", "RIFF" + good.mid(4, 4) + "AVI " + good.mid(12), write, unsupported},
        {"cut in the sound", good.left(500), write, corrupt},
        {"size of a stream", file(kFormat + "data" + little(0xFFFFFFFF, 4) + "sound"), write, corrupt},
        {"last padding cut", file(kSound).chopped(1), write, corrupt},
        {"size never written", file(kFormat + "data" + little(0, 4) + QByteArray(64, '\0')), write, corrupt},
        {"size never written, cleaning", file(kFormat + "data" + little(0, 4) + QByteArray(64, '\0')), clean, corrupt},
        {"broken list", file(kSound + info("INAM" + little(100, 4))), clean, corrupt},
        {"ID3v2 beyond its chunk", file(kSound + riffChunk("id3 ", id3v2("x").chopped(1))), clean, corrupt},
        {"ID3v2 with flags", file(kSound + riffChunk("id3 ", flagged)), clean, QStringLiteral("rewriteFailed ID3")},
    };
    for (const auto& c : cases)
        expectRefused(kName, c.bytes, c.change, c.failure, c.what);
}

} // namespace
