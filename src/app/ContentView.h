#pragma once

#include "core/library/imports/Imports.h"
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

    ContentView(LibraryStore& library, AudioPlayer& player, Surroundings surroundings);
    ~ContentView() override;

    void activateTab(LibraryTab tab) override;
    std::optional<TrackID> playlistReturnPlaybackID() const override { return m_playlistReturnPlaybackID; }
    void receiveDroppedTracks(const QList<QUrl>& urls, LibraryTab tab) override;
    void openPanel() override { choose(LibraryTab::Playlist); }
    void openSectionPanel() override;
    void select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused) override;
    void playTrack(const Track& track) override;
    void toggleSelectedTrack() override;
    void selectAdjacent(int offset) override;
    void seekSteps(int steps) override;
    void toggleFavorites(const QSet<TrackID>& ids) override;
    void removeFromFavorites(const QSet<TrackID>& ids) override;
    void removeFromCovers(const QSet<TrackID>& ids) override;
    void removeFromSection(LibraryTab tab, const QSet<TrackID>& ids) override;
    void moveToTrash(const QSet<TrackID>& ids) override;
    void addToAnalysis(const QSet<TrackID>& ids) override;
    void addToConversion(const QSet<TrackID>& ids) override;
    void assignGenre(const QString& genre, const QSet<TrackID>& ids) override;
    void assignComment(const QString& comment, const QSet<TrackID>& ids) override;
    void assignAlbum(const QString& album, const QSet<TrackID>& ids) override;
    void clearGenres(const QSet<TrackID>& ids) override;
    void clearComments(const QSet<TrackID>& ids) override;
    void saveTags(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids) override;
    void assignArtwork(const QByteArray& image, const QSet<TrackID>& ids) override;
    void chooseArtwork(std::function<void(const QByteArray& image)> chosen) override;
    void restoreOriginalTags(const QSet<TrackID>& ids) override;
    void detectTempoAgain(const QSet<TrackID>& ids) override;
    void stopTempoAnalysis() override;
    void writeTempo(const QSet<TrackID>& ids) override;
    void scaleTempo(double factor, const QSet<TrackID>& ids) override;
    void setTempo(int bpm, const QSet<TrackID>& ids) override;
    void cancelTagWrites() override;
    void stopMovingFiles() override;
    void trashStrayTemporaries() override;
    void answerWhatSavesKeep(bool keepsOthers) override;
    void openMusicalKeyPanel() override { choose(LibraryTab::MusicalKey); }
    void analyzeMusicalKey(const QSet<TrackID>& ids) override;
    void stopMusicalKeyAnalysis() override;
    void writeAnalyzedMusicalKeys(const QSet<TrackID>& ids) override;
    void revealInFileManager(const QSet<TrackID>& ids) override;
    void setPlaylistScrolling(bool scrolling) override;
    void setTrackSortField(TrackSortField field, LibraryTab tab) override;
    void setTrackSortDirection(TrackSortDirection direction, LibraryTab tab) override;
    void activateFavoriteSortFromHeader(TrackSortField field) override;
    void dismissNotice() override;
    void dismissLastError() override;

private:
    void choose(LibraryTab tab);
    void importInto(const QList<QUrl>& urls, LibraryTab tab);
    void addImportedToFavorites(const Imports::Outcome& outcome);
    void preferenceChanged(const QString& key);
    void deactivatePopularitySort();
    void restartOnboarding();
    void playbackDidFinish();
    void playNextAfterCompletion();
    void goTo(const Track& track, bool plays);
    void findReturnPlayback();
    void afterSwitch(LibraryTab tab);

    LibraryStore& m_library;
    AudioPlayer& m_player;
    Surroundings m_surroundings;
    std::optional<TrackID> m_playlistReturnPlaybackID;
};
