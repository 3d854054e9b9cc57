#include "core/library/order/PlaylistBase.h"

#include "core/library/workspace/Rows.h"
#include "platform/Collation.h"
#include "platform/FileURL.h"

#include <algorithm>

std::vector<PlaylistBase::FolderSection> PlaylistBase::sections() const
{
    std::vector<FolderSection> sections;
    for (int row = 0; row < m_rows.size(); ++row) {
        const QString& folder = m_folders[row];
        if (sections.empty() || sections.back().folder != folder)
            sections.push_back({folder, row, row});
        sections.back().end = row + 1;
    }
    return sections;
}

PlaylistBase::Entry PlaylistBase::entry(const Track& track, const Entry* neighbour)
{
    FileURL::Place place = FileURL::place(track.url());
    if (neighbour && neighbour->folder == place.folder)
        place.folder = neighbour->folder;
    return {std::move(place.folder), std::move(place.name), track};
}

PlaylistBase::Entry PlaylistBase::entryAt(int row) const
{
    return {m_folders[row], FileURL::lastPathComponent(m_rows.at(row).url()), m_rows.at(row)};
}

bool PlaylistBase::isBefore(const Entry& left, const Entry& right)
{
    if (left.folder != right.folder) {
        if (const int order = Collation::standardCompare(left.folder, right.folder))
            return order < 0;
    }
    if (const int order = Collation::standardCompare(left.name, right.name))
        return order < 0;
    return left.track.id().toString() < right.track.id().toString();
}

std::vector<PlaylistBase::Entry> PlaylistBase::sortedEntries(const QList<Track>& tracks)
{
    std::vector<Entry> entries;
    entries.reserve(tracks.size());
    for (const Track& track : tracks)
        entries.push_back(entry(track, entries.empty() ? nullptr : &entries.back()));
    // Files of an import mostly come in this order already; for others a sort by keys costs far fewer comparisons of
    // texts.
    if (std::ranges::is_sorted(entries, isBefore))
        return entries;
    struct Keyed {
        QByteArray folder;
        QByteArray name;
        size_t entry;
    };
    std::vector<Keyed> keys;
    keys.reserve(entries.size());
    for (const Entry& own : entries) {
        const bool sameFolder = !keys.empty() && entries[keys.back().entry].folder == own.folder;
        keys.push_back({sameFolder ? keys.back().folder : Collation::standardSortKey(own.folder),
                        Collation::standardSortKey(own.name), keys.size()});
    }
    std::ranges::sort(keys, [&](const Keyed& left, const Keyed& right) {
        if (left.folder != right.folder)
            return left.folder < right.folder;
        if (left.name != right.name)
            return left.name < right.name;
        return entries[left.entry].track.id().toString() < entries[right.entry].track.id().toString();
    });
    std::vector<Entry> sorted;
    sorted.reserve(entries.size());
    for (const Keyed& key : keys)
        sorted.push_back(std::move(entries[key.entry]));
    return sorted;
}

void PlaylistBase::rebuild(const TrackList& tracks)
{
    QList<Track> kept;
    QList<QString> keptFolders;
    for (int row = 0; row < m_rows.size(); ++row) {
        const Track* track = tracks.find(m_rows.at(row).id());
        if (track && track->isInPlaylist() && track->url() == m_rows.at(row).url()) {
            kept.append(*track);
            keptFolders.append(m_folders[row]);
        }
    }
    m_rows.assign(std::move(kept));
    m_folders = std::move(keptFolders);
    QList<Track> fresh;
    for (const Track& track : tracks) {
        if (track.isInPlaylist() && (m_rows.isEmpty() || !m_rows.contains(track.id())))
            fresh.append(track);
    }
    insert(sortedEntries(fresh));
}

void PlaylistBase::append(const TrackList& tracks, int first)
{
    QList<Track> fresh;
    for (int row = first; row < tracks.size(); ++row) {
        if (tracks.at(row).isInPlaylist())
            fresh.append(tracks.at(row));
    }
    insert(sortedEntries(fresh));
}

/// The row before which an entry belongs, at or behind \p from. Steps of doubling width, then halves: cheap both for a
/// few rows among many and for as many as there are.
int PlaylistBase::placeOf(const Entry& fresh, int from) const
{
    if (!m_rows.isEmpty() && isBefore(entryAt(m_rows.size() - 1), fresh))
        return m_rows.size();
    int end = from;
    for (int step = 1; end < m_rows.size() && isBefore(entryAt(end), fresh); step *= 2) {
        from = end + 1;
        end = std::min(end + step, m_rows.size());
    }
    while (from < end) {
        const int middle = from + (end - from) / 2;
        if (isBefore(entryAt(middle), fresh))
            from = middle + 1;
        else
            end = middle;
    }
    return from;
}

void PlaylistBase::insert(std::vector<Entry> fresh)
{
    if (fresh.empty())
        return;
    const QList<Track>& old = m_rows.rows();
    const QList<QString> oldFolders = m_folders;
    int taken = placeOf(fresh.front(), 0);
    // What stays in front is copied once; an import that goes on mostly has all of it there.
    QList<Track> rows = taken == old.size() ? old : old.first(taken);
    QList<QString> folders = taken == old.size() ? oldFolders : oldFolders.first(taken);
    rows.reserve(old.size() + qsizetype(fresh.size()));
    folders.reserve(old.size() + qsizetype(fresh.size()));
    for (Entry& own : fresh) {
        for (const int place = taken == old.size() ? taken : placeOf(own, taken); taken < place; ++taken) {
            rows.append(old[taken]);
            folders.append(oldFolders[taken]);
        }
        const bool joinsFolder = !folders.isEmpty() && folders.constLast() == own.folder;
        folders.append(joinsFolder ? folders.constLast() : own.folder);
        rows.append(std::move(own.track));
    }
    for (; taken < old.size(); ++taken) {
        rows.append(old[taken]);
        folders.append(oldFolders[taken]);
    }
    m_rows.assign(std::move(rows));
    m_folders = std::move(folders);
}

QList<int> PlaylistBase::remove(const QList<TrackID>& ids)
{
    QList<int> gone;
    gone.reserve(ids.size());
    for (const TrackID& id : ids) {
        if (const std::optional<int> row = m_rows.indexOf(id))
            gone.append(*row);
    }
    if (gone.isEmpty())
        return gone;
    std::ranges::sort(gone);
    m_rows.assign(Rows::without(m_rows.rows(), gone));
    m_folders = Rows::without(m_folders, gone);
    return gone;
}

std::optional<QList<int>> PlaylistBase::refresh(const TrackList& tracks, const QList<int>& changedRows)
{
    QList<std::pair<int, int>> places; // row here, row there
    for (const int changed : changedRows) {
        const Track& track = tracks.at(changed);
        const std::optional<int> row = m_rows.indexOf(track.id());
        if (row.has_value() != track.isInPlaylist())
            return std::nullopt;
        if (!row)
            continue;
        if (m_rows.at(*row).url() != track.url())
            return std::nullopt;
        places.append({*row, changed});
    }
    QList<int> refreshed;
    for (const auto& [row, changed] : places) {
        m_rows.refresh(row, tracks.at(changed));
        refreshed.append(row);
    }
    return refreshed;
}
