#pragma once

#include "WaveformScrubber/WaveformCache.h"
#include "async/TaskSlot.h"

#include <QList>
#include <QSet>
#include <QUrl>

#include <functional>
#include <optional>
#include <unordered_set>

/// Fills the cache ahead of the eye, one file at a time and without disturbing what plays: during playback only the
/// present file and the next two are prepared. Thread: main; outlived by clock and cache.
class WaveformPreloadQueue {
public:
    WaveformPreloadQueue(async::Clock& clock, WaveformCache& cache);

    /// Appends files, each once.
    void enqueue(const QList<QUrl>& urls);
    /// The player began or ended playing. A beginning takes the work of a moment back that is for another file than
    /// \p currentURL, to the front of the queue; after an end the work begins 0.6 s later, so that a short pause starts
    /// nothing.
    void setPlaybackActive(bool active, const std::optional<QUrl>& currentURL);
    /// Puts the file that plays and the first two that follow to the front and lets them be prepared during playback.
    void prioritizePlayback(const std::optional<QUrl>& currentURL, const QList<QUrl>& followingURLs);

    /// Called when the envelope of a file has come into the cache, so that its row can be painted anew.
    void setPreloadedHandler(std::function<void(const QUrl&)> handler) { m_preloaded = std::move(handler); }
    /// Files that wait.
    qsizetype pendingCount() const { return m_pending.size(); }

private:
    /// Not noexcept, so that the set keeps the hashes: growing by 100,000 files else hashes them all in one go.
    struct URLHash {
        size_t operator()(const QUrl& url) const { return qHash(url); }
    };

    void startAvailableWork();
    std::optional<QUrl> takeNext();
    void takeOut(const QUrl& url);
    async::Task<> preload(QUrl url, std::stop_token stop);
    async::Task<> resumeLater(std::stop_token stop);

    async::Clock& m_clock;
    WaveformCache& m_cache;
    std::function<void(const QUrl&)> m_preloaded;
    QList<QUrl> m_pending;
    std::unordered_set<QUrl, URLHash> m_queued; ///< members of m_pending
    QSet<QUrl> m_playbackPriority;
    std::optional<QUrl> m_activeURL;
    bool m_playbackActive = false;
    bool m_isStarting = false;
    async::TaskSlot m_resume;
    async::TaskSlot m_active;
};
