#include "ui/waveform/BarEnvelope.h"

#include "async/Cancelled.h"

BarEnvelope::BarEnvelope(async::Clock& clock, WaveformCache& cache, QObject* parent)
    : QObject(parent)
    , m_clock(clock)
    , m_cache(cache)
{
}

BarEnvelope::~BarEnvelope() = default;

void BarEnvelope::setFile(const std::optional<QUrl>& url, Interest interest)
{
    const bool isSame = url == m_url;
    const bool isMoreWanted = interest == Interest::Played && m_interest == Interest::Focused;
    const bool isRetried = m_state == State::Failed && m_clock.now() - m_failedAt >= kRetryDelay;
    m_interest = interest;
    if (isSame && !isRetried && (!isMoreWanted || !url || m_state == State::Ready))
        return;
    m_url = url;
    m_load.cancel();
    if (!url) {
        setState(State::None, nullptr);
        return;
    }
    // What is in memory is shown at once, and replaced if the file was changed since.
    if (const std::optional<Envelope> known = m_cache.cached(*url))
        setState(State::Ready, *known);
    else
        setState(State::Loading, nullptr);
    m_load.start([this, file = *url, interest](std::stop_token stop) { return load(file, interest, std::move(stop)); });
}

async::Task<> BarEnvelope::load(QUrl url, Interest interest, std::stop_token stop)
{
    Envelope envelope;
    try {
        envelope = co_await fetch(url, interest, stop);
    } catch (const async::Cancelled&) {
        if (stop.stop_requested())
            throw;
        // Somebody else cancelled the computation.
    } catch (const std::exception&) { // no envelope: the position can be seen without one
    }
    if (envelope == m_envelope && envelope)
        co_return;
    if (!envelope && m_state == State::Ready)
        co_return; // the former picture is better than none
    m_failedAt = m_clock.now();
    setState(envelope ? State::Ready : State::Failed, envelope);
    if (envelope)
        emit loaded(url);
}

async::Task<Envelope> BarEnvelope::fetch(QUrl url, Interest interest, std::stop_token stop)
{
    if (interest == Interest::Played)
        co_return co_await m_cache.samples(url, LowImpact::No, stop);
    if (const std::optional<Envelope> stored = co_await m_cache.stored(url, stop))
        co_return *stored;
    co_await m_clock.sleep(kRest, stop);
    co_return co_await m_cache.samples(url, LowImpact::Yes, stop);
}

void BarEnvelope::setState(State state, const Envelope& envelope)
{
    if (state == m_state && envelope == m_envelope)
        return;
    m_state = state;
    m_envelope = envelope;
    emit changed();
}
