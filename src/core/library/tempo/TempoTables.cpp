#include "core/library/tempo/TempoTables.h"

#include "platform/files/FileCalls.h"

#include <QFile>

#include <cmath>

namespace {

constexpr qint64 kReferenceDate = 978'307'200; // 2001-01-01 00:00:00 UTC in seconds since 1970
constexpr double kDateTolerance = 0.001;       // seconds; file systems round the digits of a date

struct FileState {
    qint64 byteCount = 0;
    double modificationDate = 0; ///< seconds since 2001
};

std::optional<FileState> stateOf(const QUrl& url)
{
    struct statx facts;
    if (FileCalls::current().facts(QFile::encodeName(url.toLocalFile()), 0, &facts) != 0)
        return std::nullopt;
    const double seconds = static_cast<double>(facts.stx_mtime.tv_sec - kReferenceDate);
    return FileState{static_cast<qint64>(facts.stx_size), seconds + facts.stx_mtime.tv_nsec / 1e9};
}

} // namespace

std::optional<CachedBPMEstimate> CachedBPMEstimate::make(const QUrl& url, const QString& bpm, double confidence)
{
    const std::optional<FileState> state = stateOf(url);
    if (!state)
        return std::nullopt;
    return CachedBPMEstimate{bpm, confidence, state->byteCount, state->modificationDate};
}

bool CachedBPMEstimate::matches(const QUrl& url) const
{
    const std::optional<FileState> state = stateOf(url);
    return state && state->byteCount == byteCount &&
           std::abs(state->modificationDate - modificationDate) < kDateTolerance;
}
