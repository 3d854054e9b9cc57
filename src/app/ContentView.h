#pragma once

#include "core/library/imports/Imports.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"

#include <QObject>

#include <functional>
#include <optional>

class AudioPlayer;
class LibraryStore;

/// The dashboard: owns the events that no single section owns and turns them into calls on the store. Has no widgets of
/// its own; what it needs of the window comes in as functions. Thread: main.
class ContentView : public QObject, public DashboardActions {
    Q_OBJECT

public:
    /// What the dashboard needs of the window and the desktop; an empty function means that there is none.
    struct Surroundings {
        /// Lets text fields commit what is being typed.
        std::function<void()> endEditing;
        /// Opens the file dialog; \p chosen is called on confirmation only.
        std::function<void(LibraryTab tab, std::function<void(const QList<QUrl>&)> chosen)> chooseFiles;
        /// Shows a folder in the system's file manager.
        std::function<void(const QUrl& folder)> openFolder;
        /// Opens the file dialog for a picture; \p chosen gets the file's bytes, on confirmation only.
        std::function<void(std::function<void(const QByteArray& image)> chosen)> chooseImage = {};
    };

    /// Binds the commands of the store and the dashboard. \param library, player outlive it.
    ContentView(LibraryStore& library, AudioPlayer& player, Surroundings surroundings);
    ~ContentView() override;

    /// Lives as long as the dashboard.
    CommandCenter& commands() override { return m_commands; }
    std::optional<TrackID> playlistReturnPlaybackID() const override { return m_playlistReturnPlaybackID; }
    /// Imports them as the section does it, then shows the section. Nothing happens without any.
    void receiveDroppedTracks(const QList<QUrl>& urls, LibraryTab tab) override;
    void select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused) override;
    void saveTags(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids) override;
    /// Says so in the status line while a picture is on its way into one of the files.
    void assignArtwork(const QByteArray& image, const QSet<TrackID>& ids) override;
    void chooseArtwork(std::function<void(const QByteArray& image)> chosen) override;
    void answerWhatSavesKeep(bool keepsOthers) override;
    void setPlaylistScrolling(bool scrolling) override;
    void setTrackSortField(TrackSortField field, LibraryTab tab) override;
    void setTrackSortDirection(TrackSortDirection direction, LibraryTab tab) override;
    void activateFavoriteSortFromHeader(TrackSortField field) override;
    void dismissMessage() override;

    /// Shows a section, with the selection that it had; what is being typed is committed before. Nothing happens for
    /// the one that is shown.
    void activateTab(LibraryTab tab);

private:
    void bindCommands();
    void bindPlayer();
    void toggleSelectedTrack();
    void selectAdjacent(int offset);
    void reveal(const QSet<TrackID>& ids);
    void chooseAndAssignCover(const QSet<TrackID>& ids);
    void choose(LibraryTab tab);
    void importInto(const QList<QUrl>& urls, LibraryTab tab);
    void importWaiting(bool isRestoring);
    void addImportedToFavorites(const Imports::Outcome& outcome);
    void preferenceChanged(const QString& key);
    void deactivatePopularitySort();
    void restartOnboarding();
    void playbackDidFinish();
    void playNextAfterCompletion();
    void goTo(const Track& track, bool plays);
    void findReturnPlayback();
    void afterSwitch(LibraryTab tab);

    /// Files that came before the last session was back.
    struct Waiting {
        QList<QUrl> urls;
        LibraryTab tab;
    };

    LibraryStore& m_library;
    AudioPlayer& m_player;
    Surroundings m_surroundings;
    CommandCenter m_commands;
    std::optional<TrackID> m_playlistReturnPlaybackID;
    QList<Waiting> m_waiting;
};
