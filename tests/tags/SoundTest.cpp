#include "support/TagBytes.h"
#include "support/TagsOf.h"
#include "tags/bytes/ByteSource.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

/// A summary frame of a file with variable bit rate.
QByteArray xingFrame(quint32 frames, quint32 bytes)
{
    QByteArray frame = mpegFrames(1);
    return frame.replace(36, 16, "Xing" + big(3, 4) + big(frames, 4) + big(bytes, 4));
}

/// Frames of alternating bit rates, 128 and 64 kbit/s.
QByteArray mixedFrames(int pairs)
{
    const QByteArray small = QByteArray("\xFF\xFB\x50\x64", 4) + QByteArray(204, '\0');
    return (mpegFrames(1) + small).repeated(pairs);
}

TEST(SoundTest, describesTheSoundOfEveryContainer)
{
    const double frame = 1152.0 / 44100;
    const struct {
        const char* what;
        QByteArray bytes;
        std::optional<double> seconds;
        double bitRate;
        int bitDepth;
    } cases[] = {
        {"constant rate", mpegFrames(100), 100 * 417 * 8 / 128000.0, 128000, 0},
        {"constant rate behind junk", "junk" + mpegFrames(100), 100 * 417 * 8 / 128000.0, 128000, 0},
        {"variable rate with summary", xingFrame(1000, 1000417), 1000 * frame, 1000000 * 8 / (1000 * frame), 0},
        {"constant rate with summary", xingFrame(1000, 417 * 1001), 1000 * frame, 128000, 0},
        {"variable rate without summary", mixedFrames(500), 1000 * frame, (417 + 208) * 500 * 8 / (1000 * frame), 0},
        {"WAV", wave(8000), 1.0, 128000, 16},
        {"AIFF", aiff(4000), 0.5, 128000, 16},
        {"FLAC", flac(22050, {}), 0.5, 16000, 16},
        {"FLAC of unknown length", flac(0, {}), std::nullopt, 0, 16},
        {"M4A", m4a({}), 2.0, 4000, 24},
    };
    for (const auto& c : cases) {
        // The summary frame needs a neighbour to be found.
        const std::optional<Sound> sound =
            assetOf(c.bytes + mpegFrames(c.bytes.contains("Xing")), QStringLiteral("mp3")).sound;
        ASSERT_TRUE(sound) << c.what;
        EXPECT_EQ(sound->seconds.has_value(), c.seconds.has_value()) << c.what;
        EXPECT_NEAR(sound->seconds.value_or(0), c.seconds.value_or(0), 1e-6) << c.what;
        EXPECT_NEAR(sound->details.bitRate, c.bitRate, 1) << c.what;
        EXPECT_EQ(sound->details.bitDepth, c.bitDepth) << c.what;
    }
}

/// Frames of 1024 samples at 44.1 kHz.
QByteArray adtsFrames(int count)
{
    return (QByteArray::fromHex("fff150800c9ffc") + QByteArray(93, 'x')).repeated(count);
}

