#include "ui/tracks/PlayingMark.h"

#include "playback/AudioPlayer.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QPainter>

namespace {
constexpr int kGlyph = 22;

QRect centred(const QRect& rect, int side)
{
    return {rect.left() + (rect.width() - side) / 2, rect.top() + (rect.height() - side) / 2, side, side};
}
} // namespace

PlayingMark::PlayingMark(const AudioPlayer& player)
    : m_player(player)
{
    remember();
}

PlayingMark::State PlayingMark::of(const Track& track) const
{
    if (!m_player.currentID() || !m_player.matchesCurrentTrack(track))
        return State::None;
    return m_player.isPlaying() ? State::Playing : State::Paused;
}

bool PlayingMark::isAffected(const Track& track) const
{
    const bool wasMarked = m_drawn && (m_drawn->id() == track.id() || m_drawn->url() == track.url());
    return wasMarked || of(track) != State::None;
}

void PlayingMark::remember()
{
    m_drawn = m_player.currentTrack();
}

void PlayingMark::paint(QPainter& painter, const QRect& rect, State state, const Theme& theme)
{
    if (state == State::None)
        return;
    const bool isPlaying = state == State::Playing;
    Icons::paint(painter, centred(rect, kSide), isPlaying ? QStringLiteral("play") : QStringLiteral("play-outline"),
                 theme.colours().accent);
}

void PlayingMark::paintButton(QPainter& painter, const QRect& cover, int radius, State state, const Theme& theme)
{
    Paint::roundedFill(painter, cover, radius, theme.colours().coverVeil);
    Icons::paint(painter, centred(cover, kGlyph),
                 state == State::Playing ? QStringLiteral("pause") : QStringLiteral("play"),
                 theme.colours().coverGlyph);
}
