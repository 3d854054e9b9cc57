#pragma once

#include "core/library/order/PlaylistBase.h"

#include <QObject>

class Notifications;
class Preferences;
class Workspace;

/// The display order of the playlist and of Favorites. Thread: main.
class Order : public QObject {
public:
    using PlaylistFolderSection = PlaylistBase::FolderSection;

    Order(Workspace& workspace, Preferences& preferences, Notifications& notifications);

    /// The playlist in display order.
    const QList<Track>& playlistTracks();
    /// The folders of playlistTracks().
    const std::vector<PlaylistFolderSection>& playlistFolderSections();
    /// Favourites that pass the filter, in list order.
    QList<Track> favoriteTracks() const;
    /// Tracks of Covers, in list order.
    QList<Track> coverTracks() const;
    /// Whether the filter of Favorites lets a track through.
    bool passesFavoriteFilter(const Track& track) const;

    /// Upkeep after a change of the main list.
    void tracksChanged(const ListChange& change);

private:
    void readFilter();
    void languageChanged();

    Workspace& m_workspace;
    Preferences& m_preferences;
    PlaylistBase m_base;
    bool m_isBaseValid = true;
    std::optional<std::vector<PlaylistFolderSection>> m_sections;
    QString m_genreFilter;
    bool m_onlyUntagged = false;
};
