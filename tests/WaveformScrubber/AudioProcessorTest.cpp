#include "WaveformScrubber/decoding/AudioProcessor.h"

#include "WaveformScrubber/decoding/AudioProcessingError.h"
#include "WaveformScrubber/decoding/MonoSamples.h"
#include "WaveformScrubber/decoding/WaveformExecutable.h"
#include "WaveformScrubber/shape/EnvelopeBuilder.h"
#include "async/Cancelled.h"
#include "platform/audio/AudioFileError.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <thread>

namespace {

using Samples = std::vector<float>;

/// Four seconds: 1 s at full level, 1 s silence, 1 s at a quarter, 1 s at a half.
const QString kSteps =
    QStringLiteral("aevalsrc='sin(2*PI*500*t)*(lt(t,1)+0.25*between(t,2,2.9999)+0.5*gte(t,3))':d=4:s=44100");
const QString kHanging = QStringLiteral(": > ready; printf 12345678 > \"$out\"; exec sleep 60");
const QString kStubborn = QStringLiteral("trap '' TERM; : > ready; while :; do sleep 0.02; done");

/// Time that passes only in waits, which take next to no real time and are written down.
struct FastTime {
    async::Duration now = std::chrono::hours(1);
    std::vector<async::Duration> waits;

    WaitClock clock()
    {
        return {.now = [this] { return now; },
                .wait =
                    [this](async::Duration duration, int) {
                        now += duration;
                        waits.push_back(duration);
                        std::this_thread::yield();
                    }};
    }
};

/// Checks after each test that no temporary file and no decoder is left.
class AudioProcessorTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_temporaryFolderBefore = qgetenv("TMPDIR");
        ASSERT_TRUE(QDir().mkdir(path("temporary")));
        qputenv("TMPDIR", QFile::encodeName(path("temporary")));
    }

    void TearDown() override
    {
        EXPECT_TRUE(QDir(path("temporary")).isEmpty());
        const QByteArray id = contents("pid").trimmed();
        if (!id.isEmpty()) {
            EXPECT_FALSE(QFile::exists(QStringLiteral("/proc/") + QString::fromLatin1(id))) << "the decoder is left";
        }
        if (m_temporaryFolderBefore.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_temporaryFolderBefore);
    }

    QString path(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }
    QUrl file(const char* name) const { return QUrl::fromLocalFile(path(name)); }

    QByteArray contents(const char* name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// A decoder: a shell script with the output's path in $out, which leaves its process number in "pid".
    QString script(const QString& body) const
    {
        QFile file(path("decoder"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\nfor out; do :; done\ncd '" + QFile::encodeName(m_folder.path()) + "'\n");
        file.write("echo $$ > pid.new && mv pid.new pid\n" + body.toUtf8() + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }

    QUrl encoded(const char* name, const QString& source, const QStringList& options = {}) const
    {
        const QStringList arguments =
            QStringList{QStringLiteral("-v"),    QStringLiteral("error"), QStringLiteral("-f"),
                        QStringLiteral("lavfi"), QStringLiteral("-i"),    source} +
            options + QStringList{path(name)};
        EXPECT_EQ(QProcess::execute(WaveformExecutable::path().value(), arguments), 0) << name;
        return file(name);
    }

    static AudioProcessor::Surroundings with(std::optional<QString> executable, WaitClock clock = WaitClock::system())
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

    /// Stops the source once the script says that it is ready.
    std::jthread stopWhenReady(std::stop_source& source) const
    {
        return std::jthread([&source, ready = path("ready")](std::stop_token end) {
            while (!QFile::exists(ready) && !end.stop_requested())
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            source.request_stop();
        });
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_temporaryFolderBefore;
};

void expectSteps(const Samples& values, double tolerance, const char* name)
{
    ASSERT_EQ(values.size(), 4096U) << name;
    // The level of each second, bent by the curve: (0.88 r + 0.12 p) to the power of 0.78 with r = p.
    const struct {
        std::size_t at;
        double level;
    } places[] = {{512, 1}, {1536, 0}, {2560, 0.25}, {3584, 0.5}};
    for (const auto& [at, level] : places)
        EXPECT_NEAR(values[at], std::pow(level, 0.78), tolerance) << name << " at " << at;
}

} // namespace

TEST_F(AudioProcessorTest, BothWaysShowTheSameSound)
{
    const QStringList stereo{QStringLiteral("-ac"), QStringLiteral("2")};
    const struct {
        const char* name;
        QStringList options;
        double tolerance; // a bucket is no whole period, and AAC rings at jumps
    } cases[] = {{"a.wav", {}, 0.03}, {"ночь #1 %d.flac", stereo, 0.03}, {"c.mp3", stereo, 0.03}, {"d.m4a", {}, 0.06}};
    for (const auto& [name, options, tolerance] : cases) {
        const QUrl url = encoded(name, kSteps, options);
        expectSteps(AudioProcessor::extractEnvelope(url, 4096, LowImpact::No, {}), tolerance, name);
        expectSteps(AudioProcessor::extractEnvelopeDirectly(url, 4096, LowImpact::No, {}), tolerance, name);
    }
}

TEST_F(AudioProcessorTest, ShortAndSilentFilesHaveTheirValues)
{
    const QUrl silent = encoded("silent.wav", QStringLiteral("anullsrc=r=44100:cl=stereo:d=2"));
    const QUrl shortest = encoded("short.wav", QStringLiteral("aevalsrc=0.5:d=0.01:s=8000"));
    for (const auto& executable : {WaveformExecutable::path(), std::optional<QString>()}) {
        const auto envelopeOf = [&](const QUrl& url) {
            return AudioProcessor::extractEnvelope(url, 4096, LowImpact::No, {}, with(executable));
        };
        EXPECT_EQ(envelopeOf(silent), Samples(4096, 0.0F));
        EXPECT_EQ(envelopeOf(shortest), Samples(4096, 1.0F));
    }
    EXPECT_EQ(AudioProcessor::extractEnvelopeDirectly(silent, 0, LowImpact::No, {}), Samples());
    EXPECT_EQ(AudioProcessor::extractEnvelope(silent, 0, LowImpact::No, {}), Samples());
}

TEST_F(AudioProcessorTest, TheDecoderIsToldExactlyThis)
{
    const QString decoder = script(QStringLiteral("printf '%s\\n' \"$@\" > told; printf 1234 > \"$out\"\n"
                                                  "cut -d' ' -f19 /proc/self/stat > nice"));
    int niceness = 0;
    for (const LowImpact lowImpact : {LowImpact::No, LowImpact::Yes}) {
        EXPECT_EQ(endOf(QUrl::fromLocalFile(QStringLiteral("/music/a.mp3")), with(decoder), lowImpact),
                  QStringLiteral("envelope"));
        const QByteArray told = contents("told");
        const qsizetype outputAt = told.lastIndexOf('\n', -2) + 1;
        EXPECT_EQ(told.first(outputAt).toStdString(),
                  "-nostdin\n-y\n-v\nerror\n-threads\n1\n-filter_threads\n1\n-fflags\n+discardcorrupt\n-err_detect\n"
                  "ignore_err\n-i\n/music/a.mp3\n-map\n0:a:0\n-vn\n-sn\n-dn\n-ac\n1\n-ar\n8000\n-f\nf32le\n");
        const QFileInfo output(QString::fromUtf8(told.sliced(outputAt).trimmed()));
        EXPECT_EQ(output.path(), path("temporary"));
        EXPECT_TRUE(waveformOutputNaming().matches(output.fileName())) << qPrintable(output.fileName());
        EXPECT_GT(contents("nice").trimmed().toInt(), niceness) << "gives way, and more so with low impact";
        niceness = contents("nice").trimmed().toInt();
    }
}

TEST_F(AudioProcessorTest, WholeFloatsOfTheOutputAreTheSamples)
{
    const QString decoder = script(QStringLiteral("printf '\\000\\000\\200\\077\\000\\000\\000\\077abc' > \"$out\""));
    MonoSamples samples =
        decodeMonoSamples({.from = file("a"), .executable = decoder, .sampleRate = 8000}, {}, WaitClock::system());
    EXPECT_TRUE(QDir(path("temporary")).isEmpty()) << "the samples need no name";
    EXPECT_EQ(samples.count(), 2);
    float one = 0;
    EXPECT_EQ(samples.read(std::span(&one, 1)), 1U);
    EXPECT_EQ(one, 1.0F);
    Samples rest(5);
    EXPECT_EQ(samples.read(rest), 1U);
    EXPECT_EQ(rest.front(), 0.5F);
    EXPECT_EQ(samples.read(rest), 0U);
}

TEST_F(AudioProcessorTest, WhatTheProgramCannotDoIsLeftToTheReader)
{
    const QUrl good = encoded("good.wav", kSteps);
    QFile broken(path("broken.mp3"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write(QByteArray(5000, 'x'));
    broken.close();
    const struct {
        const char* name;
        std::optional<QString> body;
    } cases[] = {
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
        EXPECT_EQ(endOf(file("broken.mp3"), surroundings), QStringLiteral("unreadable")) << name;
        EXPECT_EQ(endOf(file("missing.mp3"), surroundings), QStringLiteral("unreadable")) << name;
    }
    EXPECT_EQ(endOf(good, with(path("not there"))), QStringLiteral("envelope"));
    const QByteArray folder = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/proc"); // takes no files from anybody
    EXPECT_EQ(endOf(good, with(WaveformExecutable::path())), QStringLiteral("envelope"));
    qputenv("TMPDIR", folder);
}

TEST_F(AudioProcessorTest, ADecoderThatHangsIsStoppedAtTheLimitAndNotReplaced)
{
    const QUrl good = encoded("good.wav", kSteps);
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
    const QUrl good = encoded("good.wav", kSteps);
    for (const QString& body : {kHanging, kStubborn}) {
        QFile::remove(path("ready"));
        std::stop_source source;
        const QString decoder = script(body);
        QElapsedTimer real;
        real.start();
        const std::jthread stopper = stopWhenReady(source);
        EXPECT_EQ(endOf(good, with(decoder), LowImpact::Yes, source.get_token()), QStringLiteral("cancelled"));
        EXPECT_LT(real.elapsed(), 2000) << qPrintable(body);
    }
    std::stop_source stopped;
    stopped.request_stop();
    QFile::remove(path("pid"));
    EXPECT_EQ(endOf(good, with(script(QString())), LowImpact::No, stopped.get_token()), QStringLiteral("cancelled"));
    EXPECT_FALSE(QFile::exists(path("pid"))) << "nothing is started";
    EXPECT_EQ(endOf(good, with(std::nullopt), LowImpact::No, stopped.get_token()), QStringLiteral("cancelled"));
}

TEST_F(AudioProcessorTest, TheReaderPausesAfterEachBlockWithLowImpact)
{
    const QUrl good = encoded("good.wav", kSteps); // 176,400 frames: 5.4 blocks
    FastTime time;
    AudioProcessor::extractEnvelopeDirectly(good, 4096, LowImpact::No, {}, time.clock());
    EXPECT_EQ(time.waits.size(), 0U);
    AudioProcessor::extractEnvelopeDirectly(good, 4096, LowImpact::Yes, {}, time.clock());
    EXPECT_EQ(time.waits, std::vector<async::Duration>(6, async::seconds(0.001)));
}

TEST_F(AudioProcessorTest, ADecoderThatHasEndedIsNoticedAtOnce)
{
    const QString decoder = script(QStringLiteral("printf 1234 > \"$out\""));
    QElapsedTimer real;
    real.start();
    WaitClock clock = WaitClock::system();
    clock.wait = [wait = clock.wait](async::Duration, int descriptor) { wait(std::chrono::seconds(20), descriptor); };
    EXPECT_EQ(endOf(file("a"), with(decoder, clock)), QStringLiteral("envelope"));
    EXPECT_LT(real.elapsed(), 10000);
}

TEST(WaveformExecutable, IsLookedForInThisOrder)
{
    const WaveformExecutable::Places places{
        .resourceFolders = {QStringLiteral("/app/Resources"), QStringLiteral("/app/../share/velmora")},
        .workingDirectory = QStringLiteral("/work dir"),
        .searchPath = QStringLiteral(":/one::relative:/two/:")};
    const QStringList order{QStringLiteral("/app/Resources/MP3Converter/ffmpeg"),
                            QStringLiteral("/share/velmora/MP3Converter/ffmpeg"),
                            QStringLiteral("/work dir/Sources/Velmora/Resources/MP3Converter/ffmpeg"),
                            QStringLiteral("/opt/homebrew/bin/ffmpeg"),
                            QStringLiteral("/usr/local/bin/ffmpeg"),
                            QStringLiteral("/usr/bin/ffmpeg"),
                            QStringLiteral("/one/ffmpeg"),
                            QStringLiteral("/work dir/relative/ffmpeg"),
                            QStringLiteral("/two/ffmpeg")};
    EXPECT_EQ(WaveformExecutable::candidates(places), order);
    for (qsizetype first = 0; first <= order.size(); ++first) {
        const QStringList present = order.sliced(first);
        const auto found =
            WaveformExecutable::find(places, [&present](const QString& path) { return present.contains(path); });
        EXPECT_EQ(found.value_or(QString()), present.value(0)) << first;
    }
}
