#include "support/TagBytes.h"
#include "support/TagsOf.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

/// The identifiers of all items, in order.
QStringList identifiersOf(const QByteArray& bytes)
{
    QStringList identifiers;
    for (const MetadataItem& item : assetOf(bytes).items)
        identifiers.append(item.identifier);
    return identifiers;
}

QByteArray title(const char* text)
{
    return id3v2(textFrame("TIT2", text));
}

TEST(AssetReaderTest, listsFormatsFromTheLeastToTheMostTrusted)
{
    const QByteArray v1 = id3v1({.title = "V1"});
    const QByteArray infoList = info(riffChunk("INAM", "Info"));
    const std::tuple<const char*, QByteArray, QStringList> cases[] = {
        {"MP3",
         title("V2") + mpegFrames(3) + ape({"Title=Ape"}) + v1,
         {QStringLiteral("id3v1/TITLE"), QStringLiteral("ape/Title"), QStringLiteral("id3/TIT2")}},
        {"WAV, tag first",
         wave(10, riffChunk("id3 ", title("V2")) + infoList),
         {QStringLiteral("riff/INAM"), QStringLiteral("id3/TIT2")}},
        {"WAV, tag last",
         wave(10, infoList + riffChunk("ID3 ", title("V2"))),
         {QStringLiteral("riff/INAM"), QStringLiteral("id3/TIT2")}},
        {"AIFF",
         aiff(10, aiffChunk("ID3 ", title("V2")) + aiffChunk("NAME", "Name") + aiffChunk("(c) ", "Owner")),
         {QStringLiteral("aiff/NAME"), QStringLiteral("aiff/(c) "), QStringLiteral("id3/TIT2")}},
        {"FLAC",
         title("V2") + flac(44100, {"TITLE=Vorbis"}, flacBlock(6, flacPicture("png"))) + v1,
         {QStringLiteral("id3v1/TITLE"), QStringLiteral("id3/TIT2"), QStringLiteral("vorbis/TITLE"),
          QStringLiteral("vorbis/METADATA_BLOCK_PICTURE")}},
        {"M4A",
         m4a(itemAtom("\xA9nam", 1, "Title") + freeformAtom("com.apple.iTunes", "initialkey", "8A")),
         {QStringLiteral("itsk/©nam"), QStringLiteral("itlk/com.apple.iTunes.initialkey")}},
    };
    for (const auto& [what, bytes, identifiers] : cases)
        EXPECT_EQ(identifiersOf(bytes), identifiers) << what;
}

TEST(AssetReaderTest, readsValuesThatFormatsKeepInTheirOwnWay)
{
    const auto only = [](const QByteArray& bytes) {
        const std::vector<MetadataItem> items = assetOf(bytes).items;
        return items.size() == 1 ? items[0] : MetadataItem();
    };
    EXPECT_EQ(only(m4a(itemAtom("gnre", 0, big(18, 2)))).stringValue, QStringLiteral("Rock"));
    EXPECT_EQ(only(m4a(itemAtom("\xA9nam", 2, QByteArray("\0A", 2)))).stringValue, QStringLiteral("A"));
    EXPECT_EQ(only(m4a(itemAtom("covr", 13, "jpg"))).dataValue, "jpg");
    EXPECT_EQ(only(mpegFrames(3) + id3v1({.genre = 17})).stringValue, QStringLiteral("Rock"));
    EXPECT_EQ(only(mpegFrames(3) + id3v1({.title = "Spaces   "})).stringValue, QStringLiteral("Spaces"));
    const QByteArray cut = QByteArray("Очень длинное название").first(29);
    EXPECT_EQ(only(mpegFrames(3) + id3v1({.title = 'x' + cut})).stringValue, QStringLiteral("xОчень длинное н"));
    EXPECT_EQ(only(mpegFrames(3) + id3v1({.title = QByteArray(29, 'x') + '\xE9'})).stringValue,
              QString(29, u'x') + u'é');
    EXPECT_EQ(only(id3v2(textFrame("TCON", "140")) + mpegFrames(3)).stringValue, QStringLiteral("140"));
    EXPECT_EQ(only(id3v2(textFrame("TCON", "17", 4), 4) + mpegFrames(3)).stringValue, QStringLiteral("Rock"));
    EXPECT_EQ(only(wave(1, info(riffChunk("IGNR", "17")))).stringValue, QStringLiteral("17"));
    EXPECT_EQ(only(mpegFrames(3) + ape({"Title=\xCA\xE8\xED\xEE"})).stringValue, QStringLiteral("Кино"));
    EXPECT_EQ(only(flac(1, {"TITLE=\xCA\xE8\xED\xEE"})).stringValue, QStringLiteral("Кино"));
    EXPECT_EQ(only(mpegFrames(3) + ape({QByteArray("Artist=A\0B", 10)})).stringValue, QStringLiteral("A / B"));
    EXPECT_EQ(only(flac(1, {"METADATA_BLOCK_PICTURE=" + flacPicture("png").toBase64()})).dataValue, "png");
    EXPECT_EQ(only(flac(1, {"COVERART=" + QByteArray("png").toBase64()})).dataValue, "png");
    EXPECT_EQ(only(flac(1, {"COVERART=cG\n5n"})).dataValue, "png");
    EXPECT_TRUE(assetOf(flac(1, {"COVERART=", "COVERART=c*5n", "METADATA_BLOCK_PICTURE="})).items.empty());
    EXPECT_EQ(only(flac(1, {"no equals sign", "=no key", "A=b=c"})).stringValue, QStringLiteral("b=c"));
}

