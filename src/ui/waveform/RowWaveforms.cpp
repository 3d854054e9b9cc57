#include "ui/waveform/RowWaveforms.h"

#include "WaveformScrubber/shape/Downsampler.h"

namespace {

/// Values that a row keeps: a multiple of what any scale draws, so that 4,096 of them need not be held.
constexpr int kSamples = 480;

Envelope reduced(const Envelope& envelope)
{
    if (!envelope)
        return nullptr;
    return std::make_shared<const std::vector<float>>(
        Downsampler::prepareSamples(*envelope, kSamples, UpsampleStrategy::Smooth));
}

} // namespace

RowWaveforms::RowWaveforms(WaveformCache& cache, QObject* parent)
    : QObject(parent)
    , m_cache(cache)
    , m_entries(kEntries)
{
}

RowWaveforms::~RowWaveforms() = default;

void RowWaveforms::paint(QPainter& painter, const QPoint& place, const QUrl& url, const WaveformPicture::Look& look,
                         double split)
{
    Entry* const entry = find(url);
    if (!entry || !entry->samples)
        return;
    entry->picture.prepare(entry->samples, look);
    entry->picture.paint(painter, place, split);
}

RowWaveforms::Entry* RowWaveforms::find(const QUrl& url)
{
    if (Entry* const entry = m_entries.object(url))
        return entry;
    ask(url); // also for what is in memory: the file may have been changed since
    if (const std::optional<Envelope> envelope = m_cache.cached(url))
        return keep(url, *envelope);
    return nullptr;
}

RowWaveforms::Entry* RowWaveforms::keep(const QUrl& url, const Envelope& envelope)
{
    auto* entry = new Entry{envelope, reduced(envelope), {}};
    m_entries.insert(url, entry);
    return entry;
}

void RowWaveforms::ask(const QUrl& url)
{
    if (url == m_running)
        return;
    std::erase(m_waiting, url);
    if (m_waiting.size() >= kMaxWaiting)
        m_waiting.erase(m_waiting.begin());
    m_waiting.push_back(url);
    startWaiting();
}

void RowWaveforms::keepOnly(const QSet<QUrl>& urls)
{
    std::erase_if(m_waiting, [&](const QUrl& url) { return !urls.contains(url); });
}

/// One at a time: the disk answers them one by one, and what waits here can still be dropped.
void RowWaveforms::startWaiting()
{
    if (!m_running.isEmpty() || m_waiting.empty())
        return;
    m_running = m_waiting.back();
    m_waiting.pop_back();
    m_load.start([this, url = m_running](std::stop_token stop) { return load(url, std::move(stop)); });
}

async::Task<> RowWaveforms::load(QUrl url, std::stop_token stop)
{
    const std::optional<Envelope> envelope = co_await m_cache.stored(url, stop);
    m_running.clear();
    const Entry* const present = m_entries.object(url);
    const bool isPresent = present && present->source.lock() == envelope.value_or(nullptr);
    // What arrived meanwhile is newer than the answer.
    const bool isOutdated = m_outdated.remove(url);
    if (!isOutdated && !isPresent && (envelope || !present))
        keep(url, envelope.value_or(nullptr));
    if (envelope && (isOutdated || !isPresent))
        emit changed(url);
    startWaiting();
}

void RowWaveforms::arrived(const QUrl& url)
{
    if (url == m_running)
        m_outdated.insert(url);
    m_entries.remove(url);
    emit changed(url);
}

void RowWaveforms::emptyCache()
{
    m_emptying.start([this](std::stop_token stop) { return emptyDisk(std::move(stop)); });
}

async::Task<> RowWaveforms::emptyDisk(std::stop_token stop)
{
    co_await m_cache.emptyCache(std::move(stop));
    if (!m_running.isEmpty())
        m_outdated.insert(m_running);
    m_entries.clear();
    emit reset();
}
