#include "core/library/selection/Selection.h"

#include "async/MainQueue.h"
#include "core/library/order/Order.h"
#include "core/library/workspace/Workspace.h"
#include "core/model/LibrarySection.h"

namespace {

constexpr qsizetype kRowsPerLookup = 4; // chosen: so many rows in order are looked at while one is found by its id

/// Those of the ids that are rows and not gone. Of many it is cheaper to go through the rows in order.
template <typename IsGone>
QSet<TrackID> idsAmong(const QList<Track>& rows, const QSet<TrackID>& ids, IsGone isGone)
{
    QList<TrackID> found;
    found.reserve(ids.size());
    for (const Track& row : rows) {
        if (ids.contains(row.id()) && !isGone(row))
            found.append(row.id());
    }
    return found.size() == ids.size() ? ids : QSet<TrackID>(found.cbegin(), found.cend());
}

} // namespace

Selection::Selection(Workspace& workspace, Order& order)
    : m_workspace(workspace)
    , m_order(order)
{
}

QList<Track> Selection::visibleTracks() const
{
    return tracks(m_workspace.activeTab());
}

QList<Track> Selection::tracks(LibraryTab tab) const
{
    switch (tab) {
    case LibraryTab::Playlist:
        return m_order.playlistTracks();
    case LibraryTab::Favorites:
        return m_order.favoriteTracks();
    case LibraryTab::Covers:
        return m_order.coverTracks();
    default: // in the order in which they were added
        return m_workspace.list(LibrarySection::of(tab).list).rows();
    }
}

qsizetype Selection::rowCount(LibraryTab tab) const
{
    const LibrarySection& section = LibrarySection::of(tab);
    if (section.holdsJobs)
        return m_workspace.conversionItems().size();
    const TrackList& list = m_workspace.list(section.list);
    return std::count_if(list.begin(), list.end(), section.holds);
}

bool Selection::isSelectable(LibraryTab tab, const TrackID& id) const
{
    const Track* track = m_workspace.list(LibrarySection::of(tab).list).find(id);
    return track && shows(tab, *track);
}

/// \param track of the section's list.
bool Selection::shows(LibraryTab tab, const Track& track) const
{
    const LibrarySection& section = LibrarySection::of(tab);
    return section.holds(track) && (!section.isFiltered || m_order.passesFavoriteFilter(track));
}

std::optional<Track> Selection::selectedTrack() const
{
    const std::optional<TrackID>& id = m_workspace.selectedID();
    const LibraryTab tab = m_workspace.activeTab();
    if (!id || !isSelectable(tab, *id))
        return std::nullopt;
    return *m_workspace.list(LibrarySection::of(tab).list).find(*id);
}

QSet<TrackID> Selection::activeSelection() const
{
    return shown(m_workspace.activeSelection());
}

QSet<TrackID> Selection::shown(const QSet<TrackID>& ids) const
{
    const LibraryTab tab = m_workspace.activeTab();
    if (!LibrarySection::of(tab).holdsJobs)
        return reduced({ids, std::nullopt}, tab).ids;
    QSet<TrackID> jobs;
    for (const ConversionItem& item : m_workspace.conversionItems()) {
        if (ids.contains(item.id))
            jobs.insert(item.id);
    }
    return jobs;
}

void Selection::select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_workspace.setSelection(ids, focused);
    noteChecked();
}

void Selection::noteChecked()
{
    m_checkedListRevision = m_workspace.listRevision();
    m_checkedSelectionRevision = m_workspace.selectionRevision();
}

void Selection::selectAll()
{
    const QList<Track> rows = visibleTracks();
    QSet<TrackID> ids;
    ids.reserve(rows.size());
    for (const Track& track : rows)
        ids.insert(track.id());
    std::optional<TrackID> focused = m_workspace.selectedID();
    if (!rows.isEmpty() && (!focused || !ids.contains(*focused)))
        focused = rows.first().id();
    select(ids, focused);
}

Selection::State Selection::presentState() const
{
    return {m_workspace.selectedIDs(), m_workspace.selectedID()};
}

void Selection::rememberSelection(LibraryTab tab)
{
    const bool isChecked = tab == m_workspace.activeTab() && m_checkedListRevision == m_workspace.listRevision() &&
                           m_checkedSelectionRevision == m_workspace.selectionRevision();
    const State state = isChecked ? presentState() : reduced(presentState(), tab);
    m_statesByTab.insert(rawValue(tab), {state, m_workspace.listRevision()});
}

Selection::State Selection::selectionState(LibraryTab tab)
{
    Checked& stored = m_statesByTab[rawValue(tab)];
    if (stored.listRevision != m_workspace.listRevision())
        stored = {reduced(stored.state, tab), m_workspace.listRevision()};
    State state = stored.state;
    if (!state.focusedID && state.ids.size() == 1)
        state.focusedID = *state.ids.cbegin();
    else if (state.focusedID && state.ids.isEmpty())
        state.ids = {*state.focusedID};
    return state;
}

std::optional<Selection::State> Selection::rememberedState(LibraryTab tab) const
{
    const auto stored = m_statesByTab.constFind(rawValue(tab));
    return stored == m_statesByTab.cend() ? std::nullopt : std::optional(stored->state);
}

void Selection::restoreState(LibraryTab tab, const State& state)
{
    // The filter of Favorites may hide some of them; that is looked at when the section is shown.
    const quint64 revision = LibrarySection::of(tab).isFiltered ? 0 : m_workspace.listRevision();
    m_statesByTab.insert(rawValue(tab), {state, revision});
}

void Selection::switchTo(LibraryTab tab)
{
    rememberSelection(m_workspace.activeTab());
    const State state = selectionState(tab);
    m_workspace.switchTo(tab, state.ids, state.focusedID);
    noteChecked();
}

void Selection::forget(const QSet<TrackID>& ids)
{
    for (Checked& stored : m_statesByTab) {
        stored.state.ids.subtract(ids);
        if (stored.state.focusedID && ids.contains(*stored.state.focusedID))
            stored.state.focusedID.reset();
    }
}

void Selection::dropInvisible()
{
    const State state = reduced(presentState(), m_workspace.activeTab());
    select(state.ids, state.focusedID);
}

Selection::State Selection::reduced(const State& state, LibraryTab tab) const
{
    const auto isGone = [&](const TrackID& id) { return !isSelectable(tab, id); };
    const auto isHidden = [&](const Track& track) { return !shows(tab, track); };
    State result = state;
    const QList<Track>& rows = m_workspace.list(LibrarySection::of(tab).list).rows();
    if (state.ids.size() * kRowsPerLookup > rows.size())
        result.ids = idsAmong(rows, state.ids, isHidden);
    else if (std::ranges::any_of(state.ids, isGone)) // mostly nothing is gone, and the set need not be copied
        result.ids.removeIf(isGone);
    if (result.focusedID && isGone(*result.focusedID))
        result.focusedID.reset();
    return result;
}
