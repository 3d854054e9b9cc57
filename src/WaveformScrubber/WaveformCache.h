#pragma once

#include "WaveformScrubber/cache/EnvelopeFolder.h"
#include "WaveformScrubber/cache/EnvelopeKey.h"
#include "WaveformScrubber/shape/Envelope.h"
#include "async/Clock.h"
#include "async/Lane.h"
#include "async/TaskGroup.h"

#include <QCache>
#include <QHash>
#include <QUrl>

#include <functional>
#include <optional>
#include <stop_token>

/// The one place that envelopes come from. Keeps the last 250 in memory and all on disk, under a key that changes with
/// the file; computes each at most once at a time, however many ask. Per file: nothing known, in memory, on disk,
/// loading, or failed until a moment. Disk and files are looked at on workers only. What still waits when it goes
/// throws Cancelled. Thread: main; outlived by clock and executor.
class WaveformCache {
public:
    /// Computes an envelope of 4,096 values; blocks, on a worker. AudioProcessor::extractEnvelope() but in tests.
    using Extract = std::function<std::vector<float>(const QUrl&, LowImpact, const std::stop_token&)>;

    /// \param folder where envelopes are kept; made when needed. What was not used for 180 days is deleted in the
    /// background, and so is what a killed program's decoders left.
    WaveformCache(async::Clock& clock, async::Executor& executor, const QString& folder);
    WaveformCache(async::Clock& clock, async::Executor& executor, const QString& folder, Extract extract);
    ~WaveformCache();
    WaveformCache(const WaveformCache&) = delete;
    WaveformCache& operator=(const WaveformCache&) = delete;

    /// The envelope of the file as it is now: from memory, from disk, from the computation that is under way, or from a
    /// new one. Who stops waits no longer; a computation without a waiter is cancelled.
    /// \param lowImpact of a new computation; a running one is joined whatever its own is.
    /// Errors: WaveformCacheError; AudioProcessingError and AudioFileError of the computation, after which the file is
    /// not tried again for 30 seconds; async::Cancelled, also by cancelLoading().
    async::Task<Envelope> samples(QUrl url, LowImpact lowImpact, std::stop_token stop);
    /// The same without ever computing: nothing when the envelope is neither in memory nor on disk. Errors: Cancelled.
    async::Task<std::optional<Envelope>> stored(QUrl url, std::stop_token stop);
    /// What memory holds, be it of the file's state before; for painting. Costs one look into a table.
    std::optional<Envelope> cached(const QUrl& url) const;
    /// The file was rewritten or moved, and its sound is the same: its envelope goes along, in memory and on disk. So
    /// does one that is being computed. \param before and \param after of files on disk.
    void adopt(const QUrl& from, const FileStamp& before, const QUrl& to, const FileStamp& after);
    /// Cancels the computation for this file, for all who wait for it. The next samples() begins a new one.
    void cancelLoading(const QUrl& url);

    /// What the kept envelopes take on disk; counted on a worker. Throws Cancelled after a stop.
    async::Task<EnvelopeCacheSize> cacheSize(std::stop_token stop);
    /// Forgets everything, in memory and on disk. Computations go on.
    async::Task<> emptyCache(std::stop_token stop);

private:
    struct Adoption;
    struct Entry;
    struct Loading;
    struct Lookup;
    class Waiter;

    static Lookup lookUp(const QString& folder, const QUrl& url, const std::optional<Entry>& known);
    async::Task<Lookup> findStored(QUrl url, std::stop_token stop);
    std::optional<Envelope> take(const QUrl& url, const Lookup& lookup);
    void keep(const QUrl& url, const std::optional<FileStamp>& stamp, Envelope envelope);
    std::shared_ptr<Loading> join(const QUrl& url, LowImpact lowImpact, const Lookup& lookup);
    async::Task<> load(std::shared_ptr<Loading> loading, LowImpact lowImpact, std::stop_token stop);
    void settle(const Loading& loading);
    bool isRetryPending(const QUrl& url);
    void noteFailure(const QUrl& url);

    async::Clock& m_clock;
    async::Executor& m_executor;
    const QString m_folder;
    const Extract m_extract;
    QCache<QUrl, Entry> m_memory;
    QHash<QUrl, std::shared_ptr<Loading>> m_loading;
    QHash<QUrl, async::Duration> m_retryAt;
    /// Stopped with the cache: the one who asked may have been quicker than its end.
    std::stop_source m_end;
    /// A few hundred microseconds each, and a row on screen waits for it.
    async::Lane m_lookups;
    /// Work ahead, one at a time: a stopped decoder has gone before the next starts.
    async::Lane m_lowImpact;
    async::TaskGroup m_jobs;
};
