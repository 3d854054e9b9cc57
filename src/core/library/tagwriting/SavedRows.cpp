#include "core/library/tagwriting/SavedRows.h"

namespace SavedRows {

namespace {

/// Another row of the file shows what it holds now; one that was never read learns it by its own read.
void followWrite(Track& track, const SavedRow& saved)
{
    const TagFields taken = saved.writtenFields & ~track.editedFields();
    if (taken && track.isRead())
        track.replaceTags(TagFieldSet::merged(track.tags(), saved.written, taken));
}

/// A row of another list shows what its file holds.
void follow(Track& track, const SavedRow& saved)
{
    followWrite(track, saved);
    if (!saved.restored)
        return;
    if (saved.keepsFields) {
        track.replaceArtwork(saved.restored->artworkData, QImage());
        return;
    }
    track.replaceTags(TagFieldSet::merged(saved.restored->tags, track.tags(), track.editedFields()));
    track.setTagSource(Track::TagSource::Read);
    track.replaceArtwork(saved.restored->artworkData, QImage());
}

/// The row is right and its file is behind it again. Of fields that no read supplies the row knows what was typed.
void editAgain(Track& track, const AudioTags& inFile)
{
    const TagFields differing = TagFieldSet::differing(track.tags(), inFile);
    track.edit(track.tags(), differing & (~TagFieldSet::kNeverRead | TagFieldSet::filled(track.tags())));
}

/// Edits that were there before the tags were put back are given up by that; later ones stay.
void putBack(Track& track, const SavedRow& saved)
{
    const Track::MetadataVersion now = track.metadataVersion();
    if (saved.keepsFields && track.isRead()) {
        editAgain(track, saved.restored->tags);
    } else {
        if (now.tags == saved.versionBefore.tags && !saved.keepsFields)
            track.forgetEdits(TagFieldSet::kAll);
        track.replaceTags(TagFieldSet::merged(saved.restored->tags, track.tags(), track.editedFields()));
        track.setTagSource(Track::TagSource::Read);
    }
    if (now.artwork == saved.versionBefore.artwork)
        track.replaceArtwork(saved.restored->artworkData, QImage());
}

void apply(Track& track, const SavedRow& saved)
{
    if (saved.read && !track.isRead())
        track.apply(*saved.read, saved.url, track.metadataVersion());
    if (saved.restored)
        putBack(track, saved);
    // A fresh stamp even where no picture is shown: a read that began before the write still brings the old one.
    if (saved.losesArtwork)
        track.replaceArtwork(ArtworkData(), QImage());
}

} // namespace

QList<Track> applied(const TrackList& tracks, const QList<SavedRow>& saved)
{
    QList<Track> rows = tracks.rows();
    for (const SavedRow& each : saved) {
        // The row of another list may have been written in place of the one here.
        std::optional<int> place = tracks.indexOf(each.id);
        if (!place)
            place = tracks.indexOfURL(each.url);
        if (!place || !each.changesRow() || std::as_const(rows)[*place].url() != each.url)
            continue;
        Track track = std::as_const(rows)[*place];
        if (track.id() == each.id)
            apply(track, each);
        else
            follow(track, each);
        if (const TagFields settled = each.settled(track)) {
            track.forgetEdits(settled);
            track.replaceTags(track.tags()); // a read that began before the write still brings the old ones
        }
        rows[*place] = std::move(track);
    }
    return rows;
}

} // namespace SavedRows
