#pragma once

#include "core/library/workspace/TrackList.h"
#include "core/model/LoadedTrackMetadata.h"
#include "core/model/TagField.h"
#include "core/model/Track.h"

#include <QList>

#include <optional>

/// What the write of a file taught about its row.
struct SavedRow {
    TrackID id;
    QUrl url;
    /// What the file held before, if the row had never been read.
    std::optional<LoadedTrackMetadata> read = {};
    /// What the file holds after its tags were put back; and the row's stamps when that began.
    std::optional<LoadedTrackMetadata> restored = {};
    Track::MetadataVersion versionBefore = {};
    /// Of the tags that were put back only the picture was wanted: fields in which the row differs are edits again.
    bool keepsFields = false;
    /// The fields that are in the file now, and what they say.
    TagFields writtenFields = {};
    AudioTags written = {};
    /// The picture is not in the file any more; and which write took it away.
    bool losesArtwork = false;
    quint64 pictureMark = 0;

    /// Whether the row has anything to learn.
    bool changesRow() const { return read || restored || losesArtwork || writtenFields; }
    /// The edited fields of a row of this file that the write brought into it.
    TagFields settled(const Track& row) const
    {
        return row.editedFields() & writtenFields & ~TagFieldSet::differing(row.tags(), written);
    }
};

/// Rows after writes: pure functions.
namespace SavedRows {

/// The list with what the writes taught. A field that the user edited meanwhile stays as it is and stays edited.
QList<Track> applied(const TrackList& tracks, const QList<SavedRow>& saved);

} // namespace SavedRows
