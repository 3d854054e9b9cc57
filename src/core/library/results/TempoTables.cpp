#include "core/library/results/TempoTables.h"

std::optional<CachedBPMEstimate> CachedBPMEstimate::make(const QUrl& url, const QString& bpm, double confidence)
{
    const std::optional<FileStamp> stamp = FileStamp::of(url);
    if (!stamp)
        return std::nullopt;
    return CachedBPMEstimate{bpm, confidence, stamp->byteCount, stamp->modificationDate};
}

bool CachedBPMEstimate::matches(const QUrl& url) const
{
    const std::optional<FileStamp> now = FileStamp::of(url);
    return now && now->isSameFile(stamp());
}

FileStamp CachedBPMEstimate::stamp() const
{
    return {byteCount, modificationDate};
}

void CachedBPMEstimate::setStamp(const FileStamp& stamp)
{
    byteCount = stamp.byteCount;
    modificationDate = stamp.modificationDate;
}
