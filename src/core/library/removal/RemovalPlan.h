#pragma once

#include "core/library/removal/RemovedTrack.h"
#include "core/library/workspace/TrackList.h"

#include <QHash>
#include <QSet>

/// What lists become when rows leave them and come back: pure functions.
namespace RemovalPlan {

using List = Track::MetadataDestination;

/// A list without some rows, and those.
struct Cut {
    QList<Track> rows;
    QList<RemovedTrack> removed; ///< in list order
};

/// Takes rows of the playlist out of the main list; favourites stay in it, out of the playlist. Rows that are not in
/// the playlist do not count.
Cut outOfPlaylist(const TrackList& tracks, const QSet<TrackID>& ids);
/// Takes rows out of Covers that are no favourites; rows of the playlist stay in the list, all others leave it.
Cut outOfCovers(const TrackList& tracks, const QSet<TrackID>& ids);
/// Takes rows out of a list.
Cut outOfList(List list, const TrackList& tracks, const QSet<TrackID>& ids);
/// A file in the Trash.
struct TrashedFile {
    TrashedItem item;
    std::optional<FileStamp> stamp = std::nullopt; ///< before it went
};
/// Takes all rows of the files out of a list. \param trashed where the files are now, by the row's URL.
Cut withoutFiles(List list, const TrackList& tracks, const QHash<QUrl, TrashedFile>& trashed);
/// The entries of a file that has come back: its rows are to be read again where it is not what it was.
QList<RemovedTrack> asOf(QList<RemovedTrack> entries, const std::optional<FileStamp>& now);

/// A list with rows that came back.
struct Back {
    QList<Track> rows;
    QList<TrackID> ids;     ///< of what came back, in list order
    bool isChanged = false; ///< whether any of them was not there as it had been
};

/// Puts rows back where they were, at the end where the list has become shorter. A row that stayed gets its flag
/// back. A file that has a row by now gets no second one: its row joins the sections that the removed one was in.
/// \param entries of this list, ascending by originalIndex.
Back putBack(const TrackList& tracks, const QList<RemovedTrack>& entries);

/// Each file once, in the order of the rows. \param ids rows that may stand in any of the lists.
QList<QUrl> filesOf(const QList<const TrackList*>& lists, const QSet<TrackID>& ids);

/// The entries file by file, those of one file together, in the order of the rows.
QList<QList<RemovedTrack>> byFile(QList<RemovedTrack> entries);

/// The rows of the entries.
QSet<TrackID> idsOf(const QList<RemovedTrack>& entries);

} // namespace RemovalPlan
