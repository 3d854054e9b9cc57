#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <vector>

/// Which of many files are still there, asked of all volumes at the same time. A volume that does not answer delays
/// no other one, and the whole by its patience alone.
namespace FilePresence {

/// How long a volume may be silent before it is left alone. Chosen: a sleeping disk spins up within it, hardly.
inline constexpr std::chrono::milliseconds kPatience{3000};

/// Whether one file is there; asked on threads of its own, may block for ever. \param path as the file system has it.
using Probe = std::function<bool(const QByteArray& path)>;

/// \param patience time without one answer after which the rest of a volume counts as present.
/// \return for each URL whether its file is there, or may be: a file that cannot be asked for counts as present.
/// Thread: a worker; blocks. Threads that wait for a silent volume go on by themselves and refer to nothing but the
/// probe.
std::vector<bool> check(const QList<QUrl>& urls, std::chrono::milliseconds patience = kPatience,
                        const Probe& probe = {});

/// The mount point that holds a path, from the longest of the known ones.
/// \param mounts mount points without a slash at the end, the root being empty.
QByteArray volumeOf(const QByteArray& path, const QList<QByteArray>& mounts);

} // namespace FilePresence
