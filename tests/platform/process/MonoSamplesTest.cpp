#include "platform/process/MonoSamples.h"

#include "async/Cancelled.h"
#include "support/DecoderFixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cmath>
#include <limits>
#include <system_error>

namespace {

using Samples = std::vector<float>;

const char* const kNames[] = {"decodingFailed", "timedOut", "noSamples"};

/// Strength of one frequency, 1 for a sine at full scale.
double strengthOf(double frequency, const Samples& samples, int sampleRate)
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

class MonoSamplesTest : public DecoderFixture {
protected:
    const QUrl anyFile = QUrl::fromLocalFile(QStringLiteral("/music/a.mp3"));

    static MonoDecoding by(const QUrl& decoder, const QUrl& file, int sampleRate = 11025)
    {
        return {.from = file,
                .executable = decoder,
                .sampleRate = sampleRate,
                .timeout = async::seconds(60),
                .output = {QStringLiteral("velmora-bpm-"), QStringLiteral(".pcm")}};
    }

    static Samples decode(const MonoDecoding& decoding, const std::stop_token& stop = {},
                          const WorkerClock& clock = WorkerClock::system())
    {
        MonoSamples sound = decodeMonoSamples(decoding, stop, clock);
        Samples samples(std::size_t(sound.count()));
        EXPECT_EQ(sound.read(samples), samples.size());
        return samples;
    }

    /// What decoding ends with: "samples" or the error.
    static std::string endOf(const MonoDecoding& decoding, const std::stop_token& stop = {},
                             const WorkerClock& clock = WorkerClock::system())
    {
        try {
            decode(decoding, stop, clock);
            return "samples";
        } catch (const MonoDecodingError& error) {
            return kNames[int(error.which())];
        } catch (const async::Cancelled&) {
            return "cancelled";
        } catch (const std::system_error&) {
            return "system error";
        }
    }
};

} // namespace

TEST_F(MonoSamplesTest, RealFilesOfEveryFormatGiveTheirSound)
{
    // Both channels carry the same, which adds up to the square root of two.
    const std::pair<const char*, const char*> cases[] = {
        {"a.wav", "pcm_s16le"}, {"b %d.flac", "flac"}, {"c д:' #1.mp3", "libmp3lame"}, {"d.m4a", "aac"}};
    for (const auto& [name, codec] : cases) {
        const QString tone = QStringLiteral("aevalsrc=0.5*sin(2*PI*440*t)|0.5*sin(2*PI*440*t):d=3 -c:a ");
        const QUrl url = encoded(QString::fromUtf8(name), tone + QLatin1StringView(codec));
        const Samples samples = decode(by(realDecoder(), url, 22050));
        EXPECT_NEAR(double(samples.size()), 3 * 22050, 0.1 * 22050) << name;
        EXPECT_NEAR(strengthOf(440, samples, 22050), 0.5 * M_SQRT2, 0.05) << name;
    }
    const QUrl two =
        encoded(QStringLiteral("two.mka"),
                QStringLiteral("sine=300:duration=1 -f lavfi -i sine=1000:duration=2 -map 0 -map 1 -c:a flac"));
    const Samples first = decode(by(realDecoder(), two));
    EXPECT_EQ(first.size(), 11025U);
    EXPECT_GT(strengthOf(300, first, 11025), 0.05);
    EXPECT_LT(strengthOf(1000, first, 11025), 0.001) << "only the first of several streams counts";
}

TEST_F(MonoSamplesTest, BrokenFilesGiveWhatTheyCanOrTheirError)
{
    const QUrl silentPicture =
        encoded(QStringLiteral("picture.mkv"), QStringLiteral("color=size=64x64:duration=1 -c:v mpeg4"));
    EXPECT_EQ(endOf(by(realDecoder(), silentPicture)), "decodingFailed");
    EXPECT_EQ(endOf(by(realDecoder(), file(QStringLiteral("missing.mp3")))), "decodingFailed");

    const QUrl cut = encoded(QStringLiteral("cut.mp3"), QStringLiteral("sine=300:duration=10 -b:a 128k"));
    QFile file(cut.toLocalFile());
    ASSERT_TRUE(file.resize(file.size() / 2 + 7));
    EXPECT_NEAR(double(decode(by(realDecoder(), cut)).size()) / 11025, 5, 0.5);
    MonoDecoding limited = by(realDecoder(), cut, 8000);
    limited.maximumDuration = 1.5;
    EXPECT_EQ(decode(limited).size(), 16000U) << "rounded up";
}

