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
        if (!track)
            continue;
        const TagFields unseen =
            (track->isRead() ? TagFieldSet::kNeverRead : TagFieldSet::kAll) & ~track->editedFields();
        const bool changes = fields & (unseen | TagFieldSet::differing(track->tags(), tags));
        if (changes)
            values.insert(id, track->tags());
    }
    return values;
}

QList<Track> notInFile(const TrackList& tracks, const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids)
{
    QList<Track> rows;
    for (const TrackID& id : ids) {
        const Track* track = tracks.find(id);
        const TagFields differing = track ? TagFieldSet::differing(track->tags(), tags) & fields : TagFields();
        if (track && !differing && (track->editedFields() & fields))
            rows.append(*track);
    }
    return rows;
}

TagFields unknownFields(const Track& track, TagFields fields)
{
    const TagFields empty = TagFieldSet::kNeverRead & ~TagFieldSet::filled(track.tags());
    return fields & (track.isRead() ? empty : TagFieldSet::kAll) & ~track.editedFields();
}

QHash<TrackID, TagFields> editedFields(const TrackList& tracks, const TagValues& rows)
{
    QHash<TrackID, TagFields> edited;
    for (auto row = rows.cbegin(); row != rows.cend(); ++row) {
        const Track* track = tracks.find(row.key());
        if (track && track->editedFields())
            edited.insert(row.key(), track->editedFields());
    }
    return edited;
}

QList<Track> withTags(const TrackList& tracks, const TagValues& values, TagFields fields,
                      const QHash<TrackID, TagFields>& noEdits, QList<Track>& changed)
{
    QList<Track> rows = tracks.rows();
    QList<int> places;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        if (const std::optional<int> row = tracks.indexOf(entry.key()))
            places.append(*row);
    }
    std::ranges::sort(places);
    for (const int row : std::as_const(places)) {
        Track& track = rows[row];
        track.edit(*values.constFind(track.id()), fields);
        track.forgetEdits(noEdits.value(track.id()));
        changed.append(track);
    }
    return rows;
}

} // namespace TagEditPlan
