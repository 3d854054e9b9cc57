#pragma once

#include "core/library/workspace/TrackList.h"
#include "core/model/Track.h"

#include <QList>
#include <QString>

#include <optional>
#include <vector>

/// The playlist's base order: by folder, then by file name, as a file manager shows them, equal names by the id's text.
/// Rows that come are placed among those that are there, so that only what is new is ever sorted. A value; no thread of
/// its own.
class PlaylistBase {
public:
    /// One run of rows of one folder.
    struct FolderSection {
        QString folder; ///< standardized path
        int first = 0;  ///< row
        int end = 0;    ///< row behind the last
        bool operator==(const FolderSection&) const = default;
    };

    /// The rows of the playlist in base order.
    const TrackList& rows() const { return m_rows; }
    /// The runs of rows(), from the first row to the last without gaps. Goes over all rows.
    std::vector<FolderSection> sections() const;

    /// Makes the rows those of \p tracks that are in the playlist.
    void rebuild(const TrackList& tracks);
    /// Takes the rows from \p first on as new ones, the others as they were.
    void append(const TrackList& tracks, int first);
    /// Lets these tracks go. \return the rows that they had, ascending.
    QList<int> remove(const QList<TrackID>& ids);
    /// Takes new values of these rows of \p tracks. \return the rows here that have new values; nothing, and nothing is
    /// taken, if one of them joined, left or moved to another file.
    std::optional<QList<int>> refresh(const TrackList& tracks, const QList<int>& changedRows);

private:
    /// A row with the texts that place it.
    struct Entry {
        QString folder;
        QString name;
        Track track;
    };
    static Entry entry(const Track& track, const Entry* neighbour);
    static bool isBefore(const Entry& left, const Entry& right);
    static std::vector<Entry> sortedEntries(const QList<Track>& tracks);
    Entry entryAt(int row) const;
    int placeOf(const Entry& fresh, int from) const;
    void insert(std::vector<Entry> fresh);

    TrackList m_rows;
    QList<QString> m_folders; ///< of each row; neighbours share one text
};
