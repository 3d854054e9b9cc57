#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/MetadataWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.wav");

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
    const AudioTags unknown = tagsWith({{&AudioTags::albumArtist, QStringLiteral("lost")}});
    AudioTags tags = unknown;
    tags.title = QStringLiteral("Ü");
    const Change write = writing(tags);
    const QByteArray own = info(riffChunk("INAM", "\xC3\x9C"));
    const QByteArray others = kCue + kFormat + kBroadcast + kData + kOtherList + kShortList;
    const QByteArray full =
        info(riffChunk("INAM", "Название") + riffChunk("IART", "Ärtist") + riffChunk("IPRD", "専辑") +
             riffChunk("IGNR", "House") + riffChunk("ICRD", "1999") + riffChunk("ITRK", "3/9") +
             riffChunk("ICMT", "Note") + riffChunk("IBPM", "124.5") + riffChunk("IKEY", "8A"));
    const QByteArray tag = riffChunk("id3 ", MetadataWriter::id3Tag(fullTags(), kPng));
    expectChanges(kName, {{"sound alone", write, file(kSound), file(kSound + own)},
                          {"other chunks", write, file(others), file(others + own)},
                          {"old tags anywhere", write,
                           file(kOldID3 + kFormat + kOldInfo + kData + kOldInfo + riffChunk("ID3 ", "x") + kCue),
                           file(kSound + kCue + own)},
                          {"nothing to write", writing({}), file(kSound + kOldInfo + kOldID3), file(kSound)},
                          {"album artist alone", writing(unknown), file(kSound), file(kSound)},
                          {"trailing bytes", write, file(kSound, "7 bytes"), file(kSound + own)},
                          {"wrong size in the header", write, "RIFF" + little(0xFFFFFFFF, 4) + "WAVE" + kSound,
                           file(kSound + own)},
                          {"no chunk at all", writing({}), file({}), file({})},
                          {"every field in its order", writing(fullTags()), file(kSound), file(kSound + full)},
                          {"picture", assigning(kPng, fullTags()), file(kSound + kOldID3), file(kSound + full + tag)},
                          {"a save without a picture takes it out", writing({}), file(kSound + tag), file(kSound)}});
}

TEST(WavWriterTest, findsPicturesInTheirChunksAlone)
{
    const QByteArray large = QByteArray(3 * 1024 * 1024, '\0') + kPng;
    const std::tuple<const char*, QByteArray, bool> cases[] = {
        {"in small letters", riffChunk("id3 ", kPng), true},
        {"in capital letters", riffChunk("ID3 ", "xx" + kPng + "x"), true},
        {"across the pieces of a search", riffChunk("id3 ", large.mid(kPng.size() - 5)), true},
        {"cut off", riffChunk("id3 ", kPng.chopped(1)), false},
        {"in another chunk", riffChunk("PICT", kPng) + kOldID3, false},
    };
    for (const auto& [what, chunks, isFound] : cases) {
        const FileFolder folder;
        const QUrl url = folder.write(kName, file(chunks + kSound));
        EXPECT_EQ(MetadataWriter::containsArtworkBytes(kPng, url), isFound) << what;
    }
}

TEST(WavWriterTest, cleansInPlace)
{
    using enum CleanerField;
    const QString title = QStringLiteral("N");
    const QByteArray texts = riffChunk("IART", "a");
    const QByteArray tracks = riffChunk("IPRT", "1") + riffChunk("ITRK", "2");
    const QByteArray odd = riffChunk("ISFT", "odd");
    const QByteArray both = riffChunk("INAM", "t") + texts + riffChunk("IPRD", "b");
    const QByteArray all = both + tracks + odd;
    const QByteArray unpadded = "LIST" + little(4 + 8 + 3, 4) + "INFOISFT" + little(3, 4) + QByteArray("odd\0", 4);
    const QByteArray tag = id3v2(textFrame("TIT2", "t") + textFrame("TPE1", "a"));
    const QByteArray untitled = id3v2(textFrame("TPE1", "a"));
    const QByteArray own = info(riffChunk("INAM", "N"));
    expectChanges(
        kName,
        {{"fields with two ids", cleaning(Track), file(info(all) + kSound), file(info(both + odd) + kSound)},
         {"new title, no list", cleaning(Title | Album, title), file(kSound + kOtherList, "rest"),
          file(kSound + kOtherList + own)},
         {"empty texts", cleaning(Title | Album, QString(), QString()), file(kSound + info(all), "rest"),
          file(kSound + info(texts + tracks + odd), "rest")},
         {"fields without an id", cleaning(Artwork | AlbumArtist, title), file(kSound + info(all)),
          file(kSound + info(all))},
         {"list without its last padding", cleaning(Genre), file(unpadded + kSound), file(unpadded + kSound)},
         {"new title behind a missing padding", cleaning(Title | Album, title), file(unpadded + kSound),
          file(info(odd + riffChunk("INAM", "N")) + kSound)},
         {"rest in a list", cleaning(Genre), file(kSound + info(all + "rest")), file(kSound + info(all + "rest"))},
         {"ID3v2 in both letters", cleaning(Title), file(riffChunk("id3 ", tag) + kSound + riffChunk("ID3 ", tag)),
          file(riffChunk("id3 ", untitled) + kSound + riffChunk("ID3 ", untitled))},
         {"rest behind ID3v2", cleaning(Title), file(kSound + riffChunk("id3 ", tag + "r")),
          file(kSound + riffChunk("id3 ", untitled + "r"))},
         {"empty ID3v2 chunk", cleaning(Title), file(riffChunk("id3 ", {}) + kSound),
          file(riffChunk("id3 ", {}) + kSound)},
         {"new title, in the first list", cleaning(Title | Album, title), file(kSound + kOldInfo + kCue + kOldInfo),
          file(kSound + own + kCue + info({}))}});
}

TEST(WavWriterTest, refusesWhatItCannotRewrite)
{
    const QByteArray good = file(kSound + kOldInfo);
    const QByteArray unsized = file(kFormat + "data" + little(0, 4) + QByteArray(64, '\0'));
    const QByteArray flagged = id3v2(textFrame("TIT2", "T"), 3, 0x80);
    const QString unsupported = QStringLiteral("unsupportedFormat wav");
    const Change write = writing(fullTags());
    const Change clean = cleaning(CleanerField::Title);
    expectRefusals(
        kName,
        {{"empty", {}, write, unsupported},
         {"header cut", good.left(11), write, unsupported},
         {"RF64", "RF64" + good.mid(4), write, unsupported},
         {"RF64, cleaning", "RF64" + good.mid(4), clean, unsupported},
         {"other kind of RIFF", "RIFF" + good.mid(4, 4) + "AVI " + good.mid(12), write, unsupported},
         {"cut in the sound", good.left(500), write, kCorrupt},
         {"size of a stream", file(kFormat + "data" + little(0xFFFFFFFF, 4) + "sound"), write, kCorrupt},
         {"last padding cut", file(kSound).chopped(1), write, kCorrupt},
         {"size never written", unsized, write, kCorrupt},
         {"size never written, cleaning", unsized, clean, kCorrupt},
         {"broken list", file(kSound + info("INAM" + little(100, 4))), clean, kCorrupt},
         {"ID3v2 beyond its chunk", file(kSound + riffChunk("id3 ", id3v2("x").chopped(1))), clean, kCorrupt},
         {"ID3v2 with flags", file(kSound + riffChunk("id3 ", flagged)), clean, QStringLiteral("rewriteFailed ID3")}});
}

} // namespace
