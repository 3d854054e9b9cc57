#include "WaveformScrubber/WaveformCache.h"

#include "WaveformScrubber/cache/EnvelopeFile.h"
#include "WaveformScrubber/cache/WaveformCacheError.h"
#include "WaveformScrubber/decoding/AudioProcessor.h"
#include "async/Cancelled.h"
#include "async/Completion.h"

#include <QDir>
#include <QFile>

#include <cstdio>
#include <limits>

#include <unistd.h>

namespace {

constexpr int kMemoryEntries = 250;
constexpr async::Duration kRetryDelay = async::seconds(30);
constexpr qsizetype kManyFailures = 256; // from here on those that are over are forgotten
constexpr int kKeptDays = 180;

void sweepAtStart(const QString& folder, const std::stop_token& stop)
{
    EnvelopeFolder::sweep(folder, QDateTime::currentDateTimeUtc().addDays(-kKeptDays), stop);
    OwnedTemporaryFile::removeStale(QDir::tempPath(), AudioProcessor::outputNaming(), AudioProcessor::kLongestTimeout);
}

bool isSame(const std::optional<FileStamp>& left, const std::optional<FileStamp>& right)
{
    return left && right && left->isSameFile(*right);
}

bool isReadable(const QUrl& url)
{
    return url.isLocalFile() && ::access(QFile::encodeName(url.toLocalFile()).constData(), R_OK) == 0;
}

} // namespace

/// What became of a file whose sound is the same.
struct WaveformCache::Adoption {
    QUrl from;
    FileStamp before;
    QUrl to;
    FileStamp after;
};

/// An envelope in memory with the state of the file that it shows.
struct WaveformCache::Entry {
    std::optional<FileStamp> stamp;
    Envelope envelope;
};

/// What a worker found out about a file.
struct WaveformCache::Lookup {
    bool isReadable = false;
    std::optional<FileStamp> stamp;
    QString entryPath;         ///< empty for a file without a key
    Envelope envelope;         ///< what memory or the disk holds; null if nothing
    bool isFromMemory = false; ///< it was in memory when the worker was asked
};

/// One computation. A later one for the same file is another object, which is how a late result is told from a wanted
/// one.
struct WaveformCache::Loading {
    /// How it ended: with an envelope or an error.
    struct Outcome {
        Envelope envelope;
        std::exception_ptr error;
    };

    QUrl url;
    std::optional<FileStamp> stamp;
    QString entryPath;
    QList<Adoption> adoptions = {}; ///< to be made when it has ended
    int waiterCount = 0;
    std::stop_source stop;
    Outcome outcome;
    async::Gate ended;
};

/// Counts one who waits; the last that leaves an unfinished computation cancels it. Touches the computation only.
class WaveformCache::Waiter {
public:
    explicit Waiter(Loading& loading)
        : m_loading(loading)
    {
        ++m_loading.waiterCount;
    }
    ~Waiter()
    {
        if (--m_loading.waiterCount == 0 && !m_loading.ended.isOpen())
            m_loading.stop.request_stop();
    }
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;

private:
    Loading& m_loading;
};

WaveformCache::WaveformCache(async::Clock& clock, async::Executor& executor, const QString& folder)
    : WaveformCache(clock, executor, folder, [](const QUrl& url, LowImpact lowImpact, const std::stop_token& stop) {
        return AudioProcessor::extractEnvelope(url, kEnvelopeSampleCount, lowImpact, stop);
    })
{
}

WaveformCache::WaveformCache(async::Clock& clock, async::Executor& executor, const QString& folder, Extract extract)
    : m_clock(clock)
    , m_executor(executor)
    , m_folder(folder)
    , m_extract(std::move(extract))
    , m_memory(kMemoryEntries)
    , m_lookups(executor, async::Priority::UserInitiated)
    , m_lowImpact(executor, async::Priority::Background)
    , m_jobs(std::numeric_limits<int>::max())
{
    m_jobs.add([&executor, folder](std::stop_token stop) {
        auto sweep = [folder](const std::stop_token& stopped) { sweepAtStart(folder, stopped); };
        return executor.run(async::Priority::Background, std::move(stop), std::move(sweep));
    });
}

WaveformCache::~WaveformCache()
{
    m_end.request_stop();
}

