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
    /// What the file held before, if the row had never been read; and what the user edited of the row meanwhile.
    std::optional<LoadedTrackMetadata> read = {};
    TagFields edited = {};
    /// What the file holds after its original tags came back; and the row's stamps when that began.
    std::optional<LoadedTrackMetadata> restored = {};
    Track::MetadataVersion versionBefore = {};
    /// The picture is not in the file any more; and which write took it away.
    bool losesArtwork = false;
    quint64 pictureMark = 0;

    bool changesRow() const { return read || restored || losesArtwork; }
};

/// Rows after writes: pure functions.
namespace SavedRows {

/// What an edited row that was never read comes to be when its file is read after all: the read, with the fields of
/// \p edited as the row has them.
LoadedTrackMetadata merged(const LoadedTrackMetadata& read, const AudioTags& rowTags, TagFields edited);

/// The list with what the writes taught. Restored values are taken only where nobody changed the row meanwhile.
QList<Track> applied(const TrackList& tracks, const QList<SavedRow>& saved);

} // namespace SavedRows
