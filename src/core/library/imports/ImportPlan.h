#pragma once

#include "core/library/workspace/TrackList.h"
#include "core/model/Track.h"

#include <QList>
#include <QUrl>

/// What an import changes: pure functions of the list and the files.
namespace ImportPlan {

/// Flags that an import sets on its tracks.
struct Membership {
    /// Whether the rows come into the playlist.
    bool playlist = false;
    bool covers = false;
};

/// Files of an import by whether the list has them.
struct Split {
    QList<int> knownRows;  ///< rows of files already there, in the order of the import
    QList<QUrl> freshURLs; ///< the others, in that order
};

/// \param urls standardized, each once
Split split(const TrackList& tracks, const QList<QUrl>& urls);
/// The list with the flags set on these rows.
QList<Track> withMembership(const TrackList& tracks, const QList<int>& rows, Membership membership);
/// A row for each file with a fresh id, as it stands before its tags were read: guessed from the name.
QList<Track> freshTracks(const QList<QUrl>& urls, Membership membership);

} // namespace ImportPlan
