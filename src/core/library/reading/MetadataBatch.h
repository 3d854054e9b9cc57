#pragma once

#include "core/library/workspace/TrackList.h"
#include "core/model/LoadedTrackMetadata.h"
#include "core/model/Track.h"

#include <QList>
#include <QSet>

/// One finished read, waiting to be applied.
struct PendingMetadataResult {
    TrackID id;
    QUrl sourceURL;                 ///< at reading time
    Track::MetadataVersion version; ///< at reading time
    LoadedTrackMetadata metadata;
};

/// Batches of reads: pure functions.
namespace MetadataBatch {

/// Sizes of the batches of a load. A small first one fills the screen fast, big later ones keep list updates few.
struct Sizes {
    int first = 0;
    int further = 0;
};
/// \param items rows of the load; 400 and more count as many
Sizes sizes(qsizetype items);

/// What a batch makes of a list.
struct Applied {
    QList<Track> rows;
    QSet<TrackID> changedIDs; ///< empty if nothing changed
};
/// The list with the results taken over by the rule for late results.
Applied apply(const TrackList& tracks, const QList<PendingMetadataResult>& results);

/// The rows that were read.
QSet<TrackID> ids(const QList<PendingMetadataResult>& results);
/// Tracks whose files told no tempo: an empty tag after trimming.
QSet<TrackID> withoutTempo(const QList<PendingMetadataResult>& results);

} // namespace MetadataBatch
