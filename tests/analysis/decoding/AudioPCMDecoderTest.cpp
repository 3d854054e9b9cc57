#include "support/DecoderFixture.h"

#include "analysis/decoding/TemporarySweep.h"
#include "platform/Localization.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <limits>
#include <system_error>
#include <thread>

namespace {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(u' ');
}

/// Strength of one frequency, 1 for a sine at full scale.
double strengthOf(double frequency, const std::vector<float>& samples, int sampleRate)
{
    double cosine = 0;
    double sine = 0;
    for (std::size_t index = 0; index < samples.size(); ++index) {
        const double angle = 2 * M_PI * frequency * double(index) / sampleRate;
        cosine += samples[index] * std::cos(angle);
        sine += samples[index] * std::sin(angle);
    }
    return 2 * std::hypot(cosine, sine) / double(samples.size());
}

class AudioPCMDecoderTest : public DecoderFixture {
protected:
    const QUrl anyFile = QUrl::fromLocalFile(QStringLiteral("/music/a.mp3"));
};

} // namespace

TEST_F(AudioPCMDecoderTest, RealFilesOfEveryFormatGiveTheirSound)
{
    // Both channels carry the same, which adds up to the square root of two.
    const struct {
        const char* name;
        const char* codec;
    } cases[] = {{"a.wav", "pcm_s16le"}, {"b.flac", "flac"}, {"c д:' #1.mp3", "libmp3lame"}, {"d.m4a", "aac"}};
    for (const auto& [name, codec] : cases) {
        const QUrl file =
            encoded(QString::fromUtf8(name).replace(QStringLiteral("%d"), QStringLiteral("5")),
                    words("-f lavfi -i aevalsrc=0.5*sin(2*PI*440*t)|0.5*sin(2*PI*440*t):d=3 -c:a") + words(codec));
        const std::vector<float> samples = decode(file, realDecoder(), {.sampleRate = 22050});
        EXPECT_NEAR(double(samples.size()), 3 * 22050, 0.1 * 22050) << name;
        EXPECT_NEAR(strengthOf(440, samples, 22050), 0.5 * M_SQRT2, 0.05) << name;
    }
}

TEST_F(AudioPCMDecoderTest, OnlyTheFirstOfSeveralStreamsCounts)
{
    const QUrl file = encoded(QStringLiteral("two.mka"), words("-f lavfi -i sine=300:duration=1 -f lavfi -i "
                                                               "sine=1000:duration=2 -map 0 -map 1 -c:a flac"));
    const std::vector<float> samples = decode(file, realDecoder());
    EXPECT_EQ(samples.size(), 11025U);
    EXPECT_GT(strengthOf(300, samples, 11025), 0.05);
    EXPECT_LT(strengthOf(1000, samples, 11025), 0.001);
}

TEST_F(AudioPCMDecoderTest, TheLongestDurationIsRoundedUp)
{
    const QUrl file = encoded(QStringLiteral("long.wav"), words("-f lavfi -i sine=300:duration=5"));
    EXPECT_EQ(decode(file, realDecoder(), {.sampleRate = 8000, .maximumDuration = 1.5}).size(), 16000U);
}

TEST_F(AudioPCMDecoderTest, BrokenFilesGiveWhatTheyCanOrTheirError)
{
    const QUrl silentPicture =
        encoded(QStringLiteral("picture.mkv"), words("-f lavfi -i color=size=64x64:duration=1 -c:v mpeg4"));
    EXPECT_EQ(errorOf(silentPicture, realDecoder()), QStringLiteral("decodingFailed"));
    EXPECT_EQ(errorOf(QUrl::fromLocalFile(path(QStringLiteral("missing.mp3"))), realDecoder()),
              QStringLiteral("decodingFailed"));

    const QUrl cut = encoded(QStringLiteral("cut.mp3"), words("-f lavfi -i sine=300:duration=10 -b:a 128k"));
    QFile file(cut.toLocalFile());
    ASSERT_TRUE(file.resize(file.size() / 2 + 7));
    EXPECT_NEAR(double(decode(cut, realDecoder()).size()) / 11025, 5, 0.5);
}

TEST_F(AudioPCMDecoderTest, TheDecoderIsToldExactlyThis)
{
    const double infinite = std::numeric_limits<double>::infinity();
    const struct {
        std::optional<double> maximumDuration;
        const char* limit;
    } cases[] = {{std::nullopt, ""},   {0.0, ""},
                 {-3.0, ""},           {infinite, ""},
                 {132.0, "-t\n132\n"}, {132.5, "-t\n133\n"},
                 {0.001, "-t\n1\n"},   {1e6, "-t\n1000000\n"}};
    const QUrl decoder = script(QStringLiteral("printf '%s\\n' \"$@\" > arguments; printf 1234 > \"$out\""));
    for (const auto& [maximumDuration, limit] : cases) {
        decode(anyFile, decoder, {.sampleRate = 22050, .maximumDuration = maximumDuration});
        const QByteArray told = contents(QStringLiteral("arguments"));
        const qsizetype outputAt = told.lastIndexOf('\n', -2) + 1;
        EXPECT_EQ(told.first(outputAt).toStdString(),
                  "-nostdin\n-y\n-v\nerror\n-threads\n1\n-filter_threads\n1\n-fflags\n+discardcorrupt\n-err_detect\n"
                  "ignore_err\n-i\n/music/a.mp3\n-map\n0:a:0\n-vn\n-sn\n-dn\n" +
                      std::string(limit) + "-ac\n1\n-ar\n22050\n-f\nf32le\n");
        const QFileInfo output(QString::fromUtf8(told.sliced(outputAt).trimmed()));
        EXPECT_EQ(output.path(), path(QStringLiteral("temporary")));
        EXPECT_TRUE(TemporarySweep::decoderOutput().matches(output.fileName())) << qPrintable(output.fileName());
    }
}

