#pragma once

#include "platform/files/FileStamp.h"

#include <QString>
#include <QUrl>

/// Under which name an envelope of 4,096 values is on disk: hexadecimal SHA-256 of location, stamp, number of values
/// and format version. On disk, never change without a new format version.
/// \param stamp of a file on disk: its date is taken to the last digit.
QString envelopeKey(const QUrl& url, const FileStamp& stamp);
