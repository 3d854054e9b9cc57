#include "core/library/tempo/TempoTables.h"

std::optional<CachedBPMEstimate> CachedBPMEstimate::make(const QUrl& url, const QString& bpm, double confidence)
{
    const std::optional<SizeAndDate> stamp = SizeAndDate::of(url);
    if (!stamp)
        return std::nullopt;
    return CachedBPMEstimate{bpm, confidence, stamp->byteCount, stamp->modificationDate};
}

bool CachedBPMEstimate::matches(const QUrl& url) const
{
    const std::optional<SizeAndDate> stamp = SizeAndDate::of(url);
    return stamp && stamp->isSameFile({byteCount, modificationDate});
}
