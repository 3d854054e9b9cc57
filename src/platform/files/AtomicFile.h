#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// Whole files that are there in their old or their new form and never in between, whenever the process or the machine
/// stops. All paths are absolute. Thread: any; blocks.
namespace AtomicFile {

/// Ending of the file beside the target that is built first. One that a stopped write left behind is written over by
/// the next.
inline constexpr char kUnfinishedEnding[] = ".new";

/// Puts bytes in place of a file: written beside it, synced, renamed, the folder synced. Only this user can read the
/// new file, whatever the old one allowed. Only one write at a time may go to a target.
/// \return 0, or the errno of the step that failed; the target is untouched then
int write(const QByteArray& path, QByteArrayView bytes);

/// The whole of a regular file, links followed; nothing if it cannot be read or is larger than \p limit bytes.
std::optional<QByteArray> read(const QByteArray& path, qint64 limit);

} // namespace AtomicFile
