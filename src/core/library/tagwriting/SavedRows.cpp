#include "core/library/tagwriting/SavedRows.h"

namespace SavedRows {

namespace {

void apply(Track& track, const SavedRow& saved)
{
    if (saved.read && !track.isRead()) {
        track.apply(merged(*saved.read, track.tags(), saved.edited), saved.url, track.metadataVersion());
        track.setTagSource(Track::TagSource::Read);
    }
    if (saved.restored) {
        const Track::MetadataVersion now = track.metadataVersion();
        if (now.tags == saved.versionBefore.tags) {
            track.replaceTags(saved.restored->tags);
            track.setTagSource(Track::TagSource::Read);
        }
        if (now.artwork == saved.versionBefore.artwork)
            track.replaceArtwork(saved.restored->artworkData, QImage());
    }
    // A fresh stamp even where no picture is shown: a read that began before the write still brings the old one.
    if (saved.losesArtwork)
        track.replaceArtwork(ArtworkData(), QImage());
}

} // namespace

LoadedTrackMetadata merged(const LoadedTrackMetadata& read, const AudioTags& rowTags, TagFields edited)
{
    LoadedTrackMetadata result = read;
    result.tags = TagFieldSet::merged(read.tags, rowTags, edited);
    return result;
}

QList<Track> applied(const TrackList& tracks, const QList<SavedRow>& saved)
{
    QList<Track> rows = tracks.rows();
    for (const SavedRow& each : saved) {
        const std::optional<int> place = tracks.indexOf(each.id);
        if (!place || !each.changesRow() || std::as_const(rows)[*place].url() != each.url)
            continue;
        Track track = std::as_const(rows)[*place];
        apply(track, each);
        rows[*place] = std::move(track);
    }
    return rows;
}

} // namespace SavedRows
