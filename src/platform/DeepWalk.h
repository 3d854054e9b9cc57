#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <functional>
#include <stop_token>

/// The walk through dropped files and folders.
namespace DeepWalk {

/// What a walk met besides the files that it took.
struct Result {
    QList<QUrl> files; ///< standardized, in the order met: per given URL a block
    /// Wanted by name, but no regular file or not nameable in UTF-8. AppleDouble companions are left out without a
    /// word.
    int notTaken = 0;
    /// Folders that could not be opened or read to their end; those that vanished meanwhile are not counted.
    int unreadableFolders = 0;
    QList<QUrl> strayTemporaries; ///< leftovers of interrupted writes (".velmora-" and a UUID), not among the files
};

/// Walks every given URL: a folder deeply, hidden files and folders included, each directory once whatever links lead
/// to it; anything else is kept if \p isWanted accepts its name, whether it exists or not. Symbolic links are followed.
/// FIFOs, sockets and devices are never opened. Nothing throws but Cancelled. Thread: background; polls \p stop at each
/// entry. \param isWanted gets a file name.
Result walk(const QList<QUrl>& urls, const std::function<bool(QStringView)>& isWanted, std::stop_token stop);

} // namespace DeepWalk
