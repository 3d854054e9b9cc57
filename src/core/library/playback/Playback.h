#pragma once

#include "core/library/playback/PlayerControl.h"

#include <QList>
#include <QObject>
#include <QSet>

class Scheduler;
class Selection;

/// The library's side of playing: what the player told last, and what it is asked when rows go. Work in the background
/// learns from here that something plays. Thread: main.
class Playback : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Selection& selection;
        Scheduler& scheduler;
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

Q_SIGNALS:
    /// The player told its state, be it the same; the circumstances of work follow it already.
    void told();

private:
    Dependencies m_dependencies;
    PlayerControl* m_player = nullptr;
    bool m_isPlaying = false;
    std::optional<TrackID> m_currentTrackID;
};
