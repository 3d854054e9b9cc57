#include "support/CacheFixture.h"

#include "WaveformScrubber/cache/EnvelopeFile.h"
#include "WaveformScrubber/cache/WaveformCacheError.h"
#include "WaveformScrubber/decoding/AudioProcessingError.h"
#include "async/MainQueue.h"
#include "async/TaskGroup.h"
#include "async/ThreadExecutor.h"
#include "platform/Localization.h"
#include "support/FileTimes.h"
#include "support/Machine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <atomic>

namespace {

const QString kHalf = QStringLiteral("envelope 0.5");
const QString kOne = QStringLiteral("envelope 1");
const QString kUnavailable = QStringLiteral("WaveformCache 2");
const QString kCancelled = QStringLiteral("cancelled");

void failDecoding(const std::stop_token&)
{
    throw AudioProcessingError(AudioProcessingError::Case::DecodingFailed);
}

using WaveformCacheTest = CacheFixture;

} // namespace

TEST_F(WaveformCacheTest, IsComputedOnceThenComesFromMemoryThenFromDisk)
{
    EXPECT_EQ(m_cache->cached(m_url), std::nullopt);
    EXPECT_EQ(answerFor(m_url), kHalf);
    EXPECT_EQ(m_cache->cached(m_url).value()->size(), 4096U);
    EXPECT_EQ(EnvelopeFile::read(entryPath(m_url)), std::vector<float>(4096, 0.5F));

    m_level = 1;
    ASSERT_TRUE(QFile::remove(entryPath(m_url)));
    EXPECT_EQ(answerFor(m_url), kHalf) << "memory needs no entry";
    ASSERT_TRUE(EnvelopeFile::write(entryPath(m_url), std::vector<float>(4096, 0.25F)));
    restart();
    EXPECT_EQ(answerFor(m_url), QStringLiteral("envelope 0.25"));
    EXPECT_TRUE(m_cache->cached(m_url));
    EXPECT_EQ(m_computed, QStringList{QStringLiteral("a.mp3")});
}

TEST_F(WaveformCacheTest, AnEnvelopeGoesAlongWithItsFile)
{
    const struct {
        const char* name;
        bool isComputedFirst, moves, restarts;
    } cases[] = {{"tags.mp3", true, false, false},   {"tags after a restart.mp3", true, false, true},
                 {"moved.mp3", true, true, false},   {"moved after a restart.mp3", true, true, true},
                 {"in work.mp3", false, true, true}, {"in work, rewritten.mp3", false, false, false}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const QString name = QLatin1StringView(each.name);
        const QUrl from = put(name, 100);
        const FileStamp before = FileStamp::of(from).value();
        Answer& answer = ask(from);
        if (each.isComputedFirst) {
            EXPECT_EQ(answerFor(from), kHalf);
        }
        QUrl to = from;
        const auto rewrite = [&] {
            to = put(each.moves ? QStringLiteral("to ") + name : name, 120);
            m_cache->adopt(from, before, to, FileStamp::of(to).value());
        };
        if (each.isComputedFirst) {
            rewrite();
        } else {
            m_during = [&](const std::stop_token&) { rewrite(); };
            m_executor.runAll();
            m_during = {};
        }
        m_executor.runAll();
        EXPECT_EQ(answer.text, kHalf);
        EXPECT_TRUE(m_cache->cached(to));
        if (each.restarts)
            restart();
        m_computed.clear();
        EXPECT_EQ(answerFor(to), kHalf);
        EXPECT_TRUE(m_computed.isEmpty());
    }
}

TEST_F(WaveformCacheTest, AFileThatChangesDuringALookIsNotComputedAgain)
{
    for (const QString& after : {QStringLiteral("a.mp3"), QStringLiteral("b.mp3")}) {
        const QUrl url = put(QStringLiteral("a.mp3"), 100);
        EXPECT_EQ(answerFor(url), kHalf);
        m_computed.clear();
        Answer& answer = ask(url);
        QUrl to;
        async::MainQueue::post([&] { // the worker has seen the file as it was, and its answer comes behind this
            const FileStamp before = FileStamp::of(url).value();
            to = put(after, 120);
            m_cache->adopt(url, before, to, FileStamp::of(to).value());
        });
        ASSERT_TRUE(m_executor.runOne());
        m_executor.runAll();
        EXPECT_EQ(answer.text, kHalf);
        EXPECT_EQ(answerFor(to), kHalf);
        EXPECT_EQ(m_computed, QStringList());
    }
}

