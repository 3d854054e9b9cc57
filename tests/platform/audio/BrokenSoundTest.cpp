#include "platform/audio/FileImage.h"
#include "support/SoundFiles.h"
#include "support/Thrown.h"

#include <QDirIterator>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <cmath>

namespace {

const SoundFiles::Kind kKinds[] = {
    {"b.mp3", "-q:a 4"},
    {"bare.mp3", "-q:a 4 -write_xing 0"},
    {"b.m4a", "-c:a aac -movflags faststart"},
    {"b.aac", "-c:a aac"},
    {"alac.m4a", "-c:a alac -movflags faststart"},
    {"b.wav", "-c:a pcm_s24le"},
    {"b.aiff", ""},
    {"b.flac", ""},
};

/// The file with noise in its middle.
QString damaged(const SoundFiles::Kind& kind, qsizetype count)
{
    QByteArray bytes = SoundFiles::bytesOf(SoundFiles::make(kind));
    for (qsizetype i = 0; i < count; ++i)
        bytes[bytes.size() / 2 + i] = static_cast<char>(i * i * 31 + i / 7);
    return SoundFiles::write(QStringLiteral("damaged"), bytes);
}

/// Opens, reads to the end and seeks; what it tells must agree. \return frames, or nothing where there is no sound.
std::optional<qint64> readThrough(const QString& path)
{
    try {
        const auto reader = AudioFileReader::open(path, {});
        const auto channels = static_cast<size_t>(reader->channelCount());
        const std::vector<float> all = SoundFiles::rest(*reader);
        const auto frames = static_cast<qint64>(all.size() / channels);
        EXPECT_EQ(reader->frameCount(), frames);
        reader->seek(frames / 2);
        EXPECT_EQ(reader->position(), frames / 2);
        EXPECT_EQ(SoundFiles::rest(*reader).size() / channels, static_cast<size_t>(frames - frames / 2));
        return frames;
    } catch (const AudioFileError&) {
        return std::nullopt;
    }
}

class BrokenKind : public testing::TestWithParam<SoundFiles::Kind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, BrokenKind, testing::ValuesIn(kKinds));

TEST_P(BrokenKind, readsWhatIsLeftOfATruncatedFile)
{
    const QByteArray whole = SoundFiles::bytesOf(SoundFiles::make(GetParam()));
    const QString path = SoundFiles::write(QStringLiteral("half"), whole.first(whole.size() / 2));
    const auto told = AudioFileReader::open(path, {})->frameCount();
    const auto frames = readThrough(path);
    EXPECT_EQ(frames, told);
    EXPECT_EQ(static_cast<size_t>(frames.value_or(0)), SoundFiles::decoded(path).size() / 2);
    EXPECT_NEAR(static_cast<double>(frames.value_or(0)), 2.5 * 44100, 0.3 * 44100);
}

// What comes after the damage stands where it stood before, so the beat goes on in its place.
TEST_P(BrokenKind, keepsThePlaceOfWhatFollowsDamage)
{
    // Bare frames have no clock: what is missing of them is missing.
    const QString name = QString::fromLatin1(GetParam().name);
    if (name.endsWith(QLatin1StringView("mp3")) || name.endsWith(QLatin1StringView("aac")))
        return;
    const std::vector<float> sound = SoundFiles::rest(*AudioFileReader::open(SoundFiles::make(GetParam()), {}));
    const std::vector<float> heard = SoundFiles::rest(*AudioFileReader::open(damaged(GetParam(), 5000), {}));
    ASSERT_EQ(heard.size(), sound.size());
    EXPECT_TRUE(heard != sound);
    // The noise of AAC depends on all before, so its samples are compared roughly.
    const auto tail = sound.size() * 3 / 4;
    double difference = 0;
    for (size_t i = tail; i < sound.size(); ++i)
        difference += std::abs(heard[i] - sound[i]);
    EXPECT_LT(difference / static_cast<double>(sound.size() - tail), 0.02);
}

TEST_P(BrokenKind, endsWithBareFramesThatAreDamaged)
{
    EXPECT_GT(readThrough(damaged(GetParam(), 3000)).value_or(0), 4 * 44100);
}

