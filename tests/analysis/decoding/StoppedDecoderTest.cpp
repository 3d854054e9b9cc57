#include "support/DecoderFixture.h"

#include "async/Cancelled.h"

#include <QElapsedTimer>
#include <QFile>

#include <memory>
#include <thread>

namespace {

/// Deaf to polite requests. "ready" appears when it is.
const QString kStubborn = QStringLiteral("trap '' TERM; : > ready; while :; do sleep 0.02; done");
const QString kHanging = QStringLiteral(": > ready; printf 12345678 > \"$out\"; exec sleep 60");

/// Time that passes only in sleeps, which take next to no real time and are written down.
struct FastTime {
    async::Duration now = std::chrono::hours(1);
    std::vector<async::Duration> sleeps;

    WorkerClock clock()
    {
        return {.now = [this] { return now; },
                .sleep =
                    [this](async::Duration duration) {
                        now += duration;
                        sleeps.push_back(duration);
                        std::this_thread::yield();
                    }};
    }
};

class StoppedDecoderTest : public DecoderFixture {
protected:
    const QUrl anyFile = QUrl::fromLocalFile(QStringLiteral("/music/a.mp3"));

    /// Stops the source once the script says that it is ready.
    std::jthread stopWhenReady(std::stop_source& source) const
    {
        return std::jthread([&source, ready = path(QStringLiteral("ready"))](std::stop_token end) {
            while (!QFile::exists(ready) && !end.stop_requested())
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            source.request_stop();
        });
    }
};

} // namespace

TEST_F(StoppedDecoderTest, ADecoderThatHangsIsStoppedAtTheDeadline)
{
    for (const bool lowImpact : {false, true}) {
        FastTime time;
        const async::Duration begin = time.now;
        QElapsedTimer real;
        real.start();
        EXPECT_EQ(errorOf(anyFile, script(kHanging),
                          {.lowImpact = lowImpact, .timeout = async::seconds(30), .clock = time.clock()}),
                  QStringLiteral("timedOut"));
        EXPECT_LT(real.elapsed(), 5000);
        const async::Duration interval = async::seconds(lowImpact ? 0.05 : 0.02);
        ASSERT_GE(time.sleeps.size(), 600U);
        EXPECT_EQ(time.sleeps.front(), interval);
        EXPECT_EQ(std::ranges::count(time.sleeps, interval), async::seconds(30) / interval);
        EXPECT_LE(time.now - begin, async::seconds(30 + 0.75));
    }
}

TEST_F(StoppedDecoderTest, CancellingFromAnotherThreadEndsIt)
{
    const struct {
        QString body;
        double atLeast; // seconds
    } cases[] = {{kHanging, 0}, {kStubborn, 0.25}};
    for (const auto& [body, atLeast] : cases) {
        QFile::remove(path(QStringLiteral("ready")));
        std::stop_source source;
        const QUrl decoder = script(body);
        QElapsedTimer real;
        real.start();
        {
            const std::jthread stopper = stopWhenReady(source);
            EXPECT_THROW(decode(anyFile, decoder, {.lowImpact = true, .stop = source.get_token()}), async::Cancelled);
        }
        EXPECT_GE(double(real.elapsed()) / 1000, atLeast) << "killed without being asked: " << qPrintable(body);
        EXPECT_LT(real.elapsed(), 2000) << qPrintable(body);
    }
}

TEST_F(StoppedDecoderTest, AStubbornDecoderIsKilledAtTheDeadlineToo)
{
    const QUrl decoder = script(kStubborn);
    QElapsedTimer real;
    real.start();
    EXPECT_EQ(errorOf(anyFile, decoder, {.timeout = async::seconds(0.2)}), QStringLiteral("timedOut"));
    EXPECT_GE(real.elapsed(), 200);
    EXPECT_LT(real.elapsed(), 2000);
}

TEST_F(StoppedDecoderTest, AStopCountsEvenWhenTheDecoderHasDoneItsWork)
{
    std::stop_source source;
    // The stop comes in the last sleep before the decoder is seen to have ended.
    WorkerClock clock = WorkerClock::system();
    clock.sleep = [this, &source](async::Duration) {
        while (!QFile::exists(path(QStringLiteral("done"))))
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        source.request_stop();
    };
    const QUrl decoder = script(QStringLiteral("sleep 0.1; printf 1234 > \"$out\"; : > done"));
    EXPECT_THROW(decode(anyFile, decoder, {.stop = source.get_token(), .clock = clock}), async::Cancelled);

    QFile::remove(path(QStringLiteral("pid")));
    EXPECT_THROW(decode(anyFile, decoder, {.stop = source.get_token()}), async::Cancelled);
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("pid")))) << "stopped before, so nothing is started";
}

TEST_F(StoppedDecoderTest, DecodersSideBySideDoNotMeet)
{
    // Each prints its rate, so a mixed-up file would show.
    const QUrl decoder = script(QStringLiteral("sleep 0.05; printf '%s' \"$*\" | sed 's/.*-ar \\([0-9]*\\) .*/\\1/' | "
                                               "tr -d '\\n' > \"$out\""));
    std::vector<std::vector<float>> results(4);
    {
        std::vector<std::jthread> threads;
        for (std::size_t index = 0; index < results.size(); ++index) {
            threads.emplace_back(
                [&, index] { results[index] = decode(anyFile, decoder, {.sampleRate = 1000 + int(index)}); });
        }
    }
    for (std::size_t index = 0; index < results.size(); ++index) {
        ASSERT_EQ(results[index].size(), 1U);
        const QByteArray bytes(reinterpret_cast<const char*>(results[index].data()), 4);
        EXPECT_EQ(bytes, QByteArray::number(1000 + int(index)));
    }
}
