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

TagField tagField(AssignedField field)
{
    switch (field) {
    case AssignedField::Genre:
        return TagField::Genre;
    case AssignedField::Comment:
        return TagField::Comment;
    case AssignedField::Album:
        return TagField::Album;
    }
    Q_UNREACHABLE();
}

QString AudioTags::*member(AssignedField field)
{
    return TagFieldSet::member(tagField(field));
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

} // namespace AssignmentPlan
