#pragma once

#include "core/library/results/TempoTables.h"
#include "core/model/MusicalKey.h"
#include "core/model/Track.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>

#include <optional>

/// All that outlives the program of a workspace, as the session file holds it. A value. Of the tracks only id, URL,
/// tags and the three memberships are kept.
struct SessionRecord {
    QList<Track> tracks; ///< in list order
    /// The focus of the section that was shown, and its selection.
    std::optional<TrackID> selectedID;
    QSet<TrackID> selectedIDs;
    QString activeTab; ///< raw value of a section, perhaps one that this version does not know
    /// By raw value of the section; nothing in files of older versions.
    std::optional<QHash<QString, QSet<TrackID>>> tabSelectionIDs;
    std::optional<QHash<QString, TrackID>> tabFocusedIDs; ///< sections that have a focus alone
    std::optional<TrackID> resumeTrackID;                 ///< the player's track, else the focused one
    QList<QUrl> conversionURLs;
    QList<Track> analysisTracks;
    QList<Track> keyAnalysisTracks;
    QHash<TrackID, MusicalKeyAnalysis> musicalKeyAnalyses;
    QList<QUrl> duplicateRoots;
    QList<Track> duplicateTracks;
    TempoTables tempo;
    std::optional<double> playlistScrollOffset; ///< points
};
