#include "core/library/order/Order.h"

#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"

Order::Order(Workspace& workspace, Preferences& preferences, Notifications& notifications)
    : m_workspace(workspace)
    , m_preferences(preferences)
{
    readFilter();
    connect(&preferences, &Preferences::changed, this, [this](const QString& key) {
        if (key == m_preferences.favoriteGenreFilter.key() || key == m_preferences.favoriteOnlyUntagged.key())
            readFilter();
    });
    connect(&notifications, &Notifications::velmoraLanguageDidChange, this, &Order::languageChanged);
}

/// Each language has an order of its own, so nothing of the old one can be kept.
void Order::languageChanged()
{
    m_base = PlaylistBase();
    m_isBaseValid = false;
    m_workspace.noteOrderChange();
}

void Order::readFilter()
{
    m_genreFilter = m_preferences.favoriteGenreFilter.get();
    m_onlyUntagged = m_preferences.favoriteOnlyUntagged.get();
}

const QList<Track>& Order::playlistTracks()
{
    if (!m_isBaseValid) {
        m_base.rebuild(m_workspace.tracks());
        m_isBaseValid = true;
        m_sections.reset();
    }
    return m_base.rows().rows();
}

const std::vector<Order::PlaylistFolderSection>& Order::playlistFolderSections()
{
    playlistTracks();
    if (!m_sections)
        m_sections = m_base.sections();
    return *m_sections;
}

QList<Track> Order::favoriteTracks() const
{
    QList<Track> rows;
    for (const Track& track : m_workspace.tracks()) {
        if (track.isFavorite() && passesFavoriteFilter(track))
            rows.append(track);
    }
    return rows;
}

QList<Track> Order::coverTracks() const
{
    QList<Track> rows;
    for (const Track& track : m_workspace.tracks()) {
        if (track.isInCoverWorkspace() || track.isFavorite())
            rows.append(track);
    }
    return rows;
}

bool Order::passesFavoriteFilter(const Track& track) const
{
    if (m_onlyUntagged)
        return track.tags().genre.trimmed().isEmpty();
    return m_genreFilter.isEmpty() || track.tags().genre == m_genreFilter;
}

void Order::tracksChanged(const ListChange& change)
{
    if (!m_isBaseValid)
        return;
    switch (change.kind) {
    case ListChange::Kind::Contents:
        m_isBaseValid = m_base.refresh(m_workspace.tracks(), change.rows);
        return;
    case ListChange::Kind::Appended:
        m_base.append(m_workspace.tracks(), change.first);
        m_sections.reset();
        return;
    case ListChange::Kind::Structure:
        m_isBaseValid = false;
        return;
    }
}
