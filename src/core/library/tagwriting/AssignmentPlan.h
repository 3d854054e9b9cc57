#pragma once

#include "core/library/workspace/TrackList.h"
#include "core/model/TagField.h"
#include "core/model/Track.h"

#include <QSet>
#include <QString>

/// The tags that are assigned to many tracks at once.
enum class AssignedField { Genre, Comment, Album };

/// What an assignment changes: pure functions of the list.
namespace AssignmentPlan {

/// Name of the field in notifications: "genre", "comment" or "album".
QString fieldName(AssignedField field);
/// The same field among the ten.
TagField tagField(AssignedField field);
/// The field's place in the tags.
QString AudioTags::*member(AssignedField field);
/// Those of the ids that are favourites.
QSet<TrackID> favorites(const TrackList& tracks, const QSet<TrackID>& ids);

} // namespace AssignmentPlan
