#include "core/library/tagwriting/AssignmentPlan.h"

namespace AssignmentPlan {

QString fieldName(AssignedField field)
{
    switch (field) {
    case AssignedField::Genre:
        return QStringLiteral("genre");
    case AssignedField::Comment:
        return QStringLiteral("comment");
    case AssignedField::Album:
        return QStringLiteral("album");
    }
    Q_UNREACHABLE();
}

QString AudioTags::*member(AssignedField field)
{
    switch (field) {
    case AssignedField::Genre:
        return &AudioTags::genre;
    case AssignedField::Comment:
        return &AudioTags::comment;
    case AssignedField::Album:
        return &AudioTags::album;
    }
    Q_UNREACHABLE();
}

QSet<TrackID> favorites(const TrackList& tracks, const QSet<TrackID>& ids)
{
    QSet<TrackID> result;
    for (const TrackID& id : ids) {
        const Track* track = tracks.find(id);
        if (track && track->isFavorite())
            result.insert(id);
    }
    return result;
}

AssignedValues presentValues(const TrackList& tracks, const QSet<TrackID>& ids, AssignedField field)
{
    AssignedValues values;
    for (const TrackID& id : ids) {
        if (const Track* track = tracks.find(id))
            values.insert(id, track->tags().*member(field));
    }
    return values;
}

AssignedValues differing(const AssignedValues& present, const QString& value)
{
    AssignedValues values;
    for (auto entry = present.cbegin(); entry != present.cend(); ++entry) {
        if (entry.value() != value)
            values.insert(entry.key(), value);
    }
    return values;
}

QList<Track> withValues(const TrackList& tracks, AssignedField field, const AssignedValues& values,
                        QList<Track>& changed)
{
    QList<Track> rows = tracks.rows();
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        const std::optional<int> row = tracks.indexOf(entry.key());
        if (!row || rows.at(*row).tags().*member(field) == entry.value())
            continue;
        AudioTags tags = rows.at(*row).tags();
        tags.*member(field) = entry.value();
        rows[*row].replaceTags(tags);
        changed.append(rows.at(*row));
    }
    return rows;
}

} // namespace AssignmentPlan
