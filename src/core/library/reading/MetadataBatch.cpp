#include "core/library/reading/MetadataBatch.h"

namespace MetadataBatch {

namespace {

constexpr qsizetype kManyItems = 400;
constexpr Sizes kFew{50, 50};
constexpr Sizes kMany{40, 250};

} // namespace

Sizes sizes(qsizetype items)
{
    return items >= kManyItems ? kMany : kFew;
}

Applied apply(const TrackList& tracks, const QList<PendingMetadataResult>& results)
{
    Applied applied{tracks.rows(), {}};
    for (const PendingMetadataResult& result : results) {
        const std::optional<int> row = tracks.indexOf(result.id);
        if (!row)
            continue;
        Track track = std::as_const(applied.rows)[*row];
        if (track.apply(result.metadata, result.sourceURL, result.version)) {
            applied.rows[*row] = std::move(track);
            applied.changedIDs.insert(result.id);
        }
    }
    return applied;
}

QSet<TrackID> ids(const QList<PendingMetadataResult>& results)
{
    QSet<TrackID> ids;
    for (const PendingMetadataResult& result : results)
        ids.insert(result.id);
    return ids;
}

QSet<TrackID> withoutTempo(const QList<PendingMetadataResult>& results)
{
    QSet<TrackID> ids;
    for (const PendingMetadataResult& result : results) {
        if (result.metadata.tags.bpm.trimmed().isEmpty())
            ids.insert(result.id);
    }
    return ids;
}

} // namespace MetadataBatch
