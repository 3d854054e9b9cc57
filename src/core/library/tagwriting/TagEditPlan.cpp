#include "core/library/tagwriting/TagEditPlan.h"

#include <algorithm>

namespace TagEditPlan {

AudioTags trimmed(const AudioTags& tags)
{
    AudioTags result;
    for (const AudioTags::Field& field : AudioTags::fields())
        result.*field.value = (tags.*field.value).trimmed();
    return result;
}

TagValues valuesBefore(const TrackList& tracks, const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids)
{
    TagValues values;
    for (const TrackID& id : ids) {
        const Track* track = tracks.find(id);
        const bool changes = track && (!track->isRead() || (fields & TagFieldSet::kNeverRead) ||
                                       (TagFieldSet::differing(track->tags(), tags) & fields));
        if (changes)
            values.insert(id, track->tags());
    }
    return values;
}

TagFields unknownFields(const Track& track, TagFields fields, TagFields edited)
{
    const TagFields empty = TagFieldSet::kNeverRead & ~TagFieldSet::filled(track.tags());
    return fields & (track.isRead() ? empty : TagFieldSet::kAll) & ~edited;
}

QList<Track> withTags(const TrackList& tracks, const TagValues& values, TagFields fields, QList<Track>& changed)
{
    QList<Track> rows = tracks.rows();
    QList<int> places;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        if (const std::optional<int> row = tracks.indexOf(entry.key()))
            places.append(*row);
    }
    std::ranges::sort(places);
    for (const int row : std::as_const(places)) {
        const AudioTags& edits = *values.constFind(std::as_const(rows)[row].id());
        rows[row].replaceTags(TagFieldSet::merged(std::as_const(rows)[row].tags(), edits, fields));
        changed.append(std::as_const(rows)[row]);
    }
    return rows;
}

} // namespace TagEditPlan