TEST_F(MonoSamplesTest, TheDecoderIsToldExactlyThis)
{
    const double infinite = std::numeric_limits<double>::infinity();
    const std::pair<std::optional<double>, const char*> cases[] = {{std::nullopt, ""},   {0.0, ""},
                                                                   {-3.0, ""},           {infinite, ""},
                                                                   {132.0, "-t\n132\n"}, {132.5, "-t\n133\n"},
                                                                   {0.001, "-t\n1\n"},   {1e6, "-t\n1000000\n"}};
    MonoDecoding decoding =
        by(script(QStringLiteral("printf '%s\\n' \"$@\" > told; printf 1234 > \"$out\"")), anyFile, 22050);
    for (const auto& [maximumDuration, limit] : cases) {
        decoding.maximumDuration = maximumDuration;
        decode(decoding);
        EXPECT_EQ(told("velmora-bpm-"),
                  "-nostdin\n-y\n-v\nerror\n-threads\n1\n-filter_threads\n1\n-fflags\n+discardcorrupt\n-err_detect\n"
                  "ignore_err\n-i\n/music/a.mp3\n-map\n0:a:0\n-vn\n-sn\n-dn\n" +
                      std::string(limit) + "-ac\n1\n-ar\n22050\n-f\nf32le\n");
    }
}

TEST_F(MonoSamplesTest, LowImpactGivesWay)
{
    MonoDecoding decoding =
        by(script(QStringLiteral("cut -d' ' -f19 /proc/self/stat > nice; printf 1234 > \"$out\"")), anyFile);
    int niceness[2] = {};
    for (const bool isLowImpact : {false, true}) {
        decoding.isLowImpact = isLowImpact;
        decode(decoding);
        niceness[isLowImpact] = contents(QStringLiteral("nice")).trimmed().toInt();
    }
    EXPECT_GT(niceness[0], 0);
    EXPECT_GT(niceness[1], niceness[0]);
    EXPECT_LT(niceness[1], 19) << "starves on a busy computer";
}

TEST_F(MonoSamplesTest, TheOutputDecidesWhatComesBack)
{
    const std::pair<const char*, const char*> cases[] = {
        {"exit 0", "noSamples"},
        {": > \"$out\"", "noSamples"},
        {"printf 123 > \"$out\"", "noSamples"},
        {"printf 1234 > \"$out\"; exit 1", "decodingFailed"},
        {"printf 1234 > \"$out\"; kill -SEGV $$", "decodingFailed"},
        {"yes noise | head -c 1000000; yes noise | head -c 1000000 >&2; printf 1234 > \"$out\"", "samples"},
        {"read line && exit 1; printf 1234 > \"$out\"", "samples"},
        {"rm \"$out\"", "system error"},
    };
    for (const auto& [body, result] : cases)
        EXPECT_EQ(endOf(by(script(QString::fromLatin1(body)), anyFile)), result) << body;

    MonoSamples samples = decodeMonoSamples(
        by(script(QStringLiteral("printf '\\000\\000\\200\\077\\000\\000\\000\\077abc' > \"$out\"")), anyFile), {});
    EXPECT_TRUE(QDir(path(QStringLiteral("temporary"))).isEmpty()) << "the samples need no name";
    EXPECT_EQ(samples.count(), 2);
    float one = 0;
    EXPECT_EQ(samples.read(std::span(&one, 1)), 1U);
    EXPECT_EQ(one, 1.0F);
    Samples rest(5);
    EXPECT_EQ(samples.read(rest), 1U);
    EXPECT_EQ(rest.front(), 0.5F);
    EXPECT_EQ(samples.read(rest), 0U);

    EXPECT_EQ(endOf(by(file(QStringLiteral("no decoder")), anyFile)), "system error");
    qputenv("TMPDIR", "/proc"); // takes no files from anybody
    EXPECT_EQ(endOf(by(script(QStringLiteral("exit 0")), anyFile)), "system error");
    qputenv("TMPDIR", QFile::encodeName(path(QStringLiteral("temporary"))));
}

