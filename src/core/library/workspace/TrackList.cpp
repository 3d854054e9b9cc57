#include "core/library/workspace/TrackList.h"

#include <algorithm>

namespace {

/// The rows whose values differ, or nothing if a row became another track.
std::optional<QList<int>> changedRows(const QList<Track>& old, const QList<Track>& rows)
{
    QList<int> changed;
    for (int row = 0; row < rows.size(); ++row) {
        if (old[row].isSameValueAs(rows[row]))
            continue;
        if (old[row].id() != rows[row].id())
            return std::nullopt;
        changed.append(row);
    }
    return changed;
}

bool isPrefix(const QList<Track>& old, const QList<Track>& rows)
{
    return rows.size() > old.size() &&
           std::equal(old.begin(), old.end(), rows.begin(),
                      [](const Track& left, const Track& right) { return left.isSameValueAs(right); });
}

/// The change from a list to one that lacks some of its rows; nothing if anything came or moved.
std::optional<ListChange> removal(const QList<Track>& old, const QList<Track>& rows)
{
    ListChange change;
    change.kind = ListChange::Kind::Removed;
    qsizetype row = 0;
    for (const Track& track : old) {
        const bool isThere = row < rows.size() && track.id() == rows[row].id();
        if (!isThere)
            change.gone.append(track.id());
        else if (!track.isSameValueAs(rows[row++]))
            change.rows.append(static_cast<int>(row) - 1);
    }
    return row == rows.size() ? std::optional(change) : std::nullopt;
}

} // namespace

void TrackList::enterIDs() const
{
    m_places.extend(size(), [this](int row) { return m_rows[row].id(); });
}

void TrackList::enterURLs() const
{
    m_urlPlaces.extend(size(), [this](int row) { return m_rows[row].urlHash(); });
}

std::optional<int> TrackList::indexOf(const TrackID& id) const
{
    enterIDs();
    return m_places.find(id);
}

std::optional<int> TrackList::indexOfURL(const QUrl& url) const
{
    enterURLs();
    const std::optional<int> row = m_urlPlaces.find(Track::hashOf(url));
    if (!row || m_rows[*row].url() == url)
        return row;
    // Two files with one hash of 64 bits: not met in practice, but answered rightly.
    const auto place = std::ranges::find(m_rows, url, &Track::url);
    return place == m_rows.cend() ? std::nullopt : std::optional(int(place - m_rows.cbegin()));
}

const Track* TrackList::find(const TrackID& id) const
{
    const std::optional<int> row = indexOf(id);
    return row ? &m_rows[*row] : nullptr;
}

ListChange TrackList::assign(QList<Track> rows)
{
    m_rows.swap(rows);
    const QList<Track>& old = rows;
    if (old.isSharedWith(m_rows))
        return {ListChange::Kind::Contents, {}, 0};
    if (old.size() == m_rows.size()) {
        if (const std::optional<QList<int>> changed = changedRows(old, m_rows)) {
            const bool filesMoved =
                std::ranges::any_of(*changed, [&](int row) { return old[row].url() != m_rows[row].url(); });
            if (filesMoved)
                forgetPlaces();
            return {ListChange::Kind::Contents, *changed, 0};
        }
    } else if (isPrefix(old, m_rows)) {
        enterIDs(); // a slice at a time here, instead of all at the first question
        enterURLs();
        return {ListChange::Kind::Appended, {}, static_cast<int>(old.size())};
    }
    forgetPlaces();
    if (old.size() > m_rows.size()) {
        if (std::optional<ListChange> change = removal(old, m_rows))
            return *std::move(change);
    }
    return {ListChange::Kind::Structure, {}, 0};
}

void TrackList::refresh(int row, const Track& track)
{
    Q_ASSERT(at(row).id() == track.id() && at(row).url() == track.url());
    m_rows[row] = track;
}

void TrackList::forgetPlaces()
{
    m_places.clear();
    m_urlPlaces.clear();
}
