#include "support/CacheFixture.h"

#include "WaveformScrubber/WaveformPreloadQueue.h"
#include "WaveformScrubber/decoding/AudioProcessingError.h"
#include "async/MainQueue.h"

namespace {

class WaveformPreloadQueueTest : public CacheFixture {
protected:
    WaveformPreloadQueueTest()
    {
        for (const char* name : {"a", "b", "c", "d", "e"})
            put(QLatin1StringView(name), 1);
        m_queue->setPreloadedHandler([this](const QUrl& url) { m_preloaded.append(url.fileName()); });
    }
    ~WaveformPreloadQueueTest() override { m_queue.reset(); }

    QList<QUrl> urls(const char* letters) const
    {
        QList<QUrl> list;
        for (const QChar letter : QString::fromLatin1(letters))
            list.append(file(QString(letter)));
        return list;
    }
    std::optional<QUrl> url(char letter) const { return file(QString(QChar::fromLatin1(letter))); }
    /// What was loaded since the last look, once everything that may run has run.
    QString takeLoaded()
    {
        m_executor.runAll();
        return std::exchange(m_preloaded, {}).join(QString());
    }

    QStringList m_preloaded;
    std::unique_ptr<WaveformPreloadQueue> m_queue = std::make_unique<WaveformPreloadQueue>(m_clock, *m_cache);
};

} // namespace

TEST_F(WaveformPreloadQueueTest, LoadsInOrderEachOnceOneAtATime)
{
    m_queue->enqueue(urls("abab"));
    m_queue->enqueue(urls("ca"));
    EXPECT_EQ(m_executor.pendingCount(), 1);
    EXPECT_EQ(m_queue->pendingCount(), 3) << "a is being loaded and waits once more";
    EXPECT_EQ(takeLoaded(), QStringLiteral("abca"));
    EXPECT_EQ(m_computed.join(u','), QStringLiteral("a low,b low,c low"));
}

TEST_F(WaveformPreloadQueueTest, AFileThatFailsHoldsNothingUp)
{
    m_during = [](const std::stop_token&) { throw AudioProcessingError(AudioProcessingError::Case::TimedOut); };
    m_queue->enqueue(urls("ab"));
    m_executor.runAll();
    m_during = nullptr;
    // Both fail at once now; so would thousands, on one stack.
    QList<QUrl> many = urls("abc");
    for (int number = 0; number < 20000; ++number)
        many.insert(1, QUrl(QStringLiteral("x:") + QString::number(number % 2)));
    m_queue->enqueue(many);
    EXPECT_EQ(takeLoaded(), QStringLiteral("c"));
}

TEST_F(WaveformPreloadQueueTest, ALoadingThatSomebodyElseCancelsHoldsNothingUp)
{
    m_queue->enqueue(urls("ab"));
    m_executor.runOne();
    m_cache->cancelLoading(*url('a'));
    EXPECT_EQ(takeLoaded(), QStringLiteral("b"));
}

TEST_F(WaveformPreloadQueueTest, DuringPlaybackOnlyThePresentFileAndTheNextTwo)
{
    m_queue->setPlaybackActive(true, url('b'));
    m_queue->enqueue(urls("abcde"));
    EXPECT_EQ(takeLoaded(), QString());
    m_queue->prioritizePlayback(url('d'), urls("bea"));
    EXPECT_EQ(takeLoaded(), QStringLiteral("dbe"));
    EXPECT_EQ(m_queue->pendingCount(), 2);

    m_queue->setPlaybackActive(false, url('d'));
    EXPECT_EQ(takeLoaded(), QString());
    m_clock.advance(async::seconds(0.599));
    EXPECT_EQ(takeLoaded(), QString());
    m_clock.advance(async::seconds(0.001));
    EXPECT_EQ(takeLoaded(), QStringLiteral("ac"));
}

TEST_F(WaveformPreloadQueueTest, WhatWasUrgentBeforeAPauseIsNoLonger)
{
    m_queue->setPlaybackActive(true, url('a'));
    m_queue->prioritizePlayback(url('a'), urls("bc"));
    m_queue->setPlaybackActive(false, url('a'));
    m_queue->setPlaybackActive(true, url('a'));
    m_executor.runAll();
    EXPECT_EQ(m_preloaded.join(QString()), QStringLiteral("a")) << "only what ran already";
    EXPECT_EQ(m_queue->pendingCount(), 2);
}

TEST_F(WaveformPreloadQueueTest, AShortPauseStartsNothing)
{
    m_queue->setPlaybackActive(true, url('a'));
    m_queue->prioritizePlayback(url('a'), {});
    m_queue->enqueue(urls("bc"));
    m_queue->setPlaybackActive(false, url('a'));
    EXPECT_EQ(takeLoaded(), QStringLiteral("a")) << "what ran goes on, but nothing follows it";
    m_queue->enqueue(urls("d"));
    m_clock.advance(async::seconds(0.5));
    EXPECT_EQ(takeLoaded(), QString());
    m_queue->setPlaybackActive(true, url('a'));
    m_clock.advance(async::seconds(10));
    EXPECT_EQ(takeLoaded(), QString());
    EXPECT_EQ(m_clock.pendingCount(), 0);
}

TEST_F(WaveformPreloadQueueTest, WhatBecomesUrgentBetweenTwoTracksIsPreparedWithTheSecond)
{
    m_queue->setPlaybackActive(true, url('a'));
    m_queue->setPlaybackActive(false, url('a'));
    m_queue->prioritizePlayback(url('b'), urls("cd"));
    EXPECT_EQ(takeLoaded(), QString());
    m_queue->setPlaybackActive(true, url('b'));
    EXPECT_EQ(takeLoaded(), QStringLiteral("bcd"));
}

TEST_F(WaveformPreloadQueueTest, PlaybackTakesBackTheWorkForAnotherFile)
{
    const struct {
        char current;
        const char* duringPlayback;
        const char* afterwards;
    } cases[] = {{'a', "aa", "bc"}, {'c', "c", "ab"}}; // a comes once more, from memory
    for (const auto& [current, duringPlayback, afterwards] : cases) {
        m_queue->enqueue(urls("abc"));
        m_executor.runOne(); // a is about to be computed
        m_queue->setPlaybackActive(true, url(current));
        m_queue->prioritizePlayback(url(current), {});
        EXPECT_EQ(takeLoaded(), QLatin1StringView(duringPlayback)) << current;
        m_queue->setPlaybackActive(false, std::nullopt);
        m_clock.advance(async::seconds(1));
        EXPECT_EQ(takeLoaded(), QLatin1StringView(afterwards)) << current;
        for (const char letter : {'a', 'b', 'c'})
            put(QString(QChar::fromLatin1(letter)), 1);
    }
}

TEST_F(WaveformPreloadQueueTest, AFileIsPutToTheFrontOnceWhereverItStands)
{
    m_queue->setPlaybackActive(true, url('x'));
    m_queue->enqueue(urls("abc"));
    m_queue->prioritizePlayback(url('c'), urls("caz"));
    EXPECT_EQ(takeLoaded(), QStringLiteral("ca"));
    m_queue->prioritizePlayback(std::nullopt, urls("bcd"));
    EXPECT_EQ(takeLoaded(), QStringLiteral("bc"));
}
