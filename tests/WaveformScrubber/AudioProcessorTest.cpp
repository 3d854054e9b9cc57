#include "WaveformScrubber/decoding/AudioProcessor.h"

#include "WaveformScrubber/decoding/AudioProcessingError.h"
#include "async/Cancelled.h"
#include "platform/audio/AudioFileError.h"
#include "support/DecoderFixture.h"
#include "support/Machine.h"

#include <cmath>

namespace {

using Samples = std::vector<float>;

/// Four seconds: 1 s at full level, 1 s silence, 1 s at a quarter, 1 s at a half.
const QString kSteps =
    QStringLiteral("aevalsrc='sin(2*PI*500*t)*(lt(t,1)+0.25*between(t,2,2.9999)+0.5*gte(t,3))':d=4:s=44100");

class AudioProcessorTest : public DecoderFixture {
protected:
    static AudioProcessor::Surroundings with(std::optional<QUrl> executable, WorkerClock clock = WorkerClock::system())
    {
        return {.findExecutable = [executable] { return executable; }, .clock = std::move(clock)};
    }

    /// What extracting an envelope ends with: "envelope" or the error.
    static QString endOf(const QUrl& url, const AudioProcessor::Surroundings& surroundings,
                         LowImpact lowImpact = LowImpact::No, const std::stop_token& stop = {})
    {
        try {
            AudioProcessor::extractEnvelope(url, 4096, lowImpact, stop, surroundings);
            return QStringLiteral("envelope");
        } catch (const AudioProcessingError& error) {
            return error.caseName();
        } catch (const AudioFileError&) {
            return QStringLiteral("unreadable");
        } catch (const async::Cancelled&) {
            return QStringLiteral("cancelled");
        }
    }
};

void expectSteps(const Samples& values, double tolerance, const char* name)
{
    ASSERT_EQ(values.size(), 4096U) << name;
    // The level of each second, bent by the curve: (0.88 r + 0.12 p) to the power of 0.78 with r = p.
    const std::pair<std::size_t, double> places[] = {{512, 1}, {1536, 0}, {2560, 0.25}, {3584, 0.5}};
    for (const auto& [at, level] : places)
        EXPECT_NEAR(values[at], std::pow(level, 0.78), tolerance) << name << " at " << at;
}

} // namespace

TEST_F(AudioProcessorTest, BothWaysShowTheSameSound)
{
    const QString stereo = QStringLiteral(" -ac 2");
    const struct {
        const char* name;
        QString options;
        double tolerance; // a bucket is no whole period, and AAC rings at jumps
    } cases[] = {{"a.wav", {}, 0.03}, {"ночь #1 %d.flac", stereo, 0.03}, {"c.mp3", stereo, 0.03}, {"d.m4a", {}, 0.06}};
    for (const auto& [name, options, tolerance] : cases) {
        const QUrl url = encoded(QString::fromUtf8(name), kSteps + options);
        expectSteps(AudioProcessor::extractEnvelope(url, 4096, LowImpact::No, {}), tolerance, name);
        expectSteps(AudioProcessor::extractEnvelopeDirectly(url, 4096, LowImpact::No, {}), tolerance, name);
    }
}

TEST_F(AudioProcessorTest, ShortAndSilentFilesHaveTheirValues)
{
    const QUrl silent = encoded(QStringLiteral("silent.wav"), QStringLiteral("anullsrc=r=44100:cl=stereo:d=2"));
    const QUrl shortest = encoded(QStringLiteral("short.wav"), QStringLiteral("aevalsrc=0.5:d=0.01:s=8000"));
    for (const auto& executable : {std::optional(realDecoder()), std::optional<QUrl>()}) {
        const auto envelopeOf = [&](const QUrl& url) {
            return AudioProcessor::extractEnvelope(url, 4096, LowImpact::No, {}, with(executable));
        };
        EXPECT_EQ(envelopeOf(silent), Samples(4096, 0.0F));
        EXPECT_EQ(envelopeOf(shortest), Samples(4096, 1.0F));
    }
    EXPECT_EQ(AudioProcessor::extractEnvelopeDirectly(silent, 0, LowImpact::No, {}), Samples());
    EXPECT_EQ(AudioProcessor::extractEnvelope(silent, 0, LowImpact::No, {}), Samples());
}

