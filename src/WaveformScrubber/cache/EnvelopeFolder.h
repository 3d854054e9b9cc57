#pragma once

#include <QDateTime>
#include <QString>

#include <stop_token>

/// How much the kept envelopes take.
struct EnvelopeCacheSize {
    qint64 byteCount = 0;
    int entryCount = 0;

    bool operator==(const EnvelopeCacheSize&) const = default;
};

/// The folder with all kept envelopes: files named by a key and ".waveform", and what is left of unfinished ones. Any
/// other file is left alone. Errors are passed over. Stop: polled at every file. Thread: any but main.
namespace EnvelopeFolder {

/// Where an envelope is kept. \param key as envelopeKey() gave it.
QString entryPath(const QString& folder, const QString& key);
/// Counts complete and unfinished entries.
EnvelopeCacheSize size(const QString& folder, const std::stop_token& stop);
/// Deletes all entries.
void empty(const QString& folder, const std::stop_token& stop);
/// Deletes the entries that were neither read nor marked as used since \p unusedSince.
void sweep(const QString& folder, const QDateTime& unusedSince, const std::stop_token& stop);

} // namespace EnvelopeFolder