TEST(AssetReaderTest, keepsEveryTextOfRepeatedFieldsAndTheLastPicture)
{
    EXPECT_EQ(identifiersOf(flac(1, {"ARTIST=A", "ARTIST=B"})).size(), 2);
    const QByteArray twoPictures = atom("covr", atom("data", big(13, 4) + big(0, 4) + "one") + atom("name", "junk") +
                                                    atom("data", big(14, 4) + big(0, 4) + "two"));
    const std::vector<MetadataItem> pictures = assetOf(m4a(twoPictures)).items;
    ASSERT_EQ(pictures.size(), 1u) << "only the last picture is shown";
    EXPECT_EQ(pictures[0].dataValue, "two");
    const QByteArray blocks =
        flacBlock(6, flacPicture("one")) + flacBlock(6, flacPicture("two")) + flacBlock(6, flacPicture({}));
    const std::vector<MetadataItem> flacPictures = assetOf(flac(1, {}, blocks)).items;
    ASSERT_EQ(flacPictures.size(), 1u);
    EXPECT_EQ(flacPictures[0].dataValue, "two");
}

TEST(AssetReaderTest, passesOverFieldsBeyondMeasure)
{
    const QByteArray large(1024 * 1024 + 1, 'x');
    const QByteArray largePicture(64 * 1024 * 1024 + 1, 'x');
    for (const QByteArray& bytes : {m4a(itemAtom("\xA9nam", 1, "T") + itemAtom("\xA9nam", 1, large)),
                                    m4a(itemAtom("covr", 13, "T") + itemAtom("covr", 13, largePicture)),
                                    wave(1, info(riffChunk("INAM", large) + riffChunk("IART", "T"))),
                                    aiff(1, aiffChunk("NAME", "T") + aiffChunk("NAME", large))}) {
        const std::vector<MetadataItem> items = assetOf(bytes).items;
        ASSERT_EQ(items.size(), 1u);
        EXPECT_EQ(items[0].stringValue.value_or(QString::fromUtf8(items[0].dataValue.value_or(QByteArray()))),
                  QStringLiteral("T"));
    }
}

// The header of a tag that begins where a footer is looked for would cut into the sound.
TEST(AssetReaderTest, takesNoApeHeaderForAFooter)
{
    const QByteArray tag = ape({"Title=Ape"});
    const Asset asset = assetOf(mpegFrames(3) + tag.first(32));
    EXPECT_TRUE(asset.items.empty());
    EXPECT_EQ(assetOf(mpegFrames(3) + tag).sound->details.audioDataByteCount, quint64(3 * 417));
}

TEST(AssetReaderTest, stepsOverLyricsBetweenTheTags)
{
    const QByteArray lyrics = "LYRICSBEGININD0000200EAR00005Words";
    const QByteArray sized = lyrics + QByteArray::number(lyrics.size()).rightJustified(6, '0') + "LYRICS200";
    const QByteArray tag = ape({"Title=Ape"});
    for (const QByteArray& bytes : {tag + sized + id3v1({}), sized + tag + id3v1({}), tag + sized}) {
        const Asset asset = assetOf(mpegFrames(3) + bytes);
        EXPECT_EQ(asset.items.size(), 1u);
        EXPECT_EQ(asset.sound->details.audioDataByteCount, quint64(3 * 417));
    }
    const QByteArray tooLong = lyrics + "999999LYRICS200";
    EXPECT_TRUE(assetOf(mpegFrames(3) + tag + tooLong).items.empty());
}

TEST(AssetReaderTest, goesByTheBytesAndNotByTheName)
{
    const QByteArray mpeg = mpegFrames(3);
    EXPECT_TRUE(assetOf(mpeg, QStringLiteral("wav")).sound);
    EXPECT_TRUE(assetOf(wave(10), QStringLiteral("mp3")).sound);
    EXPECT_TRUE(assetOf("junk in front" + mpeg, QStringLiteral("MP3")).sound);
    EXPECT_FALSE(assetOf("junk in front" + mpeg, QStringLiteral("wav")).sound);
    EXPECT_FALSE(assetOf("OggS" + QByteArray(1000, '\0'), QStringLiteral("mp3")).sound);
}

} // namespace
