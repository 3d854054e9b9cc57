#pragma once

#include "WaveformScrubber/WaveformCache.h"
#include "core/library/waveforms/Envelopes.h"

/// The cache of envelopes, as the library has them made ahead. Thread: main; outlived by the cache.
class LibraryEnvelopes final : public Envelopes {
public:
    explicit LibraryEnvelopes(WaveformCache& cache)
        : m_cache(cache)
    {
    }

    /// Computes gently where the cache has nothing.
    async::Task<bool> prepare(QUrl url, std::stop_token stop) override { return load(m_cache, std::move(url), stop); }

private:
    static async::Task<bool> load(WaveformCache& cache, QUrl url, std::stop_token stop)
    {
        co_await cache.samples(url, LowImpact::Yes, stop);
        co_return true;
    }

    WaveformCache& m_cache;
};