TEST_F(WaveformCacheTest, AnEnvelopeOfAnotherStateDoesNotGoAlong)
{
    EXPECT_EQ(answerFor(m_url), kHalf);
    put(QStringLiteral("a.mp3"), 110); // by another program
    const FileStamp before = FileStamp::of(m_url).value();
    put(QStringLiteral("a.mp3"), 120);
    m_cache->adopt(m_url, before, m_url, FileStamp::of(m_url).value());
    m_level = 1;
    EXPECT_EQ(answerFor(m_url), kOne);
}

TEST_F(WaveformCacheTest, AChangedFileGetsItsNewShape)
{
    EXPECT_EQ(answerFor(m_url), kHalf);
    m_level = 1;
    put(QStringLiteral("a.mp3"), 100); // another time
    EXPECT_EQ(storedAnswerFor(m_url), QStringLiteral("nothing"));
    EXPECT_EQ(answerFor(m_url), kOne);
    EXPECT_EQ(answerFor(m_url), kOne);
    EXPECT_EQ(m_computed.size(), 2);

    ASSERT_TRUE(QFile::remove(m_url.toLocalFile()));
    EXPECT_EQ(answerFor(m_url), kOne) << "a file that is gone keeps its shape";
}

TEST_F(WaveformCacheTest, RequestsForOneFileShareOneComputation)
{
    const Answer& first = ask(m_url);
    const Answer& second = ask(m_url, LowImpact::Yes);
    while (m_executor.pendingCount() > 0 && m_executor.jobs().front() == async::Priority::UserInitiated)
        m_executor.runOne();
    EXPECT_EQ(m_executor.jobs(), std::vector{async::Priority::Utility});
    const Answer& late = ask(m_url);
    EXPECT_EQ(first.text + second.text, QString());
    m_executor.runAll();
    EXPECT_EQ(first.text, kHalf);
    EXPECT_EQ(second.text, kHalf);
    EXPECT_EQ(late.text, kHalf);
    EXPECT_EQ(m_computed, QStringList{QStringLiteral("a.mp3")});
}

TEST_F(WaveformCacheTest, LowImpactRunsInTheBackgroundOneAtATime)
{
    const QUrl urls[] = {put(QStringLiteral("a"), 1), put(QStringLiteral("b"), 1)};
    ask(urls[0], LowImpact::Yes);
    ask(urls[1], LowImpact::Yes);
    while (m_executor.jobs().front() == async::Priority::UserInitiated)
        m_executor.runOne();
    EXPECT_EQ(m_executor.jobs(), std::vector{async::Priority::Background});
    // A view that asks meanwhile joins.
    const Answer& view = ask(urls[0]);
    m_executor.runAll();
    EXPECT_EQ(view.text, kHalf);
    EXPECT_EQ(m_computed, (QStringList{QStringLiteral("a low"), QStringLiteral("b low")}));
}

TEST_F(WaveformCacheTest, AfterAFailureTheFileIsLeftAloneForThirtySeconds)
{
    const QUrl broken = put(QStringLiteral("a.mp3"), 100);
    const QUrl missing = file(QStringLiteral("missing.mp3"));
    const QUrl remote(QStringLiteral("https://example.org/a.mp3"));
    m_during = &failDecoding;
    EXPECT_EQ(answerFor(broken), QStringLiteral("decodingFailed"));
    EXPECT_EQ(answerFor(missing), QStringLiteral("no such file"));
    EXPECT_EQ(answerFor(remote), QStringLiteral("no such file"));
    EXPECT_FALSE(QFile::exists(entryPath(broken)));

    m_during = nullptr;
    m_clock.advance(async::seconds(29.999));
    put(QStringLiteral("missing.mp3"), 1);
    for (const QUrl& url : {broken, missing, remote}) {
        const Answer& answer = ask(url);
        async::MainQueue::drain();
        EXPECT_EQ(answer.text, kUnavailable) << "at once, with no look at the disk";
    }
    m_clock.advance(async::seconds(0.001));
    EXPECT_EQ(answerFor(broken), kHalf);
    EXPECT_EQ(answerFor(missing), kHalf);
    EXPECT_EQ(answerFor(remote), QStringLiteral("no such file"));
    EXPECT_EQ(answerFor(remote), kUnavailable);
}

