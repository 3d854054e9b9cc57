#pragma once

#include <QUrl>

#include <optional>

/// By what a file is told to be the same as before: its size and its date. A value.
struct SizeAndDate {
    qint64 byteCount = 0;
    double modificationDate = 0; ///< seconds since 2001-01-01 00:00:00 UTC

    /// The file as it is now; nothing if it cannot be looked at. Thread: any; blocks.
    static std::optional<SizeAndDate> of(const QUrl& url);
    /// Same size, dates less than 0.001 s apart.
    bool isSameFile(const SizeAndDate& other) const;
};
