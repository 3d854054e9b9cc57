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

class CommandCenter;

/// What the window asks of the dashboard beside commands: drops, dialogs, the selection. The application implements it;
/// the window never calls the store's operations itself, so that keyboard, menu and voice do the same. Thread: main.
class DashboardActions {
public:
    virtual ~DashboardActions() = default;

    /// Carries out what stands in the table of commands.
    virtual CommandCenter& commands() = 0;
    /// The row that was playing when the playlist was last entered: its list scrolls there.
    virtual std::optional<TrackID> playlistReturnPlaybackID() const = 0;
    /// Files and folders dropped on a section.
    virtual void receiveDroppedTracks(const QList<QUrl>& urls, LibraryTab tab) = 0;
    /// Makes rows of the section shown its selection. \param focused the row that keys and the player's bar start from.
    virtual void select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused) = 0;
    /// Writes the chosen fields of \p tags into the rows and their files, as one step of undo.
    virtual void saveTags(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids) = 0;
    /// Writes a picture into the files. \param image the bytes of any picture.
    virtual void assignArtwork(const QByteArray& image, const QSet<TrackID>& ids) = 0;
    /// The file dialog for a picture; \p chosen gets the bytes of the file, on confirmation only.
    virtual void chooseArtwork(std::function<void(const QByteArray& image)> chosen) = 0;
    /// The answer to Workspace::isAskingWhatSavesKeep().
    virtual void answerWhatSavesKeep(bool keepsOthers) = 0;
    /// Whether the playlist is moving: results of reads and analyses wait until it rests.
    virtual void setPlaylistScrolling(bool scrolling) = 0;
    /// Sorts the playlist or Favorites by a field, or turns its order.
    virtual void setTrackSortField(TrackSortField field, LibraryTab tab) = 0;
    /// The folders' own order has one direction and does not turn.
    virtual void setTrackSortDirection(TrackSortDirection direction, LibraryTab tab) = 0;
    /// A click on a column heading of Favorites.
    virtual void activateFavoriteSortFromHeader(TrackSortField field) = 0;
    /// Takes the message away that lies over the window: the error if there is one, else the notice.
    virtual void dismissMessage() = 0;
};