TEST(BrokenSoundTest, believesNoFalseLength)
{
    const qint64 frames = 5 * 44100;
    const QByteArray wave = SoundFiles::bytesOf(SoundFiles::make({"16.wav", "-bitexact"}));
    for (const QByteArray& size : {QByteArray(4, '\xFF'), QByteArray(4, '\0')}) {
        const QString path =
            SoundFiles::write(QStringLiteral("size.wav"), QByteArray(wave).replace(wave.indexOf("data") + 4, 4, size));
        EXPECT_EQ(AudioFileReader::open(path, {})->frameCount(), frames);
        EXPECT_EQ(readThrough(path), frames);
    }
    // The lower 36 bits of the eight bytes at 18 are the number of samples.
    QByteArray flac = SoundFiles::bytesOf(SoundFiles::make({"b.flac", ""}));
    flac[21] = static_cast<char>(flac[21] & 0xF0);
    for (const char fill : {'\0', '\x7F'}) {
        const QString path = SoundFiles::write(QStringLiteral("total.flac"), flac.replace(22, 4, QByteArray(4, fill)));
        EXPECT_EQ(AudioFileReader::open(path, {})->frameCount(), frames);
        EXPECT_EQ(readThrough(path), frames);
    }
}

TEST_P(BrokenKind, endsWhenTheFileIsEmptiedWhileItIsRead)
{
    for (const int rate : {0, 48000}) {
        const QByteArray bytes = SoundFiles::bytesOf(SoundFiles::make(GetParam()));
        const QString path = SoundFiles::write(QStringLiteral("emptied"), bytes);
        const auto reader = AudioFileReader::open(path, {.sampleRate = rate});
        std::vector<float> piece(2000);
        EXPECT_EQ(reader->read(piece), 1000);
        SoundFiles::write(QStringLiteral("emptied"), {});
        EXPECT_LT(SoundFiles::rest(*reader).size(), 2u * 220'000);
        for (const qint64 frame : {qint64(0), qint64(100'000)}) {
            reader->seek(frame);
            SoundFiles::rest(*reader);
            EXPECT_EQ(reader->position(), reader->frameCount());
        }
    }
}

TEST(BrokenSoundTest, refusesWhatIsNoSound)
{
    const QString wave = SoundFiles::make({"16.wav", "-bitexact"});
    const std::pair<QString, QByteArray> cases[] = {
        {QStringLiteral("empty.wav"), {}},
        {QStringLiteral("text.mp3"), QByteArray("This is a text and no music.\n").repeated(400)},
        {QStringLiteral("zeros.flac"), QByteArray(100'000, '\0')},
        {QStringLiteral("head.wav"), SoundFiles::bytesOf(wave).first(44)},
        // Lists that lead to a file which does have sound.
        {QStringLiteral("list.mp3"), "ffconcat version 1.0\nfile '" + wave.toUtf8() + "'\n"},
        {QStringLiteral("list.m4a"),
         "#EXTM3U\n#EXT-X-TARGETDURATION:5\n#EXTINF:5,\n" + wave.toUtf8() + "\n#EXT-X-ENDLIST\n"},
    };
    for (const auto& [name, bytes] : cases) {
        const QString path = SoundFiles::write(name, bytes);
        const auto error = thrown<AudioFileError>([&] { AudioFileReader::open(path, {}); });
        ASSERT_TRUE(error) << name.toStdString() << " was opened";
        EXPECT_EQ(error->which(), AudioFileError::Case::NoAudio) << name.toStdString();
    }
}

// Files of other projects' tests, each of which once broke some reader. They are not part of this project.
TEST(BrokenSoundTest, endsWithEveryFileOfTheCorpus)
{
    const QString corpus = QStringLiteral(VELMORA_CORPUS);
    if (!QFileInfo::exists(corpus))
        GTEST_SKIP() << "there is no corpus";
    int heard = 0;
    for (QDirIterator files(corpus, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        const QString path = files.next();
        SCOPED_TRACE(path.toStdString());
        QElapsedTimer timer;
        timer.start();
        heard += readThrough(path).has_value();
        EXPECT_LT(timer.elapsed(), 10'000);
    }
    EXPECT_GT(heard, 100);
}

} // namespace
