#pragma once

#include "core/library/workspace/TrackList.h"
#include "core/model/TagField.h"
#include "core/model/Track.h"

#include <QHash>
#include <QSet>

/// What an edit of several fields changes: pure functions of the list.
namespace TagEditPlan {

/// Whole tags per track.
using TagValues = QHash<TrackID, AudioTags>;

/// The ten fields without white space and line ends around them.
AudioTags trimmed(const AudioTags& tags);
/// The present tags of those of the tracks in which one of the fields changes, or may change in the file: of a row
/// that was never read, and of fields that no read supplies, the file's value is not known.
TagValues valuesBefore(const TrackList& tracks, const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids);
/// Those of the tracks that say what the edit wants already, while their files do not.
QList<Track> notInFile(const TrackList& tracks, const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids);
/// The fields of an edit whose old value the row does not know.
TagFields unknownFields(const Track& track, TagFields fields);
/// What of these rows was edited and has not come to its file.
QHash<TrackID, TagFields> editedFields(const TrackList& tracks, const TagValues& rows);
/// The list with the chosen fields of the values as edits, each changed track under a fresh stamp of tags. \param
/// noEdits fields that do not count as edited then. \param changed gets the changed tracks in the order of the list.
QList<Track> withTags(const TrackList& tracks, const TagValues& values, TagFields fields,
                      const QHash<TrackID, TagFields>& noEdits, QList<Track>& changed);

} // namespace TagEditPlan
