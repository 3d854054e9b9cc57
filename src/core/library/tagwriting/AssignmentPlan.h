#pragma once

#include "core/library/workspace/TrackList.h"
#include "core/model/Track.h"

#include <QHash>
#include <QSet>
#include <QString>

/// The tags that are assigned to many tracks at once.
enum class AssignedField { Genre, Comment, Album };

/// A value per track.
using AssignedValues = QHash<TrackID, QString>;

/// What an assignment changes: pure functions of the list.
namespace AssignmentPlan {

/// Name of the field in notifications: "genre", "comment" or "album".
QString fieldName(AssignedField field);
/// The field's place in the tags.
QString AudioTags::*member(AssignedField field);
/// Those of the ids that are favourites.
QSet<TrackID> favorites(const TrackList& tracks, const QSet<TrackID>& ids);
/// The present values.
AssignedValues presentValues(const TrackList& tracks, const QSet<TrackID>& ids, AssignedField field);
/// The tracks of \p present whose value is not \p value, with \p value.
AssignedValues differing(const AssignedValues& present, const QString& value);
/// The list with the values set, each changed track under a fresh stamp of tags. \param changed gets the changed
/// tracks.
QList<Track> withValues(const TrackList& tracks, AssignedField field, const AssignedValues& values,
                        QList<Track>& changed);

} // namespace AssignmentPlan
