#pragma once

#include "core/library/playback/PlayerControl.h"
#include "playback/AudioPlayer.h"

/// The player as the library sees it. A track that is being opened counts as the current one: the library's lists are
/// ahead of the disk.
class LibraryPlayer final : public PlayerControl {
public:
    /// \param player outlives it
    explicit LibraryPlayer(AudioPlayer& player)
        : m_player(player)
    {
    }

    /// The track that is being opened, else the current one.
    std::optional<TrackID> currentID() const override
    {
        const std::optional<Track>& track = m_player.requestedTrack();
        return track ? std::optional(track->id()) : std::nullopt;
    }
    void play(const Track& track) override { m_player.play(track); }
    void stopAndClear() override { m_player.stopAndClear(); }

private:
    AudioPlayer& m_player;
};
