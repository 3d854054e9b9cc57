#pragma once

#include "core/model/Track.h"

#include <optional>

class AudioPlayer;
class QPainter;
class QRect;
class Theme;

/// The mark of the current track in a list: a triangle while it plays, its outline while it is paused.
class PlayingMark {
public:
    /// What the player does with a row's file.
    enum class State { None, Playing, Paused };

    /// Pixels of its side.
    static constexpr int kSide = 18;

    /// \param player outlives the mark
    explicit PlayingMark(const AudioPlayer& player);

    /// By the file: two rows of one file are marked alike.
    State of(const Track& track) const;
    /// Whether the mark of a row may differ from what was drawn before the last change of the player.
    bool isAffected(const Track& track) const;
    /// The rows are repainted: what is marked now is what was drawn.
    void remember();

    /// In the middle of the rectangle; nothing for State::None.
    static void paint(QPainter& painter, const QRect& rect, State state, const Theme& theme);
    /// The button that a cover shows under the pointer, with what a click would do.
    static void paintButton(QPainter& painter, const QRect& cover, int radius, State state, const Theme& theme);

private:
    const AudioPlayer& m_player;
    std::optional<Track> m_drawn; ///< current track when the rows were painted
};
