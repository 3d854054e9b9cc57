#include "WaveformScrubber/WaveformPreloadQueue.h"

#include "async/Cancelled.h"

#include <algorithm>

namespace {

constexpr async::Duration kResumeDelay = async::seconds(0.6);
constexpr qsizetype kFollowingCount = 2;

} // namespace

WaveformPreloadQueue::WaveformPreloadQueue(async::Clock& clock, WaveformCache& cache)
    : m_clock(clock)
    , m_cache(cache)
{
}

void WaveformPreloadQueue::enqueue(const QList<QUrl>& urls)
{
    VELMORA_ASSERT_MAIN_THREAD();
    for (const QUrl& url : urls) {
        if (m_queued.contains(url))
            continue;
        m_pending.append(url);
        m_queued.insert(url);
    }
    startAvailableWork();
}

void WaveformPreloadQueue::setPlaybackActive(bool active, const std::optional<QUrl>& currentURL)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_playbackActive = active;
    m_resume.cancel();
    if (!active) {
        m_playbackPriority.clear();
        m_resume.start([this](std::stop_token stop) { return resumeLater(std::move(stop)); });
        return;
    }
    if (m_activeURL && m_activeURL != currentURL) {
        m_active.cancel();
        takeOut(*m_activeURL);
        m_pending.prepend(*m_activeURL);
        m_queued.insert(*m_activeURL);
        m_activeURL.reset();
    }
    startAvailableWork(); // what became urgent within the delay waits for nothing else
}

void WaveformPreloadQueue::prioritizePlayback(const std::optional<QUrl>& currentURL, const QList<QUrl>& followingURLs)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QList<QUrl> urls = followingURLs.first(qMin(kFollowingCount, followingURLs.size()));
    if (currentURL)
        urls.prepend(*currentURL);
    for (const QUrl& url : urls)
        takeOut(url);
    for (auto url = urls.crbegin(); url != urls.crend(); ++url) {
        m_playbackPriority.insert(*url);
        if (m_queued.contains(*url)) // named twice
            continue;
        m_pending.prepend(*url);
        m_queued.insert(*url);
    }
    startAvailableWork();
}

void WaveformPreloadQueue::startAvailableWork()
{
    // Files that fail at once call this again from inside; the outer call goes on, so that many need no deep stack.
    if (m_isStarting)
        return;
    m_isStarting = true;
    while (!m_activeURL && !m_resume.isActive()) {
        m_activeURL = takeNext();
        if (!m_activeURL)
            break;
        m_active.start([this, url = *m_activeURL](std::stop_token stop) { return preload(url, std::move(stop)); });
    }
    m_isStarting = false;
}

std::optional<QUrl> WaveformPreloadQueue::takeNext()
{
    auto next = m_pending.begin();
    if (m_playbackActive) {
        // The queue may be as long as the library, what is urgent never is.
        if (std::ranges::none_of(m_playbackPriority, [this](const QUrl& url) { return m_queued.contains(url); }))
            return std::nullopt;
        next = std::ranges::find_if(m_pending, [this](const QUrl& url) { return m_playbackPriority.contains(url); });
    }
    if (next == m_pending.end())
        return std::nullopt;
    const QUrl url = *next;
    m_pending.erase(next);
    m_queued.erase(url);
    return url;
}

void WaveformPreloadQueue::takeOut(const QUrl& url)
{
    if (m_queued.erase(url) > 0)
        m_pending.removeOne(url);
}

async::Task<> WaveformPreloadQueue::preload(QUrl url, std::stop_token stop)
{
    bool isLoaded = false;
    try {
        co_await m_cache.samples(url, LowImpact::Yes, stop);
        isLoaded = true;
    } catch (const async::Cancelled&) {
        if (stop.stop_requested())
            throw;
        // Somebody else cancelled the loading of this file.
    } catch (const std::exception&) { // no envelope for this file; the cache remembers it for a while
    }
    m_activeURL.reset();
    if (isLoaded && m_preloaded)
        m_preloaded(url);
    startAvailableWork();
}

async::Task<> WaveformPreloadQueue::resumeLater(std::stop_token stop)
{
    co_await m_clock.sleep(kResumeDelay, stop);
    m_resume.cancel(); // over: what comes now may start
    startAvailableWork();
}