TEST_F(AudioProcessorTest, WhatTheProgramCannotDoIsLeftToTheReader)
{
    const QUrl good = encoded(QStringLiteral("good.wav"), kSteps);
    writeFile(path(QStringLiteral("broken.mp3")), QByteArray(5000, 'x'));
    const std::pair<const char*, std::optional<QString>> cases[] = {
        {"no decoder", std::nullopt},
        {"fails", QStringLiteral("printf 1234 > \"$out\"; exit 1")},
        {"killed from outside", QStringLiteral("printf 1234 > \"$out\"; kill -KILL $$")},
        {"gives nothing", QStringLiteral("exit 0")},
        {"gives less than a sample", QStringLiteral("printf 123 > \"$out\"")},
        {"takes its output along", QStringLiteral("rm \"$out\"")},
    };
    for (const auto& [name, body] : cases) {
        const auto surroundings = with(body ? std::optional(script(*body)) : std::nullopt);
        expectSteps(AudioProcessor::extractEnvelope(good, 4096, LowImpact::No, {}, surroundings), 0.03, name);
        EXPECT_EQ(endOf(file(QStringLiteral("broken.mp3")), surroundings), QStringLiteral("unreadable")) << name;
        EXPECT_EQ(endOf(file(QStringLiteral("missing.mp3")), surroundings), QStringLiteral("unreadable")) << name;
    }
    EXPECT_EQ(endOf(good, with(file(QStringLiteral("not there")))), QStringLiteral("envelope"));
    const QByteArray folder = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/proc"); // takes no files from anybody
    EXPECT_EQ(endOf(good, with(realDecoder())), QStringLiteral("envelope"));
    qputenv("TMPDIR", folder);
}

TEST_F(AudioProcessorTest, ADecoderThatHangsIsStoppedAtTheLimitAndNotReplaced)
{
    const QUrl good = encoded(QStringLiteral("good.wav"), kSteps);
    for (const LowImpact lowImpact : {LowImpact::No, LowImpact::Yes}) {
        const bool isLow = lowImpact == LowImpact::Yes;
        FastTime time;
        EXPECT_EQ(endOf(good, with(script(kHanging), time.clock()), lowImpact), QStringLiteral("timedOut"));
        const async::Duration interval = async::seconds(isLow ? 0.05 : 0.02);
        EXPECT_EQ(std::ranges::count(time.waits, interval), async::seconds(isLow ? 180 : 90) / interval);
    }
}

TEST_F(AudioProcessorTest, AStopEndsTheDecoderAndTheReader)
{
    const QUrl good = encoded(QStringLiteral("good.wav"), kSteps);
    std::stop_source source;
    const QUrl decoder = script(QStringLiteral("printf '%s\\n' \"$@\" > told; ") + kHanging);
    {
        const std::jthread stopper = stopWhenReady(source);
        EXPECT_EQ(endOf(good, with(decoder), LowImpact::Yes, source.get_token()), QStringLiteral("cancelled"));
    }
    EXPECT_TRUE(told("velmora-waveform-").ends_with("-dn\n-ac\n1\n-ar\n8000\n-f\nf32le\n"));
    EXPECT_EQ(endOf(good, with(std::nullopt), LowImpact::No, source.get_token()), QStringLiteral("cancelled"));
}

TEST_F(AudioProcessorTest, TheReaderPausesAfterEachBlockWithLowImpact)
{
    const QUrl good = encoded(QStringLiteral("good.wav"), kSteps); // 176,400 frames: 5.4 blocks
    FastTime time;
    AudioProcessor::extractEnvelopeDirectly(good, 4096, LowImpact::No, {}, time.clock());
    EXPECT_EQ(time.waits.size(), 0U);
    AudioProcessor::extractEnvelopeDirectly(good, 4096, LowImpact::Yes, {}, time.clock());
    EXPECT_EQ(time.waits, std::vector<async::Duration>(6, async::seconds(0.001)));
}
