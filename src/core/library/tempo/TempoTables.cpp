#include "core/library/tempo/TempoTables.h"

#include "platform/files/FileStamp.h"

std::optional<CachedBPMEstimate> CachedBPMEstimate::make(const QUrl& url, const QString& bpm, double confidence)
{
    const std::optional<FileStamp> stamp = FileStamp::of(url);
    if (!stamp)
        return std::nullopt;
    return CachedBPMEstimate{bpm, confidence, stamp->byteCount, stamp->modificationDate};
}

bool CachedBPMEstimate::matches(const QUrl& url) const
{
    const std::optional<FileStamp> stamp = FileStamp::of(url);
    return stamp && stamp->isSameFile({byteCount, modificationDate});
}
