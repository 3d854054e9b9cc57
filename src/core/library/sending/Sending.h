#pragma once

#include "core/model/Track.h"

#include <QList>
#include <QObject>
#include <QSet>

class MetadataLoads;
class StatusLine;
class Workspace;

/// Tracks sent on from one section to another. Thread: main.
class Sending : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        MetadataLoads& loads;
    };

    explicit Sending(const Dependencies& dependencies);

    /// Appends copies, under ids of their own, of those tracks whose file is not in the analysis list yet, in list
    /// order. The copies are read anew, and the status line says how many came.
    void addTracksToAnalysis(const QSet<TrackID>& ids);
    /// Appends queue rows for those tracks whose file is not in the converter's queue yet, in list order, and says
    /// how many. \return how many.
    int addTracksToConversion(const QSet<TrackID>& ids);
    /// Appends queue rows for files not queued yet, without a message. \param urls standardized. \return how many.
    int appendToConversion(const QList<QUrl>& urls);

Q_SIGNALS:
    /// The quality of rows that joined the analysis list is wanted.
    void qualityWanted(const QSet<TrackID>& ids);

private:
    Dependencies m_dependencies;
};
