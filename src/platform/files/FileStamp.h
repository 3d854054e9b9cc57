#pragma once

#include <QUrl>

#include <optional>

#include <time.h>

/// By what a file is told to be the same as before, without reading it: its size and its date. A value. A stamp that
/// was kept with a result knows these two alone; one of a file on disk knows the rest as well.
struct FileStamp {
    qint64 byteCount = 0;
    double modificationDate = 0; ///< seconds since 2001-01-01 00:00:00 UTC

    timespec modifiedAt = {}; ///< the same date to the last digit, since 1970; zero where it is not known
    timespec changedAt = {};  ///< last change of content, name or owner, since 1970; zero where it is not known
    quint64 inode = 0;        ///< 0 where it is not known

    /// The file as it is now, links followed; nothing if it cannot be looked at. Thread: any; blocks.
    static std::optional<FileStamp> of(const QUrl& url);
    /// Same size, dates less than 0.001 s apart.
    bool isSameFile(const FileStamp& other) const;
};
