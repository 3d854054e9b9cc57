#pragma once

#include <QList>
#include <QStringView>
#include <QUrl>

#include <stop_token>

/// Dropped files and folders turned into the list of files to take in.
namespace AudioFileList {

/// What was met beside the files that are taken.
struct LeftOut {
    int notTaken = 0;         ///< files that were meant but could not be taken
    int strayTemporaries = 0; ///< what interrupted writes left behind
};

/// What a walk gave.
struct Expansion {
    QList<QUrl> files; ///< standardized, in the file manager's order of their paths, each once
    int notTaken = 0;  ///< as in LeftOut
    /// Files that interrupted writes left behind more than an hour ago; never among the files.
    QList<QUrl> strayTemporaries;

    LeftOut leftOut() const { return {notTaken, static_cast<int>(strayTemporaries.size())}; }
};

/// Walks folders and keeps what \p isWanted accepts by name. Thread: background; polls \p stop, throws
/// async::Cancelled.
Expansion expand(const QList<QUrl>& urls, bool (*isWanted)(QStringView name), std::stop_token stop);

/// What the lists of tracks take in.
bool isPlayable(QStringView fileName);
/// What the converter takes in by the file's name: Ogg as well.
bool isConvertible(QStringView fileName);

} // namespace AudioFileList