TEST(SoundTest, countsFramesOverWhatStandsBetweenThem)
{
    const QByteArray tag = id3v2(pictureFrame(QByteArray("\xFF\xFB\x90\x64").repeated(500)));
    const QByteArray small = QByteArray("\xFF\xFB\x50\x64", 4) + QByteArray(204, '\0');
    const std::pair<const char*, QByteArray> cases[] = {
        {"nothing", {}},
        {"tags of joined files", id3v1({.title = "T"}) + tag},
        {"hole", QByteArray(50'000, '\0')},
        {"damaged frame", QByteArray("\xFF\xFB\x90\x64\xFF\xF1\x50\x80\x0c\x9f\xfc") + QByteArray(80, 'y')},
    };
    for (const auto& [what, between] : cases) {
        const Asset aac = assetOf(adtsFrames(100) + between + adtsFrames(50));
        EXPECT_NEAR(aac.sound->seconds.value_or(0), 150 * 1024.0 / 44100, 0.1) << what;
        EXPECT_NEAR(aac.sound->details.bitRate, 100 * 8 * 44100 / 1024.0, 200) << what;
        const Asset mpeg = assetOf(mixedFrames(500) + between + mixedFrames(200));
        EXPECT_NEAR(mpeg.sound->seconds.value_or(0), 1400 * 1152.0 / 44100, 0.1) << what;
    }
    // Silence in front has a rate of its own.
    const Asset silent = assetOf(small.repeated(400) + mpegFrames(600));
    EXPECT_NEAR(silent.sound->seconds.value_or(0), 1000 * 1152.0 / 44100, 1e-6);
}

TEST(SoundTest, estimatesWhatWouldTakeTooLongToCount)
{
    for (const auto& [bytes, seconds] : {std::pair(adtsFrames(30'000), 30'000 * 1024.0 / 44100),
                                         std::pair(mixedFrames(15'000), 30'000 * 1152.0 / 44100)}) {
        MemoryBytes source(bytes, {.readCount = 20'000});
        const Asset asset = AssetReader::read(source, {}, {});
        EXPECT_FALSE(source.wasCutShort());
        ASSERT_TRUE(asset.sound);
        EXPECT_NEAR(asset.sound->seconds.value_or(0), seconds, 0.1);
    }
}

TEST(SoundTest, boundsStatedSizesByTheFile)
{
    // A recording that was never closed: no sizes.
    QByteArray open = wave(8000);
    open.replace(40, 4, QByteArray(4, '\xFF'));
    EXPECT_DOUBLE_EQ(assetOf(open).sound->seconds.value_or(0), 1.0);
    // A download that broke off.
    EXPECT_DOUBLE_EQ(assetOf(wave(8000).first(44 + 8000)).sound->seconds.value_or(0), 0.5);
    EXPECT_DOUBLE_EQ(assetOf(flac(44100, {}).first(60)).sound->seconds.value_or(0), 1.0) << "the header still tells";
}

TEST(SoundTest, readsSizesBeyond32BitsFromTheirOwnChunk)
{
    const QByteArray sizes = riffChunk("ds64", little(0, 8) + little(16000, 8) + little(8000, 8) + little(0, 4));
    QByteArray bytes = wave(8000, info(riffChunk("INAM", "Behind")));
    bytes.replace(40, 4, QByteArray(4, '\xFF')).insert(12, sizes).replace(0, 4, "RF64");
    const Asset asset = assetOf(bytes);
    EXPECT_DOUBLE_EQ(asset.sound->seconds.value_or(0), 1.0);
    EXPECT_EQ(asset.items.size(), 1u) << "chunks behind the data are found";
}

TEST(SoundTest, findsChunksBehindOddOnesWhateverPadsThem)
{
    const QByteArray tag = id3v2(textFrame("TIT2", "T"));
    for (const QByteArray& pad :
         {QByteArray("\0", 1), QByteArray("\x20"), QByteArray("\x55"), QByteArray("\x80"), QByteArray()}) {
        const auto note = [&](const QByteArray& size) { return "note" + size + "abc" + pad; };
        const QByteArray wav = note(little(3, 4));
        const QByteArray aif = note(big(3, 4));
        for (const QByteArray& bytes :
             {wave(1, wav + info(riffChunk("INAM", "T"))), wave(1, wav + riffChunk("id3 ", tag)),
              wave(1, wav + "junk" + little(2, 4) + "ab" + info(riffChunk("INAM", "T"))),
              wave(1, wav + info(riffChunk("INAM", "T") + riffChunk("IGNR", "G"))).chopped(10),
              aiff(1, aif + aiffChunk("NAME", "T")), aiff(1, aif + aiffChunk("ID3 ", tag))})
            EXPECT_EQ(assetOf(bytes).items.size(), 1u) << pad.toHex().toStdString() << bytes.toHex().toStdString();
    }
}

TEST(SoundTest, takesAllThatFollowsForTheSamplesOfACrashedRecorder)
{
    QByteArray samples;
    for (int index = 0; index < 16000; ++index)
        samples += static_cast<char>(index * 7);
    for (const QByteArray& recorded : {QByteArray(16000, '\0'), QByteArray(16000, 'x'), samples}) {
        QByteArray bytes = wave(0);
        bytes += recorded;
        EXPECT_DOUBLE_EQ(assetOf(bytes).sound->seconds.value_or(0), 1.0);
    }
    const Asset empty = assetOf(wave(0, info(riffChunk("INAM", "T"))));
    EXPECT_DOUBLE_EQ(empty.sound->seconds.value_or(-1), 0.0);
    EXPECT_EQ(empty.items.size(), 1u);
}

/// An audio track of ALAC. \param duration in thousandths. \param sizes of its samples.
QByteArray soundTrack(quint32 duration, const QByteArray& sizes = {})
{
    const QByteArray entry = atom("alac", QByteArray(28, '\0'));
    const QByteArray table = atom("stbl", atom("stsd", big(0, 4) + big(1, 4) + entry) + atom("stsz", sizes));
    const QByteArray header = atom("mdhd", QByteArray(12, '\0') + big(1000, 4) + big(duration, 4));
    const QByteArray media = header + atom("hdlr", big(0, 8) + "soun" + big(0, 8)) + atom("minf", table);
    return atom("trak", atom("tkhd", QByteArray(12, '\0') + big(1, 4)) + atom("mdia", media));
}

TEST(SoundTest, addsUpTheFragmentsOfAMovie)
{
    const auto fragment = [](const QByteArray& header, const QByteArray& run) {
        return atom("moof", atom("traf", atom("tfhd", header) + atom("trun", run))) + atom("mdat", "xxxx");
    };
    const QByteArray track = soundTrack(0);
    const QByteArray movieHeader = atom("mvhd", QByteArray(12, '\0') + big(500, 4) + big(0, 4));
    const QByteArray usual = atom("trex", big(0, 4) + big(1, 4) + big(1, 4) + big(100, 4) + big(0, 8));
    const QByteArray stated = atom("mehd", big(0, 4) + big(3500, 4));
    const QByteArray plain = fragment(big(0, 4) + big(1, 4), big(0, 4) + big(10, 4));
    const QByteArray own =
        fragment(big(0xB, 4) + big(1, 4) + big(0, 8) + big(1, 4) + big(200, 4), big(1, 4) + big(10, 4) + big(0, 4));
    const QByteArray each = fragment(big(0, 4) + big(1, 4), big(0x305, 4) + big(2, 4) + big(9, 8) + big(300, 4) +
                                                                big(7, 4) + big(700, 4) + big(7, 4));
    const QByteArray other = fragment(big(0, 4) + big(2, 4), big(0, 4) + big(10, 4));
    const QByteArray endless = fragment(big(0, 4) + big(1, 4), big(0x100, 4) + big(0xFFFFFFFF, 4) + big(1000, 4));
    const std::tuple<const char*, QByteArray, QByteArray, double> cases[] = {
        {"stated", usual + stated, plain, 7},
        {"usual lengths", usual, plain + plain, 2},
        {"lengths of a fragment", usual, own + plain, 3},
        {"lengths of each sample", usual, each + other, 1},
        {"more samples than there are", usual, endless, 1},
        {"no lengths", {}, plain, 0},
    };
    for (const auto& [what, extension, fragments, seconds] : cases) {
        const Asset asset =
            assetOf(atom("ftyp", "M4A ") + atom("moov", movieHeader + track + atom("mvex", extension)) + fragments);
        ASSERT_TRUE(asset.sound) << what;
        EXPECT_DOUBLE_EQ(asset.sound->seconds.value_or(0), seconds) << what;
    }
}

TEST(SoundTest, countsTheBytesOfTheSoundTrackBesideOthers)
{
    const QByteArray each = big(0, 8) + big(3, 4) + big(100, 4) + big(200, 4) + big(700, 4);
    const QByteArray same = big(0, 4) + big(500, 4) + big(2, 4);
    const QByteArray tooLarge = big(0, 4) + big(0xFFFFFFFF, 4) + big(0xFFFFFFFF, 4);
    for (const auto& [sizes, bitRate] : {std::pair(each, 4000), std::pair(same, 4000), std::pair(tooLarge, 0)}) {
        const QByteArray movie = atom("moov", atom("trak", {}) + soundTrack(2000, sizes));
        const Asset asset = assetOf(atom("ftyp", "M4A ") + movie + atom("mdat", QByteArray(50'000, 'x')));
        EXPECT_DOUBLE_EQ(asset.sound->details.bitRate, bitRate);
    }
}

TEST(SoundTest, ignoresImpossibleFigures)
{
    QByteArray rate = aiff(4000);
    rate.replace(28, 10, QByteArray(10, '\x7F')); // beyond every number
    EXPECT_FALSE(assetOf(rate).sound);
    QByteArray still = wave(8000);
    still.replace(24, 10, QByteArray(10, '\0')); // no sample rate
    EXPECT_FALSE(assetOf(still).sound->seconds);
}

} // namespace
