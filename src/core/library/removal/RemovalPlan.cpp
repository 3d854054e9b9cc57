#include "core/library/removal/RemovalPlan.h"

#include <algorithm>

namespace {

using RemovalPlan::Cut;

/// \param removal gives the entry for a row that is to go, nothing for one that stays. The entry may say that the row
/// stays without one of its flags.
template <typename Removal>
Cut cut(const TrackList& tracks, Removal removal)
{
    Cut result;
    result.rows.reserve(tracks.size());
    for (int index = 0; index < tracks.size(); ++index) {
        const Track& track = tracks.at(index);
        std::optional<RemovedTrack> entry = removal(track);
        if (!entry || entry->isStillListed())
            result.rows.append(track);
        if (!entry)
            continue;
        if (entry->removedFromPlaylistOnly)
            result.rows.last().setIsInPlaylist(false);
        if (entry->removedFromCoversOnly)
            result.rows.last().setIsInCoverWorkspace(false);
        entry->track = track;
        entry->originalIndex = index;
        result.removed.append(*std::move(entry));
    }
    return result;
}

/// Gives a row back what the removal took from it. \return whether it differs now.
bool joinSections(Track& track, const RemovedTrack& entry)
{
    const Track& removed = entry.track;
    const bool isWhole = !entry.isStillListed();
    const bool isInPlaylist =
        track.isInPlaylist() || entry.removedFromPlaylistOnly || (isWhole && removed.isInPlaylist());
    const bool isInCovers =
        track.isInCoverWorkspace() || entry.removedFromCoversOnly || (isWhole && removed.isInCoverWorkspace());
    const bool isFavorite = track.isFavorite() || (isWhole && removed.isFavorite());
    if (isInPlaylist == track.isInPlaylist() && isInCovers == track.isInCoverWorkspace() &&
        isFavorite == track.isFavorite())
        return false;
    track.setIsInPlaylist(isInPlaylist);
    track.setIsInCoverWorkspace(isInCovers);
    track.setIsFavorite(isFavorite);
    return true;
}

} // namespace

namespace RemovalPlan {

Cut outOfPlaylist(const TrackList& tracks, const QSet<TrackID>& ids)
{
    return cut(tracks, [&](const Track& track) -> std::optional<RemovedTrack> {
        if (!track.isInPlaylist() || !ids.contains(track.id()))
            return std::nullopt;
        RemovedTrack entry;
        entry.removedFromPlaylistOnly = track.isFavorite();
        return entry;
    });
}

Cut outOfCovers(const TrackList& tracks, const QSet<TrackID>& ids)
{
    return cut(tracks, [&](const Track& track) -> std::optional<RemovedTrack> {
        if (!track.isInCoverWorkspace() || track.isFavorite() || !ids.contains(track.id()))
            return std::nullopt;
        RemovedTrack entry;
        entry.removedFromCoversOnly = track.isInPlaylist();
        return entry;
    });
}

Cut outOfList(List list, const TrackList& tracks, const QSet<TrackID>& ids)
{
    return cut(tracks, [&](const Track& track) -> std::optional<RemovedTrack> {
        if (!ids.contains(track.id()))
            return std::nullopt;
        RemovedTrack entry;
        entry.list = list;
        return entry;
    });
}

Cut withoutFiles(List list, const TrackList& tracks, const QHash<QUrl, TrashedFile>& trashed)
{
    QSet<quint64> hashes; // the rows know theirs: no URL is hashed per row
    for (auto file = trashed.keyBegin(); file != trashed.keyEnd(); ++file)
        hashes.insert(Track::hashOf(*file));
    return cut(tracks, [&](const Track& track) -> std::optional<RemovedTrack> {
        if (!hashes.contains(track.urlHash()))
            return std::nullopt;
        const auto item = trashed.find(track.url());
        if (item == trashed.end())
            return std::nullopt;
        RemovedTrack entry;
        entry.list = list;
        entry.trashed = item->item;
        entry.stamp = item->stamp;
        return entry;
    });
}

QList<RemovedTrack> asOf(QList<RemovedTrack> entries, const std::optional<FileStamp>& now)
{
    for (RemovedTrack& entry : entries) {
        if (now && !entry.isSameFile(*now) && entry.track.isRead())
            entry.track.setTagSource(Track::TagSource::Remembered);
    }
    return entries;
}

Back putBack(const TrackList& tracks, const QList<RemovedTrack>& entries)
{
    QList<Track> present = tracks.rows();
    QList<const RemovedTrack*> missing;
    Back back;
    for (const RemovedTrack& entry : entries) {
        std::optional<int> row = tracks.indexOf(entry.track.id());
        if (!row && !entry.isStillListed())
            row = tracks.indexOfURL(entry.track.url());
        if (row) {
            back.isChanged |= joinSections(present[*row], entry);
            back.ids.append(std::as_const(present)[*row].id());
        } else if (!entry.isStillListed()) {
            missing.append(&entry);
            back.ids.append(entry.track.id());
        }
    }
    back.isChanged |= !missing.isEmpty();
    // The places ascend, so one walk does what inserting one after another would.
    back.rows.reserve(present.size() + missing.size());
    auto next = present.cbegin();
    for (const RemovedTrack* entry : missing) {
        while (next != present.cend() && back.rows.size() < entry->originalIndex)
            back.rows.append(*next++);
        back.rows.append(entry->track);
    }
    while (next != present.cend())
        back.rows.append(*next++);
    return back;
}

QList<QUrl> filesOf(const QList<const TrackList*>& lists, const QSet<TrackID>& ids)
{
    QList<QUrl> files;
    QSet<QUrl> known;
    for (const TrackList* list : lists) {
        for (const Track& track : *list) {
            if (!ids.contains(track.id()) || known.contains(track.url()))
                continue;
            known.insert(track.url());
            files.append(track.url());
        }
    }
    return files;
}

QList<QList<RemovedTrack>> byFile(QList<RemovedTrack> entries)
{
    std::ranges::stable_sort(entries, {}, &RemovedTrack::originalIndex);
    QList<QList<RemovedTrack>> files;
    QHash<QUrl, qsizetype> places;
    for (const RemovedTrack& entry : std::as_const(entries)) {
        const auto known = places.constFind(entry.track.url());
        if (known != places.cend()) {
            files[*known].append(entry);
            continue;
        }
        places.insert(entry.track.url(), files.size());
        files.append({entry});
    }
    return files;
}

QSet<TrackID> idsOf(const QList<RemovedTrack>& entries)
{
    QSet<TrackID> ids;
    for (const RemovedTrack& entry : entries)
        ids.insert(entry.track.id());
    return ids;
}

} // namespace RemovalPlan
