#include "core/library/playback/Playback.h"

#include "async/MainQueue.h"
#include "core/library/playback/PlaybackPlan.h"
#include "core/library/selection/Selection.h"
#include "work/Scheduler.h"

Playback::Playback(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

void Playback::setPlayer(PlayerControl* player)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_player = player;
}

void Playback::playbackStateDidChange(bool isPlaying, const std::optional<TrackID>& currentTrackID)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_isPlaying = isPlaying;
    m_currentTrackID = currentTrackID;
    m_dependencies.scheduler.setPlaying(isPlaying);
    emit told();
}

void Playback::continuePlaybackAfterRemoving(const QSet<TrackID>& ids, const QList<Track>& rows)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_player)
        return;
    const PlaybackPlan::Move move = PlaybackPlan::afterRemoving(m_player->currentID(), ids, rows);
    switch (move.kind) {
    case PlaybackPlan::Move::Kind::Stay:
        return;
    case PlaybackPlan::Move::Kind::Stop:
        m_player->stopAndClear();
        return;
    case PlaybackPlan::Move::Kind::Play:
        m_dependencies.selection.select({move.track->id()}, move.track->id());
        m_player->play(*move.track);
        return;
    }
}
