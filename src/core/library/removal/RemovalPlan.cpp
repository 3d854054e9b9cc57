#include "core/library/removal/RemovalPlan.h"

namespace {

using RemovalPlan::Cut;

/// \param removal gives the entry for a row that is to go, nothing for one that stays. The entry may say that the row
/// stays without its playlist flag.
template <typename Removal>
Cut cut(const TrackList& tracks, Removal removal)
{
    Cut result;
    result.rows.reserve(tracks.size());
    for (int index = 0; index < tracks.size(); ++index) {
        const Track& track = tracks.at(index);
        std::optional<RemovedTrack> entry = removal(track);
        if (!entry || entry->removedFromPlaylistOnly)
            result.rows.append(track);
        if (!entry)
            continue;
        if (entry->removedFromPlaylistOnly)
            result.rows.last().setIsInPlaylist(false);
        entry->track = track;
        entry->originalIndex = index;
        result.removed.append(*std::move(entry));
    }
    return result;
}

void joinSections(Track& track, const Track& removed)
{
    track.setIsInPlaylist(track.isInPlaylist() || removed.isInPlaylist());
    track.setIsInCoverWorkspace(track.isInCoverWorkspace() || removed.isInCoverWorkspace());
    track.setIsFavorite(track.isFavorite() || removed.isFavorite());
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

Cut withoutFiles(List list, const TrackList& tracks, const QHash<QUrl, TrashedItem>& trashed)
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
        entry.trashed = *item;
        return entry;
    });
}

Back putBack(const TrackList& tracks, const QList<RemovedTrack>& entries)
{
    QList<Track> present = tracks.rows();
    QList<const RemovedTrack*> missing;
    Back back;
    for (const RemovedTrack& entry : entries) {
        std::optional<int> row = tracks.indexOf(entry.track.id());
        if (!row && !entry.removedFromPlaylistOnly)
            row = tracks.indexOfURL(entry.track.url());
        if (row && entry.removedFromPlaylistOnly)
            present[*row].setIsInPlaylist(true);
        else if (row)
            joinSections(present[*row], entry.track);
        else if (!entry.removedFromPlaylistOnly)
            missing.append(&entry);
        if (row)
            back.ids.append(present[*row].id());
        else if (!entry.removedFromPlaylistOnly)
            back.ids.append(entry.track.id());
    }
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

} // namespace RemovalPlan