WaveformCache::Lookup WaveformCache::lookUp(const QString& folder, const QUrl& url, const std::optional<Entry>& known)
{
    Lookup lookup;
    lookup.isReadable = isReadable(url);
    if (!lookup.isReadable)
        return lookup;
    lookup.stamp = FileStamp::of(url);
    if (!lookup.stamp)
        return lookup;
    lookup.entryPath = EnvelopeFolder::entryPath(folder, envelopeKey(url, *lookup.stamp));
    if (known && isSame(lookup.stamp, known->stamp)) {
        lookup.envelope = known->envelope;
        lookup.isFromMemory = true;
        return lookup;
    }
    if (auto samples = EnvelopeFile::read(lookup.entryPath))
        lookup.envelope = std::make_shared<const std::vector<float>>(std::move(*samples));
    return lookup;
}

async::Task<WaveformCache::Lookup> WaveformCache::findStored(QUrl url, std::stop_token stop)
{
    const Entry* const entry = m_memory.object(url);
    // Kept at hand: by the time the worker is back the entry may have followed its file, or have gone.
    auto job = [folder = m_folder, url, known = entry ? std::optional(*entry) : std::nullopt](const std::stop_token&) {
        return lookUp(folder, url, known);
    };
    return m_lookups.run(std::move(stop), std::move(job));
}

std::optional<Envelope> WaveformCache::take(const QUrl& url, const Lookup& lookup)
{
    // A file that is gone has nothing that its last shape could differ from.
    if (const Entry* const entry = m_memory.object(url); entry && (!lookup.stamp || isSame(entry->stamp, lookup.stamp)))
        return entry->envelope;
    if (!lookup.envelope)
        return std::nullopt;
    if (!lookup.isFromMemory) // else what stands there now is newer
        keep(url, lookup.stamp, lookup.envelope);
    return lookup.envelope;
}

void WaveformCache::keep(const QUrl& url, const std::optional<FileStamp>& stamp, Envelope envelope)
{
    m_memory.insert(url, new Entry{stamp, std::move(envelope)});
}

async::Task<Envelope> WaveformCache::samples(QUrl url, LowImpact lowImpact, std::stop_token stop)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_memory.contains(url) && isRetryPending(url))
        throw WaveformCacheError(WaveformCacheError::Case::TemporarilyUnavailable);
    const std::stop_token end = m_end.get_token();
    const Lookup lookup = co_await findStored(url, stop);
    if (end.stop_requested())
        throw async::Cancelled();
    if (std::optional<Envelope> envelope = take(url, lookup))
        co_return std::move(*envelope);
    if (isRetryPending(url))
        throw WaveformCacheError(WaveformCacheError::Case::TemporarilyUnavailable);
    if (!lookup.isReadable) {
        noteFailure(url);
        throw WaveformCacheError(WaveformCacheError::Case::FileReadNoSuchFile);
    }
    const std::shared_ptr<Loading> loading = join(url, lowImpact, lookup);
    const Waiter waiter(*loading);
    co_await loading->ended.wait(stop);
    if (loading->outcome.error)
        std::rethrow_exception(loading->outcome.error);
    Envelope envelope = loading->outcome.envelope; // a copy: co_return takes what it is given away from the others
    co_return std::move(envelope);
}

async::Task<std::optional<Envelope>> WaveformCache::stored(QUrl url, std::stop_token stop)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const std::stop_token end = m_end.get_token();
    const Lookup lookup = co_await findStored(url, stop);
    if (end.stop_requested())
        throw async::Cancelled();
    co_return take(url, lookup);
}

std::optional<Envelope> WaveformCache::cached(const QUrl& url) const
{
    VELMORA_ASSERT_MAIN_THREAD();
    const Entry* const entry = m_memory.object(url);
    return entry ? std::optional(entry->envelope) : std::nullopt;
}

