#include "core/library/favorites/Favorites.h"

#include "async/MainQueue.h"
#include "core/library/selection/Selection.h"
#include "core/library/status/StatusLine.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Collation.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"

#include <algorithm>

namespace {

using Tone = WorkspaceStatus::Tone;

constexpr Favorites::MembershipState kMember{true, true};
constexpr Favorites::MembershipState kNoMember{false, false};

} // namespace

Favorites::Favorites(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

int Favorites::addToFavorites(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    MembershipStates target;
    for (const TrackID& id : ids) {
        const Track* track = m_dependencies.workspace.tracks().find(id);
        if (track && !track->isFavorite())
            target.insert(id, kMember);
    }
    change(target);
    return static_cast<int>(target.size());
}

void Favorites::removeFromFavorites(const QSet<TrackID>& ids, bool advancePlayback)
{
    VELMORA_ASSERT_MAIN_THREAD();
    MembershipStates target;
    for (const TrackID& id : ids) {
        const Track* track = m_dependencies.workspace.tracks().find(id);
        if (track && track->isFavorite())
            target.insert(id, kNoMember);
    }
    if (target.isEmpty())
        return;
    const QList<Track> rows = m_dependencies.selection.visibleTracks();
    change(target);
    if (advancePlayback)
        emit rowsLeft(QSet<TrackID>(target.keyBegin(), target.keyEnd()), rows);
    showCount(QStringLiteral("Убрано из избранного: %d"), target.size(), StatusIcon::FavoriteRemoved);
}

void Favorites::toggleFavorites(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    MembershipStates target;
    qsizetype added = 0;
    for (const TrackID& id : ids) {
        const Track* track = m_dependencies.workspace.tracks().find(id);
        if (!track)
            continue;
        target.insert(id, track->isFavorite() ? kNoMember : kMember);
        added += track->isFavorite() ? 0 : 1;
    }
    if (target.isEmpty())
        return;
    change(target);
    if (added == target.size())
        showCount(QStringLiteral("Добавлено в избранное: %d"), added, StatusIcon::FavoriteAdded);
    else if (added == 0)
        showCount(QStringLiteral("Убрано из избранного: %d"), target.size(), StatusIcon::FavoriteRemoved);
    else
        showCount(QStringLiteral("Избранное обновлено: %d"), target.size(), StatusIcon::FavoriteAdded);
}

Favorites::MembershipStates Favorites::favoriteMembershipStates(const QSet<TrackID>& ids) const
{
    MembershipStates states;
    for (const TrackID& id : ids) {
        if (const Track* track = m_dependencies.workspace.tracks().find(id))
            states.insert(id, {track->isFavorite(), track->isInCoverWorkspace()});
    }
    return states;
}

Favorites::Change Favorites::plan(const MembershipStates& target) const
{
    Change result;
    for (auto entry = target.cbegin(); entry != target.cend(); ++entry) {
        const Track* track = m_dependencies.workspace.tracks().find(entry.key());
        if (!track)
            continue;
        const MembershipState present{track->isFavorite(), track->isInCoverWorkspace()};
        if (present == entry.value())
            continue;
        result.before.insert(entry.key(), present);
        result.after.insert(entry.key(), entry.value());
    }
    return result;
}

void Favorites::applyFavoriteMembershipStates(const MembershipStates& states)
{
    VELMORA_ASSERT_MAIN_THREAD();
    apply(plan(states));
}

void Favorites::apply(const Change& change)
{
    if (change.after.isEmpty())
        return;
    Workspace& workspace = m_dependencies.workspace;
    QList<Track> rows = workspace.tracks().rows();
    for (auto entry = change.after.cbegin(); entry != change.after.cend(); ++entry) {
        Track& track = rows[*workspace.tracks().indexOf(entry.key())];
        track.setIsFavorite(entry->isFavorite);
        track.setIsInCoverWorkspace(entry->isInCoverWorkspace);
    }
    workspace.setList(Track::MetadataDestination::Library, rows, ListChange::Cause::FavoriteFlags);
    emit m_dependencies.notifications.velmoraFavoriteMembershipDidChange();
    followInView(change);
}

void Favorites::followInView(const Change& change)
{
    const LibraryTab tab = m_dependencies.workspace.activeTab();
    if (tab != LibraryTab::Favorites && tab != LibraryTab::Covers)
        return;
    m_dependencies.selection.dropInvisible();
    QList<TrackID> joined;
    for (auto entry = change.before.cbegin(); entry != change.before.cend(); ++entry) {
        const bool wasIn = entry->isFavorite || (tab == LibraryTab::Covers && entry->isInCoverWorkspace);
        if (!wasIn && m_dependencies.selection.isSelectable(tab, entry.key()))
            joined.append(entry.key());
    }
    if (joined.size() == 1)
        emit m_dependencies.notifications.velmoraFocusFavoriteTrack(joined.first());
}

void Favorites::change(const MembershipStates& target)
{
    const Change change = plan(target);
    if (change.after.isEmpty())
        return;
    apply(change);
    m_dependencies.history.registerUndo(
        QStringLiteral("Изменить избранное"), [this, before = change.before] { applyFavoriteMembershipStates(before); },
        [this, after = change.after] { applyFavoriteMembershipStates(after); });
}

void Favorites::showCount(const QString& message, qsizetype count, StatusIcon icon)
{
    m_dependencies.status.showCounted(message, {count}, icon, Tone::Success);
}

QString Favorites::favoriteGenreFilter() const
{
    return m_dependencies.preferences.favoriteGenreFilter.get();
}

void Favorites::setFavoriteGenreFilter(const QString& genre)
{
    if (favoriteGenreFilter() == genre)
        return;
    m_dependencies.preferences.favoriteGenreFilter.set(genre);
    if (!genre.isEmpty())
        m_dependencies.preferences.favoriteOnlyUntagged.set(false);
    filterChanged();
}

bool Favorites::favoriteOnlyUntagged() const
{
    return m_dependencies.preferences.favoriteOnlyUntagged.get();
}

void Favorites::setFavoriteOnlyUntagged(bool value)
{
    if (favoriteOnlyUntagged() == value)
        return;
    m_dependencies.preferences.favoriteOnlyUntagged.set(value);
    if (value)
        m_dependencies.preferences.favoriteGenreFilter.set(QString());
    filterChanged();
}

QStringList Favorites::favoriteGenreOptions() const
{
    QSet<QString> genres;
    for (const Track& track : m_dependencies.workspace.tracks()) {
        if (track.isFavorite() && !track.tags().genre.trimmed().isEmpty())
            genres.insert(track.tags().genre);
    }
    QStringList options(genres.cbegin(), genres.cend());
    std::ranges::sort(options, [](const QString& left, const QString& right) {
        const int order = Collation::standardCompare(left, right);
        return order != 0 ? order < 0 : left < right;
    });
    return options;
}

void Favorites::filterChanged()
{
    m_dependencies.workspace.noteOrderChange();
    if (m_dependencies.workspace.activeTab() == LibraryTab::Favorites)
        m_dependencies.selection.dropInvisible();
    emit m_dependencies.notifications.velmoraFavoriteGenreFilterDidChange();
}