TEST_F(WaveformCacheTest, TheErrorSpeaksTheLanguageOfTheProgram)
{
    const WaveformCacheError error(WaveformCacheError::Case::TemporarilyUnavailable);
    EXPECT_EQ(error.message(), QStringLiteral("Аудиофайл временно недоступен для waveform."));
    VelmoraLocalization::setLanguage(AppLanguage::English);
    EXPECT_EQ(error.message(), QStringLiteral("The audio file is temporarily unavailable for the waveform."));
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
}

TEST_F(WaveformCacheTest, CancelledAndAskedAgainBeginsAnew)
{
    // While the first computation runs, it is cancelled and another one begins; then the first ends with a result.
    const Answer* second = nullptr;
    const Answer& first = ask(m_url);
    m_during = [&](const std::stop_token& stop) {
        m_during = nullptr;
        m_cache->cancelLoading(m_url);
        EXPECT_TRUE(stop.stop_requested());
        m_level = 1;
        second = &ask(m_url);
    };
    EXPECT_TRUE(m_executor.runOne());
    EXPECT_TRUE(m_executor.runOne());
    EXPECT_EQ(first.text, kCancelled);
    EXPECT_EQ(m_cache->cached(m_url), std::nullopt);
    EXPECT_FALSE(QFile::exists(entryPath(m_url)));
    m_executor.runAll();
    EXPECT_EQ(second->text, kOne);
    EXPECT_EQ(m_cache->cached(m_url).value()->front(), 1.0F);
    EXPECT_EQ(EnvelopeFile::read(entryPath(m_url)).value().front(), 1.0F);
}

TEST_F(WaveformCacheTest, CancellingSetsNoRetryDateAndKeepsAnOldOne)
{
    const Answer& cancelled = ask(m_url);
    m_executor.runOne();
    m_cache->cancelLoading(m_url);
    m_executor.runAll();
    EXPECT_EQ(cancelled.text, kCancelled);
    EXPECT_EQ(m_computed, QStringList()) << "it had not begun";

    m_during = &failDecoding;
    EXPECT_EQ(answerFor(m_url), QStringLiteral("decodingFailed"));
    m_cache->cancelLoading(m_url);
    EXPECT_EQ(answerFor(m_url), kUnavailable);
}

TEST_F(WaveformCacheTest, AComputationThatNobodyWaitsForIsCancelled)
{
    Answer& first = ask(m_url);
    Answer& second = ask(m_url);
    m_during = [&](const std::stop_token& stop) {
        first.task.cancel();
        async::MainQueue::drain();
        EXPECT_FALSE(stop.stop_requested()) << "one still waits";
        second.task.cancel();
        async::MainQueue::drain();
        EXPECT_TRUE(stop.stop_requested());
    };
    m_executor.runAll();
    EXPECT_EQ(first.text, kCancelled);
    EXPECT_EQ(second.text, kCancelled);
    m_during = nullptr;
    EXPECT_EQ(answerFor(m_url), kHalf) << "no failure is remembered";
    EXPECT_EQ(m_computed.size(), 2);
}

TEST_F(WaveformCacheTest, TheEndOfTheCacheEndsWhoWaits)
{
    const Answer& computing = ask(m_url);
    m_executor.runOne();
    const Answer& looking = ask(file(QStringLiteral("b")));
    m_during = [this](const std::stop_token& stop) {
        m_cache.reset();
        EXPECT_TRUE(stop.stop_requested());
    };
    // The computation runs first, then the look-up is dropped.
    m_executor.runAll();
    EXPECT_EQ(computing.text, kCancelled);
    EXPECT_EQ(looking.text, kCancelled);
}

TEST_F(WaveformCacheTest, WhatCannotBeSavedIsComputedAllTheSame)
{
    writeFile(folder()); // in the way
    EXPECT_EQ(answerFor(m_url), kHalf);
    EXPECT_EQ(answerFor(m_url), kHalf);
    EXPECT_EQ(m_computed.size(), 1);
    EXPECT_EQ(m_executor.pendingCount(), 0);
}

