#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// What tells one state of a file from another without reading it.
struct FileStamp {
    qint64 byteCount = -1;            ///< -1 where unknown
    std::optional<double> modifiedAt; ///< seconds since 1970

    bool operator==(const FileStamp&) const = default;
};

/// The present stamp of a file; nothing when its attributes cannot be read. Asks the disk, so not for the main thread.
std::optional<FileStamp> fileStamp(const QUrl& url);

/// Under which name an envelope of 4,096 values is on disk: hexadecimal SHA-256 of location, stamp, number of values
/// and format version. On disk, never change without a new format version.
QString envelopeKey(const QUrl& url, const FileStamp& stamp);
