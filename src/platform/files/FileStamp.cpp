#include "platform/files/FileStamp.h"

#include "platform/files/FileCalls.h"

#include <QFile>

#include <cmath>

namespace {

constexpr qint64 kReferenceDate = 978'307'200; // 2001-01-01 00:00:00 UTC in seconds since 1970
constexpr double kDateTolerance = 0.001;       // seconds; file systems round the digits of a date

timespec timeOf(const statx_timestamp& stamp)
{
    return {static_cast<time_t>(stamp.tv_sec), static_cast<long>(stamp.tv_nsec)};
}

} // namespace

std::optional<FileStamp> FileStamp::of(const QUrl& url)
{
    struct statx facts;
    if (FileCalls::current().facts(QFile::encodeName(url.toLocalFile()), 0, &facts) != 0)
        return std::nullopt;
    const double seconds = static_cast<double>(facts.stx_mtime.tv_sec - kReferenceDate);
    return FileStamp{.byteCount = static_cast<qint64>(facts.stx_size),
                     .modificationDate = seconds + facts.stx_mtime.tv_nsec / 1e9,
                     .modifiedAt = timeOf(facts.stx_mtime),
                     .changedAt = timeOf(facts.stx_ctime),
                     .inode = facts.stx_ino};
}

bool FileStamp::isSameFile(const FileStamp& other) const
{
    return byteCount == other.byteCount && std::abs(modificationDate - other.modificationDate) < kDateTolerance;
}
