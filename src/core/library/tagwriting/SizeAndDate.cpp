#include "core/library/tagwriting/SizeAndDate.h"

#include "platform/files/FileCalls.h"

#include <QFile>

#include <cmath>

namespace {

constexpr qint64 kReferenceDate = 978'307'200; // 2001-01-01 00:00:00 UTC in seconds since 1970
constexpr double kDateTolerance = 0.001;       // seconds; file systems round the digits of a date

} // namespace

std::optional<SizeAndDate> SizeAndDate::of(const QUrl& url)
{
    struct statx facts;
    if (FileCalls::current().facts(QFile::encodeName(url.toLocalFile()), 0, &facts) != 0)
        return std::nullopt;
    const double seconds = static_cast<double>(facts.stx_mtime.tv_sec - kReferenceDate);
    return SizeAndDate{static_cast<qint64>(facts.stx_size), seconds + facts.stx_mtime.tv_nsec / 1e9};
}

bool SizeAndDate::isSameFile(const SizeAndDate& other) const
{
    return byteCount == other.byteCount && std::abs(modificationDate - other.modificationDate) < kDateTolerance;
}
