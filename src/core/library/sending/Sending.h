#pragma once

#include "core/model/Track.h"

#include <QList>
#include <QSet>

#include <functional>

class StatusLine;
class Workspace;

/// Tracks sent on from one section to another. Thread: main.
class Sending {
public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        /// Reads the tags of rows that joined the analysis list.
        std::function<void(const QList<Track>& tracks)> readForAnalysis;
        /// Starts the quality analysis of rows that joined; may be empty.
        std::function<void(const QSet<TrackID>& ids)> analyzeQuality;
    };

    explicit Sending(Dependencies dependencies);

    /// Appends copies, under ids of their own, of those tracks whose file is not in the analysis list yet.
    void addTracksToAnalysis(const QSet<TrackID>& ids);
    /// Appends queue rows for those tracks whose file is not in the converter's queue yet. \return how many.
    int addTracksToConversion(const QSet<TrackID>& ids);
    /// Appends queue rows for files not queued yet, without a message. \param urls standardized. \return how many.
    int appendToConversion(const QList<QUrl>& urls);

private:
    Dependencies m_dependencies;
};