TEST_F(MonoSamplesTest, ADecoderThatHangsIsStoppedAtTheDeadline)
{
    MonoDecoding decoding = by(script(kHanging), anyFile);
    for (const bool isLowImpact : {false, true}) {
        FastTime time;
        const async::Duration begin = time.now;
        decoding.isLowImpact = isLowImpact;
        EXPECT_EQ(endOf(decoding, {}, time.clock()), "timedOut");
        const async::Duration interval = async::seconds(isLowImpact ? 0.05 : 0.02);
        EXPECT_EQ(std::ranges::count(time.waits, interval), decoding.timeout / interval);
        EXPECT_LE(time.now - begin, decoding.timeout + async::seconds(0.75));
    }
    decoding = by(script(kStubborn), anyFile);
    decoding.timeout = async::seconds(0.2);
    QElapsedTimer real;
    real.start();
    EXPECT_EQ(endOf(decoding), "timedOut");
    EXPECT_GE(real.elapsed(), 200);
    EXPECT_LT(real.elapsed(), 2000);
}

TEST_F(MonoSamplesTest, AStopFromAnotherThreadEndsIt)
{
    // atLeast: milliseconds
    const std::pair<QString, qint64> cases[] = {{kHanging, 0}, {kStubborn, 250}};
    for (const auto& [body, atLeast] : cases) {
        QFile::remove(path(QStringLiteral("ready")));
        std::stop_source source;
        MonoDecoding decoding = by(script(body), anyFile);
        decoding.isLowImpact = true;
        QElapsedTimer real;
        real.start();
        const std::jthread stopper = stopWhenReady(source);
        EXPECT_EQ(endOf(decoding, source.get_token()), "cancelled");
        EXPECT_GE(real.elapsed(), atLeast) << "killed without being asked: " << qPrintable(body);
        EXPECT_LT(real.elapsed(), 2000) << qPrintable(body);
    }
}

TEST_F(MonoSamplesTest, AStopCountsEvenWhenTheDecoderHasDoneItsWork)
{
    std::stop_source source;
    // The stop comes in the last wait before the decoder is seen to have ended.
    WorkerClock clock = WorkerClock::system();
    clock.wait = [this, &source](async::Duration, int) {
        while (!QFile::exists(path(QStringLiteral("done"))))
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        source.request_stop();
    };
    const MonoDecoding decoding = by(script(QStringLiteral("sleep 0.1; printf 1234 > \"$out\"; : > done")), anyFile);
    EXPECT_EQ(endOf(decoding, source.get_token(), clock), "cancelled");

    QFile::remove(path(QStringLiteral("pid")));
    EXPECT_EQ(endOf(decoding, source.get_token()), "cancelled");
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("pid")))) << "stopped before, so nothing is started";
}

TEST_F(MonoSamplesTest, ADecoderThatHasEndedIsNoticedAtOnce)
{
    QElapsedTimer real;
    real.start();
    WorkerClock clock = WorkerClock::system();
    clock.wait = [wait = clock.wait](async::Duration, int descriptor) { wait(std::chrono::seconds(20), descriptor); };
    EXPECT_EQ(endOf(by(script(QStringLiteral("sleep 0.1; printf 1234 > \"$out\"")), anyFile), {}, clock), "samples");
    EXPECT_LT(real.elapsed(), 10000);
}

TEST_F(MonoSamplesTest, DecodersSideBySideDoNotMeet)
{
    // Each prints its rate, so a mixed-up file would show.
    const QUrl decoder = script(QStringLiteral("sleep 0.05; printf '%s' \"$*\" | sed 's/.*-ar \\([0-9]*\\) .*/\\1/' | "
                                               "tr -d '\\n' > \"$out\""));
    std::vector<Samples> results(4);
    {
        std::vector<std::jthread> threads;
        for (std::size_t index = 0; index < results.size(); ++index)
            threads.emplace_back([&, index] { results[index] = decode(by(decoder, anyFile, 1000 + int(index))); });
    }
    for (std::size_t index = 0; index < results.size(); ++index) {
        ASSERT_EQ(results[index].size(), 1U);
        const QByteArray bytes(reinterpret_cast<const char*>(results[index].data()), 4);
        EXPECT_EQ(bytes, QByteArray::number(1000 + int(index)));
    }
}
