#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/TagField.h"
#include "core/model/Track.h"
#include "core/model/TrackSort.h"

#include <QList>
#include <QSet>
#include <QUrl>

#include <functional>
#include <optional>

/// What the window asks of the dashboard. The application implements it; the window never calls the store's operations
/// behind its back, so that keyboard, menu and voice do the same. Thread: main.
class DashboardActions {
public:
    virtual ~DashboardActions() = default;

    virtual void activateTab(LibraryTab tab) = 0;
    /// The row that was playing when the playlist was last entered: its list scrolls there.
    virtual std::optional<TrackID> playlistReturnPlaybackID() const = 0;
    /// Files and folders dropped on a section.
    virtual void receiveDroppedTracks(const QList<QUrl>& urls, LibraryTab tab) = 0;
    /// The file dialog of the menu: into the playlist.
    virtual void openPanel() = 0;
    /// The file dialog of the section shown: into that section.
    virtual void openSectionPanel() = 0;
    virtual void select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused) = 0;
    /// Plays a row, or toggles it when it is the current one.
    virtual void playTrack(const Track& track) = 0;
    /// The play key: plays the focused row, or toggles what is current.
    virtual void toggleSelectedTrack() = 0;
    /// Moves the focus by rows of the section shown; a player that is playing goes along.
    virtual void selectAdjacent(int offset) = 0;
    /// Seeks by the step of the preferences; a negative \p steps goes back.
    virtual void seekSteps(int steps) = 0;
    virtual void toggleFavorites(const QSet<TrackID>& ids) = 0;
    virtual void removeFromFavorites(const QSet<TrackID>& ids) = 0;
    virtual void removeFromCovers(const QSet<TrackID>& ids) = 0;
    /// Takes rows out of a section, whatever that means there.
    virtual void removeFromSection(LibraryTab tab, const QSet<TrackID>& ids) = 0;
    /// Moves the files of rows of the section shown to the Trash.
    virtual void moveToTrash(const QSet<TrackID>& ids) = 0;
    virtual void addToAnalysis(const QSet<TrackID>& ids) = 0;
    virtual void addToConversion(const QSet<TrackID>& ids) = 0;
    virtual void assignGenre(const QString& genre, const QSet<TrackID>& ids) = 0;
    virtual void assignComment(const QString& comment, const QSet<TrackID>& ids) = 0;
    virtual void assignAlbum(const QString& album, const QSet<TrackID>& ids) = 0;
    virtual void clearGenres(const QSet<TrackID>& ids) = 0;
    virtual void clearComments(const QSet<TrackID>& ids) = 0;
    /// Writes the chosen fields of \p tags into the rows and their files, as one step of undo.
    virtual void saveTags(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids) = 0;
    /// Writes a picture into the files. \param image the bytes of any picture.
    virtual void assignArtwork(const QByteArray& image, const QSet<TrackID>& ids) = 0;
    /// The file dialog for a picture; \p chosen gets the bytes of the file, on confirmation only.
    virtual void chooseArtwork(std::function<void(const QByteArray& image)> chosen) = 0;
    /// Puts the tags back that the files had before the program first changed them.
    virtual void restoreOriginalTags(const QSet<TrackID>& ids) = 0;
    /// Looks for the tempo of rows without one in their tags again.
    virtual void detectTempoAgain(const QSet<TrackID>& ids) = 0;
    /// Gives up looking for tempos; what was found stays.
    virtual void stopTempoAnalysis() = 0;
    /// Writes tempos that were estimated into the tags.
    virtual void writeTempo(const QSet<TrackID>& ids) = 0;
    /// Multiplies the tempos shown, as estimates. \param factor 2 or 0.5.
    virtual void scaleTempo(double factor, const QSet<TrackID>& ids) = 0;
    /// Makes a tempo the estimate of rows.
    virtual void setTempo(int bpm, const QSet<TrackID>& ids) = 0;
    /// Stops the writing of a batch before its next file.
    virtual void cancelTagWrites() = 0;
    /// Stops the moving of files to the Trash, or back, before the next file.
    virtual void stopMovingFiles() = 0;
    /// Moves what interrupted writes left behind to the Trash.
    virtual void trashStrayTemporaries() = 0;
    /// The answer to Workspace::isAskingWhatSavesKeep().
    virtual void answerWhatSavesKeep(bool keepsOthers) = 0;
    /// The file dialog of the key section.
    virtual void openMusicalKeyPanel() = 0;
    /// Estimates the keys of rows of the key section.
    virtual void analyzeMusicalKey(const QSet<TrackID>& ids) = 0;
    /// Drops what of it has not been done yet.
    virtual void stopMusicalKeyAnalysis() = 0;
    /// Writes the estimated keys of such rows into their files.
    virtual void writeAnalyzedMusicalKeys(const QSet<TrackID>& ids) = 0;
    /// Shows the files in the system's file manager.
    virtual void revealInFileManager(const QSet<TrackID>& ids) = 0;
    virtual void setPlaylistScrolling(bool scrolling) = 0;
    /// Sorts the playlist or Favorites by a field, or turns its order.
    virtual void setTrackSortField(TrackSortField field, LibraryTab tab) = 0;
    virtual void setTrackSortDirection(TrackSortDirection direction, LibraryTab tab) = 0;
    /// A click on a column heading of Favorites.
    virtual void activateFavoriteSortFromHeader(TrackSortField field) = 0;
    virtual void dismissNotice() = 0;
    virtual void dismissLastError() = 0;
};
