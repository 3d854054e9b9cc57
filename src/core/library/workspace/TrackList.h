#pragma once

#include "core/library/workspace/ListChange.h"
#include "core/library/workspace/PlaceTable.h"
#include "core/model/Track.h"

#include <QList>

#include <optional>

/// A list of tracks with their places by id. A value, cheap to copy. Thread: one at a time, for questions fill its
/// tables.
class TrackList {
public:
    /// The rows in the order of the list; shared, so a copy of it costs nothing.
    const QList<Track>& rows() const { return m_rows; }
    int size() const { return static_cast<int>(m_rows.size()); }
    bool isEmpty() const { return m_rows.isEmpty(); }
    /// \param row 0 to size() - 1
    const Track& at(int row) const { return m_rows[row]; }
    auto begin() const { return m_rows.cbegin(); }
    auto end() const { return m_rows.cend(); }

    /// The row of a track; nothing if it is not in the list. The table behind it is built when first asked for.
    std::optional<int> indexOf(const TrackID& id) const;
    /// Takes the same time however long the list is, once its table is built.
    bool contains(const TrackID& id) const { return indexOf(id).has_value(); }
    /// The first row of a file; nothing if it is not in the list. \param url standardized.
    std::optional<int> indexOfURL(const QUrl& url) const;
    /// The track with this id, or null. Valid until the next assignment.
    const Track* find(const TrackID& id) const;

    /// Replaces the rows. \return how the new list differs, found by comparing values by pointer.
    ListChange assign(QList<Track> rows);
    /// Gives a row a new value of the same track and file. Copies the list only if another copy shares it.
    void refresh(int row, const Track& track);

private:
    void forgetPlaces();
    void enterIDs() const;
    void enterURLs() const;

    QList<Track> m_rows;
    mutable PlaceTable<TrackID> m_places;
    mutable PlaceTable<quint64> m_urlPlaces; ///< by the hash of the URL
};
