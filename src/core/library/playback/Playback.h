#pragma once

#include "core/library/playback/PlayerControl.h"

#include <QList>
#include <QSet>

#include <functional>

class Selection;

/// The library's side of playing: what the player told last, and what it is asked when rows go. Thread: main.
class Playback {
public:
    struct Dependencies {
        Selection& selection;
        /// Called with what the player told; may be empty.
        std::function<void(bool isPlaying, const std::optional<TrackID>& currentTrackID)> playbackStateDidChange;
    };

    explicit Playback(const Dependencies& dependencies);

    /// Gives the player that plays the library's tracks. \param player not owned; null before it goes.
    void setPlayer(PlayerControl* player);
    /// Takes over what the player tells after every change of its state.
    void playbackStateDidChange(bool isPlaying, const std::optional<TrackID>& currentTrackID);
    /// Whether the player played when it told last.
    bool isPlaying() const { return m_isPlaying; }
    /// The player's track when it told last.
    const std::optional<TrackID>& currentTrackID() const { return m_currentTrackID; }
    /// Lets the player go on with the row that takes its track's place, which becomes the selection; stops it where
    /// none is left. \param rows the rows as they were before the removal.
    void continuePlaybackAfterRemoving(const QSet<TrackID>& ids, const QList<Track>& rows);

private:
    Dependencies m_dependencies;
    PlayerControl* m_player = nullptr;
    bool m_isPlaying = false;
    std::optional<TrackID> m_currentTrackID;
};