TEST_F(WaveformCacheTest, StoredNeverComputes)
{
    EXPECT_EQ(storedAnswerFor(m_url), QStringLiteral("nothing"));
    EXPECT_EQ(storedAnswerFor(file(QStringLiteral("missing"))), QStringLiteral("nothing"));
    EXPECT_EQ(m_computed, QStringList());
    answerFor(m_url);
    restart();
    EXPECT_EQ(m_cache->cached(m_url), std::nullopt);
    EXPECT_EQ(storedAnswerFor(m_url), kHalf);
    EXPECT_TRUE(m_cache->cached(m_url));
}

TEST_F(WaveformCacheTest, MemoryHoldsTheLast250)
{
    const QUrl first = put(QStringLiteral("0"), 1);
    answerFor(first);
    const QUrl second = put(QStringLiteral("1"), 1);
    answerFor(second);
    for (int number = 2; number < 251; ++number) {
        answerFor(put(QString::number(number), 1));
        m_cache->cached(first); // in use
    }
    EXPECT_TRUE(m_cache->cached(first));
    EXPECT_FALSE(m_cache->cached(second));
}

TEST_F(WaveformCacheTest, TheFolderIsMeasuredEmptiedAndSweptAtStart)
{
    answerFor(m_url);
    EnvelopeCacheSize size;
    async::TaskSlot slot;
    const auto measure = [&](std::stop_token stop) -> async::Task<> {
        return [](EnvelopeCacheSize* into, async::Task<EnvelopeCacheSize> task) -> async::Task<> {
            *into = co_await task;
        }(&size, m_cache->cacheSize(std::move(stop)));
    };
    slot.start(measure);
    m_executor.runAll();
    EXPECT_EQ(size, (EnvelopeCacheSize{16384, 1}));

    const QString orphan =
        QDir::tempPath() + QStringLiteral("/velmora-waveform-0F8FAD5B-D9CB-469F-A165-70867728950E.pcm");
    writeFile(orphan);
    for (const QString& path : {entryPath(m_url), orphan})
        setModified(path, QDateTime::currentDateTime().addDays(-181));
    restart();
    EXPECT_FALSE(QFile::exists(entryPath(m_url)));
    EXPECT_FALSE(QFile::exists(orphan));

    answerFor(m_url);
    slot.start([this](std::stop_token stop) { return m_cache->emptyCache(std::move(stop)); });
    m_executor.runAll();
    EXPECT_FALSE(QFile::exists(entryPath(m_url)));
    EXPECT_EQ(m_cache->cached(m_url), std::nullopt);
}

TEST_F(WaveformCacheTest, OnRealThreadsManyAskAtOnceAndSomeLeave)
{
    async::ThreadExecutor executor;
    std::atomic<int> computations = 0;
    WaveformCache cache(m_clock, executor, folder(), [&](const QUrl&, LowImpact, const std::stop_token& stop) {
        ++computations;
        return stop.stop_requested() ? std::vector<float>() : std::vector<float>(kEnvelopeSampleCount, 0.5F);
    });
    m_cache.reset();
    int answers = 0;
    const auto count = [](int* answers, async::Task<Envelope> task) -> async::Task<> {
        if ((co_await task)->size() == 4096)
            ++*answers;
    };
    async::TaskGroup group(1000);
    std::deque<async::TaskSlot> leaving(20);
    for (int number = 0; number < 20; ++number) {
        const QUrl url = put(QString::number(number), 1);
        const auto ask = [&answers, &cache, count, url, number](std::stop_token stop) {
            return count(&answers, cache.samples(url, number % 2 ? LowImpact::Yes : LowImpact::No, std::move(stop)));
        };
        for (int times = 0; times < 10; ++times)
            group.add(ask);
        leaving[std::size_t(number)].start(ask);
    }
    for (async::TaskSlot& slot : leaving)
        slot.cancel();
    comesTrue([&] {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return group.count() == 0;
    });
    EXPECT_EQ(answers, 200);
    EXPECT_EQ(computations, 20);
}
