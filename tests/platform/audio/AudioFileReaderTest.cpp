#include "platform/audio/AudioFileReader.h"

#include "support/SoundFiles.h"
#include "support/TagBytes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

using SoundFiles::Kind;

namespace {

// Noise substitution is off in AAC: its generator runs on from the beginning of the file, so that no decoder gives the
// same noise after a seek.
const Kind kKinds[] = {
    {"cbr.mp3", "-b:a 192k"},
    {"vbr.mp3", "-q:a 4"},
    {"bare.mp3", "-q:a 4 -write_xing 0"},
    {"low.mp3", "-b:a 8k -ac 1", 22050, 1},
    {"wide.mp3", "-b:a 320k -id3v2_version 0", 48000},
    {"stereo.m4a", "-c:a aac -aac_pns 0"},
    {"surround.m4a", "-c:a aac -aac_pns 0 -ac 6 -b:a 300k", 48000, 6},
    {"lossless.m4a", "-c:a alac"},
    {"stream.aac", "-c:a aac -aac_pns 0"},
    {"8.wav", "-c:a pcm_u8", 22050},
    {"16.wav", "-c:a pcm_s16le"},
    {"24.wav", "-c:a pcm_s24le", 96000},
    {"32.wav", "-c:a pcm_s32le", 44100, 1},
    {"float.wav", "-c:a pcm_f32le"},
    {"large.wav", "-rf64 always"},
    {"extensible.wav", "-ac 6 -c:a pcm_s24le", 48000, 6},
    {"adpcm.wav", "-c:a adpcm_ima_wav"},
    {"16.aiff", ""},
    {"swapped.aifc", "-c:a pcm_s16le -f aiff"},
    {"24.aif", "-c:a pcm_s24be", 48000},
    {"16.flac", ""},
    {"24.flac", "-sample_fmt s32", 96000},
    {"Длинное имя — очень длинное имя дорожки с эмодзи 🎧🎶.flac", "", 44100, 1},
};

class FormatTest : public testing::TestWithParam<Kind> {};
INSTANTIATE_TEST_SUITE_P(Formats, FormatTest, testing::ValuesIn(kKinds));

TEST_P(FormatTest, deliversWhatTheReferenceDecoderDelivers)
{
    const QString path = SoundFiles::make(GetParam());
    const std::vector<float> expected = SoundFiles::decoded(path);
    ASSERT_GT(expected.size(), 20000u);
    const auto reader = AudioFileReader::open(path, {});
    EXPECT_EQ(reader->sampleRate(), GetParam().sampleRate);
    EXPECT_EQ(reader->channelCount(), GetParam().channelCount);
    EXPECT_EQ(reader->frameCount() * reader->channelCount(), static_cast<qint64>(expected.size()));
    EXPECT_TRUE(SoundFiles::rest(*reader) == expected);
    EXPECT_EQ(reader->position(), reader->frameCount());
}

TEST_P(FormatTest, seeksToTheFrame)
{
    const auto reader = AudioFileReader::open(SoundFiles::make(GetParam()), {});
    const std::vector<float> all = SoundFiles::rest(*reader);
    const int channels = reader->channelCount();
    const qint64 total = reader->frameCount();
    std::vector<qint64> frames{0, total - 1, 1, total, 1151, 1152, total + 1000, 2048, total / 2, total / 2 - 1, -1};
    std::mt19937 random(7);
    for (int i = 0; i < 40; ++i)
        frames.push_back(static_cast<qint64>(random()) % total);
    for (const qint64 frame : frames) {
        reader->seek(frame);
        const qint64 from = std::clamp<qint64>(frame, 0, total);
        EXPECT_EQ(reader->position(), from);
        std::vector<float> piece(static_cast<size_t>(3000 * channels));
        const qint64 got = reader->read(piece);
        ASSERT_EQ(got, std::min<qint64>(3000, total - from)) << frame;
        ASSERT_TRUE(std::equal(piece.begin(), piece.begin() + got * channels, all.begin() + from * channels)) << frame;
    }
}

TEST(AudioFileReaderTest, repeatsOneChannelAtItsLevel)
{
    const QString path = SoundFiles::make({"one.wav", "", 44100, 1});
    const std::vector<float> mono = SoundFiles::rest(*AudioFileReader::open(path, {}));
    const auto reader = AudioFileReader::open(path, {.channelCount = 2});
    EXPECT_EQ(reader->fileChannelCount(), 1);
    const std::vector<float> stereo = SoundFiles::rest(*reader);
    ASSERT_EQ(stereo.size(), 2 * mono.size());
    for (size_t i = 0; i < stereo.size(); ++i)
        ASSERT_EQ(stereo[i], mono[i / 2]) << i;
}

TEST(AudioFileReaderTest, mixesChannelsDownWithoutClipping)
{
    // Six channels, all at full scale at the same moments.
    QByteArray samples;
    for (int i = 0; i < 6 * 48000; ++i)
        samples += i / 6 % 100 < 50 ? QByteArray("\xFF\x7F", 2) : QByteArray("\x01\x80", 2);
    QByteArray file = SoundFiles::bytesOf(SoundFiles::make({"six.wav", "-ac 6 -bitexact", 48000, 6}));
    const qsizetype data = file.indexOf("data") + 8;
    file.replace(data, samples.size(), samples);
    const QString path = SoundFiles::write(QStringLiteral("loud.wav"), file);
    for (const int channels : {1, 2}) {
        const auto reader = AudioFileReader::open(path, {.channelCount = channels});
        const std::vector<float> mixed = SoundFiles::rest(*reader);
        ASSERT_EQ(static_cast<qint64>(mixed.size()), reader->frameCount() * channels);
        const auto [low, high] = std::ranges::minmax(mixed);
        EXPECT_LE(high, 1.0F);
        EXPECT_GE(low, -1.0F);
        EXPECT_GT(high, 0.9F);
    }
}

TEST(AudioFileReaderTest, convertsTheRateWithTheSamePlaces)
{
    const std::pair<Kind, int> cases[] = {{{"44.flac", ""}, 48000},
                                          {{"96.flac", "", 96000}, 44100},
                                          {{"22.mp3", "", 22050, 1}, 44100},
                                          {{"44.mp3", ""}, 8000}};
    for (const auto& [kind, rate] : cases) {
        SCOPED_TRACE(kind.name);
        const auto reader = AudioFileReader::open(SoundFiles::make(kind), {.sampleRate = rate});
        const qint64 told = reader->frameCount();
        EXPECT_NEAR(static_cast<double>(told), 5.0 * rate, 1.0);
        const int channels = reader->channelCount();
        const std::vector<float> all = SoundFiles::rest(*reader);
        EXPECT_NEAR(static_cast<double>(all.size()) / channels, static_cast<double>(told), 1.0);
        for (const qint64 frame : {qint64(0), told / 3, told / 2 + 1, told - 700}) {
            reader->seek(frame);
            std::vector<float> piece(static_cast<size_t>(512 * channels));
            ASSERT_EQ(reader->read(piece), 512);
            for (size_t i = 0; i < piece.size(); ++i)
                ASSERT_NEAR(piece[i], all[static_cast<size_t>(frame * channels) + i], 1e-5) << frame << ' ' << i;
        }
    }
}

TEST(AudioFileReaderTest, keepsTheTimeOfAToneAcrossRates)
{
    // A click at the second must be at the second in any rate.
    QByteArray file = SoundFiles::bytesOf(SoundFiles::make({"silent.wav", "-af volume=0 -bitexact", 44100, 1}));
    file.replace(file.indexOf("data") + 8 + 2 * 44100, 2, QByteArray("\xFF\x7F", 2));
    const QString path = SoundFiles::write(QStringLiteral("click.wav"), file);
    for (const int rate : {8000, 22050, 48000, 96000}) {
        const std::vector<float> sound = SoundFiles::rest(*AudioFileReader::open(path, {.sampleRate = rate}));
        EXPECT_NEAR(static_cast<double>(std::ranges::max_element(sound) - sound.begin()), rate, 1.0);
    }
}

TEST(AudioFileReaderTest, leavesTagsAroundMP3Out)
{
    const QByteArray front = TagBytes::id3v2(TagBytes::pictureFrame("\xFF\xD8\xFF\xE0" + QByteArray(700'000, 'p')));
    const QByteArray back = TagBytes::ape({}) + TagBytes::id3v1({.title = "x"});
    for (const char* name : {"cbr.mp3", "bare.mp3"}) {
        const Kind* kind = std::ranges::find_if(
            kKinds, [&](const Kind& k) { return QLatin1StringView(k.name) == QLatin1StringView(name); });
        const QString plain = SoundFiles::make(*kind);
        const QString tagged =
            SoundFiles::write(QStringLiteral("tagged.mp3"), front + SoundFiles::bytesOf(plain) + back);
        const auto reader = AudioFileReader::open(tagged, {});
        const std::vector<float> expected = SoundFiles::decoded(plain);
        EXPECT_EQ(reader->frameCount() * 2, static_cast<qint64>(expected.size()));
        EXPECT_TRUE(SoundFiles::rest(*reader) == expected) << name;
        reader->seek(100'000);
        std::vector<float> piece(2000);
        EXPECT_EQ(reader->read(piece), 1000);
        EXPECT_TRUE(std::equal(piece.begin(), piece.end(), expected.begin() + 200'000)) << name;
    }
}

} // namespace
