#include "core/library/imports/ImportPlan.h"

namespace ImportPlan {

Split split(const TrackList& tracks, const QList<QUrl>& urls)
{
    if (tracks.isEmpty())
        return {{}, urls};
    Split result;
    for (const QUrl& url : urls) {
        if (const std::optional<int> row = tracks.indexOfURL(url))
            result.knownRows.append(*row);
        else
            result.freshURLs.append(url);
    }
    return result;
}

QList<Track> withMembership(const TrackList& tracks, const QList<int>& rows, Membership membership)
{
    QList<Track> result = tracks.rows();
    for (const int row : rows) {
        const Track& track = tracks.at(row);
        if (membership.playlist && !track.isInPlaylist())
            result[row].setIsInPlaylist(true);
        if (membership.covers && !track.isInCoverWorkspace())
            result[row].setIsInCoverWorkspace(true);
    }
    return result;
}

QList<Track> freshTracks(const QList<QUrl>& urls, Membership membership)
{
    QList<Track> tracks;
    tracks.reserve(urls.size());
    for (const QUrl& url : urls) {
        Track track = Track::unread(url);
        track.setIsInPlaylist(membership.playlist);
        track.setIsInCoverWorkspace(membership.covers);
        tracks.append(std::move(track));
    }
    return tracks;
}

} // namespace ImportPlan