void WaveformCache::adopt(const QUrl& from, const FileStamp& before, const QUrl& to, const FileStamp& after)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (const Entry* const entry = m_memory.object(from); entry && isSame(entry->stamp, before)) {
        const Envelope envelope = entry->envelope;
        m_memory.remove(from);
        keep(to, after, envelope);
    }
    // One that follows an earlier change of the same file has its stamp in the last of them.
    const std::shared_ptr<Loading> loading = m_loading.value(from);
    if (loading && isSame(loading->adoptions.isEmpty() ? loading->stamp : loading->adoptions.last().after, before))
        loading->adoptions.append({from, before, to, after});
    const QString source = EnvelopeFolder::entryPath(m_folder, envelopeKey(from, before));
    const QString target = EnvelopeFolder::entryPath(m_folder, envelopeKey(to, after));
    if (source == target)
        return;
    // In one line with the lookups: those that come later find it. An end of the cache does not hold it up.
    m_jobs.add([this, source, target](const std::stop_token&) {
        return m_lookups.run({}, [source, target](const std::stop_token&) {
            std::rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData());
        });
    });
}

void WaveformCache::cancelLoading(const QUrl& url)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (const std::shared_ptr<Loading> loading = m_loading.take(url))
        loading->stop.request_stop();
}

std::shared_ptr<WaveformCache::Loading> WaveformCache::join(const QUrl& url, LowImpact lowImpact, const Lookup& lookup)
{
    const std::shared_ptr<Loading> running = m_loading.value(url);
    if (running && !running->stop.stop_requested())
        return running;
    auto loading = std::make_shared<Loading>();
    loading->url = url;
    loading->stamp = lookup.stamp;
    loading->entryPath = lookup.entryPath;
    m_loading.insert(url, loading);
    m_jobs.add([this, loading, lowImpact](std::stop_token stop) { return load(loading, lowImpact, std::move(stop)); });
    return loading;
}

async::Task<> WaveformCache::load(std::shared_ptr<Loading> loading, LowImpact lowImpact, std::stop_token stop)
{
    const std::stop_callback cacheEnds(stop, [source = loading->stop]() mutable { source.request_stop(); });
    auto job = [extract = m_extract, url = loading->url, path = loading->entryPath,
                lowImpact](const std::stop_token& stopped) -> Envelope {
        auto envelope = std::make_shared<const std::vector<float>>(extract(url, lowImpact, stopped));
        if (!path.isEmpty() && !stopped.stop_requested())
            EnvelopeFile::write(path, *envelope);
        return envelope;
    };
    try {
        auto run = lowImpact == LowImpact::Yes
                       ? m_lowImpact.run(loading->stop.get_token(), std::move(job))
                       : m_executor.run(async::Priority::Utility, loading->stop.get_token(), std::move(job));
        loading->outcome.envelope = co_await run;
    } catch (...) {
        loading->outcome.error = std::current_exception();
    }
    if (!stop.stop_requested()) // else the cache may be gone
        settle(*loading);
    loading->ended.open();
}

void WaveformCache::settle(const Loading& loading)
{
    if (m_loading.value(loading.url).get() != &loading)
        return;
    m_loading.remove(loading.url);
    if (loading.outcome.envelope) {
        m_retryAt.remove(loading.url);
        keep(loading.url, loading.stamp, loading.outcome.envelope);
        for (const Adoption& each : loading.adoptions)
            adopt(each.from, each.before, each.to, each.after);
    } else if (!loading.stop.stop_requested()) {
        noteFailure(loading.url);
    }
}

bool WaveformCache::isRetryPending(const QUrl& url)
{
    const auto found = m_retryAt.constFind(url);
    if (found == m_retryAt.cend())
        return false;
    if (*found > m_clock.now())
        return true;
    m_retryAt.erase(found);
    return false;
}

void WaveformCache::noteFailure(const QUrl& url)
{
    const async::Duration now = m_clock.now();
    if (m_retryAt.size() >= kManyFailures)
        m_retryAt.removeIf([now](const auto& entry) { return entry.value() <= now; });
    m_retryAt.insert(url, now + kRetryDelay);
}

async::Task<EnvelopeCacheSize> WaveformCache::cacheSize(std::stop_token stop)
{
    VELMORA_ASSERT_MAIN_THREAD();
    auto job = [folder = m_folder](const std::stop_token& stopped) { return EnvelopeFolder::size(folder, stopped); };
    return m_executor.run(async::Priority::Utility, std::move(stop), std::move(job));
}

async::Task<> WaveformCache::emptyCache(std::stop_token stop)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_memory.clear();
    auto job = [folder = m_folder](const std::stop_token& stopped) { EnvelopeFolder::empty(folder, stopped); };
    return m_executor.run(async::Priority::Utility, std::move(stop), std::move(job));
}
