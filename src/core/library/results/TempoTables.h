#pragma once

#include "core/model/Track.h"
#include "platform/files/FileStamp.h"

#include <QHash>
#include <QString>
#include <QUrl>

#include <optional>

/// A tempo estimate and the state of the file that it was made from.
struct CachedBPMEstimate {
    /// The text shown for the tempo.
    QString bpm;
    /// 0 to 1.
    double confidence = 0;
    qint64 byteCount = 0;
    double modificationDate = 0; ///< seconds since 2001-01-01 00:00:00 UTC

    bool operator==(const CachedBPMEstimate&) const = default;

    /// The estimate for the file as it is now; nothing if it cannot be looked at. Thread: any; blocks.
    static std::optional<CachedBPMEstimate> make(const QUrl& url, const QString& bpm, double confidence);
    /// Whether the file is still the one that was analysed: same size, dates less than 0.001 s apart. Thread: any.
    bool matches(const QUrl& url) const;

    /// The state of the file, by size and date alone.
    FileStamp stamp() const;
    void setStamp(const FileStamp& stamp);
};

/// The tempo tables, by track and by file.
struct TempoTables {
    QHash<TrackID, QString> estimatedBPMByTrackID;
    QHash<TrackID, double> estimatedBPMConfidenceByTrackID;
    QHash<QString, CachedBPMEstimate> estimatedBPMByFile; ///< by standardized path

    bool operator==(const TempoTables&) const = default;
};