TEST_F(AudioPCMDecoderTest, LowImpactGivesWay)
{
    const QUrl decoder = script(QStringLiteral("cut -d' ' -f19 /proc/self/stat > nice; printf 1234 > \"$out\""));
    decode(anyFile, decoder, {.lowImpact = true});
    const int low = contents(QStringLiteral("nice")).trimmed().toInt();
    decode(anyFile, decoder, {.lowImpact = false});
    const int usual = contents(QStringLiteral("nice")).trimmed().toInt();
    EXPECT_GT(low, usual);
    EXPECT_GT(usual, 0);
    EXPECT_LT(low, 19) << "starves on a busy computer";
}

TEST_F(AudioPCMDecoderTest, TheOutputDecidesWhatComesBack)
{
    const struct {
        const char* body;
        const char* result;
    } cases[] = {
        {"exit 0", "emptyAudio"},
        {": > \"$out\"", "emptyAudio"},
        {"printf 123 > \"$out\"", "emptyAudio"},
        {"printf '\\000\\000\\200\\077abc' > \"$out\"", "samples"},
        {"printf 1234 > \"$out\"; exit 1", "decodingFailed"},
        {"printf 1234 > \"$out\"; kill -SEGV $$", "decodingFailed"},
        {"yes noise | head -c 1000000; yes noise | head -c 1000000 >&2; printf 1234 > \"$out\"", "samples"},
        {"read line && exit 1; printf 1234 > \"$out\"", "samples"},
    };
    for (const auto& [body, result] : cases)
        EXPECT_EQ(errorOf(anyFile, script(QString::fromLatin1(body))), QLatin1StringView(result)) << body;

    const QUrl sevenBytes = script(QStringLiteral("printf '\\000\\000\\200\\077abc' > \"$out\""));
    EXPECT_EQ(decode(anyFile, sevenBytes), std::vector<float>{1.0F});
}

TEST_F(AudioPCMDecoderTest, SystemErrorsComeThroughAsTheyAre)
{
    EXPECT_THROW(decode(anyFile, QUrl::fromLocalFile(path(QStringLiteral("no decoder")))), std::system_error);
    EXPECT_THROW(decode(anyFile, script(QStringLiteral("rm \"$out\""))), std::system_error);
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/proc"); // takes no files from anybody
    EXPECT_THROW(decode(anyFile, script(QStringLiteral("exit 0"))), std::system_error);
    qputenv("TMPDIR", before);
}

TEST_F(AudioPCMDecoderTest, WhatAKilledProgramLeftIsSweptButNoRunningDecode)
{
    const QString orphan = path(QStringLiteral("temporary/velmora-bpm-0F8FAD5B-D9CB-469F-A165-70867728950E.pcm"));
    QFile file(orphan);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
    // Sweeps while a decoder runs whose file looks just as old.
    int swept = 0;
    WorkerClock clock = WorkerClock::system();
    clock.sleep = [&](async::Duration) {
        if (QFile::exists(path(QStringLiteral("written"))) && !QFile::exists(path(QStringLiteral("go on")))) {
            swept += TemporarySweep::removeStale();
            QFile goOn(path(QStringLiteral("go on")));
            EXPECT_TRUE(goOn.open(QIODevice::WriteOnly));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    };
    const QUrl decoder =
        script(QStringLiteral("printf 1234 > \"$out\"; touch -d '2 minutes ago' \"$out\"; : > written\n"
                              "while ! [ -e 'go on' ]; do sleep 0.01; done"));
    EXPECT_EQ(decode(anyFile, decoder, {.clock = clock}).size(), 1U);
    EXPECT_EQ(swept, 1);
    EXPECT_FALSE(QFile::exists(orphan));
}

TEST(DecoderError, SpeaksTheLanguageOfTheProgram)
{
    using AudioPCMDecoder::DecoderError;
    const DecoderError error(DecoderError::Case::FFmpegUnavailable);
    VelmoraLocalization::setLanguage(AppLanguage::English);
    EXPECT_EQ(error.message(), QStringLiteral("The built-in audio decoder was not found."));
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    EXPECT_EQ(error.message(), QStringLiteral("Не найден встроенный аудиодекодер."));
}
