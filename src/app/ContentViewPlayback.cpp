#include "app/ContentView.h"

#include "async/MainQueue.h"
#include "core/library/LibraryStore.h"
#include "core/library/order/Order.h"
#include "core/library/selection/Selection.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"

#include <algorithm>

// What the dashboard does with the player: the play key, the steps through the rows, and the next track.

namespace {

using Direction = Notifications::Direction;

std::optional<qsizetype> rowOf(const QList<Track>& rows, const std::optional<TrackID>& id)
{
    const auto place = id ? std::ranges::find(rows, *id, &Track::id) : rows.cend();
    return place == rows.cend() ? std::nullopt : std::optional(place - rows.cbegin());
}

/// The row that a step leads to; with nowhere to step from, the list's near end. Nothing beyond the ends.
std::optional<qsizetype> stepped(const std::optional<qsizetype>& from, int offset, qsizetype count)
{
    if (offset == 0 || count == 0)
        return std::nullopt;
    if (!from)
        return offset > 0 ? 0 : count - 1;
    const qsizetype row = std::clamp(*from + offset, qsizetype(0), count - 1);
    return row == *from ? std::nullopt : std::optional(row);
}

std::optional<TrackID> requestedID(const AudioPlayer& player)
{
    const std::optional<Track>& track = player.requestedTrack();
    return track ? std::optional(track->id()) : std::nullopt;
}

bool isPlayingOrAboutTo(const AudioPlayer& player)
{
    return player.isPlaying() || player.isOpening();
}

} // namespace

void ContentView::bindPlayer()
{
    using ID = CommandID;
    const auto seek = [this](int steps) {
        return [this, steps](const CommandTarget&) { m_player.seek(m_library.preferences().seekStep.get() * steps); };
    };
    const auto step = [this](int offset) { return [this, offset](const CommandTarget&) { selectAdjacent(offset); }; };
    m_commands.bind(ID::PlayPause, [this](const CommandTarget&) { toggleSelectedTrack(); });
    m_commands.bind(ID::PlayRow, [this](const CommandTarget& target) {
        if (target.track)
            m_player.play(*target.track);
    });
    m_commands.bind(ID::SeekBack, seek(-1));
    m_commands.bind(ID::SeekForward, seek(1));
    m_commands.bind(ID::PreviousTrack, step(-1));
    m_commands.bind(ID::NextTrack, step(1));
}

void ContentView::toggleSelectedTrack()
{
    VELMORA_ASSERT_MAIN_THREAD();
    const std::optional<Track> selected = m_library.selection().selectedTrack();
    if (selected && selected->id() != requestedID(m_player))
        m_player.play(*selected);
    else
        m_player.toggle();
}

void ContentView::selectAdjacent(int offset)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Notifications& notifications = m_library.notifications();
    const LibrarySection& section = LibrarySection::of(m_library.workspace().activeTab());
    const Direction direction = offset < 0 ? Direction::Up : Direction::Down;
    if (section.holdsJobs)
        emit notifications.velmoraNavigateConversionItems(direction);
    else if (section.ownsSelection)
        emit notifications.velmoraNavigateDuplicateItems(direction);
    if (section.ownsSelection)
        return;
    const QList<Track> rows = m_library.selection().visibleTracks();
    const std::optional<TrackID>& focused = m_library.workspace().selectedID();
    const std::optional<qsizetype> row =
        stepped(rowOf(rows, focused ? focused : requestedID(m_player)), offset, rows.size());
    if (!row)
        return;
    const Track& track = rows[*row];
    // Playing the current track again would pause it.
    const bool goesAlong = isPlayingOrAboutTo(m_player) && track.id() != requestedID(m_player);
    goTo(track, goesAlong);
}

void ContentView::goTo(const Track& track, bool plays)
{
    select({track.id()}, track.id());
    if (plays)
        m_player.play(track);
    if (m_library.workspace().activeTab() == LibraryTab::Favorites)
        emit m_library.notifications().velmoraFocusFavoriteTrack(track.id());
}

void ContentView::playbackDidFinish()
{
    if (!LibrarySection::of(m_library.workspace().activeTab()).ownsSelection)
        playNextAfterCompletion();
}

void ContentView::playNextAfterCompletion()
{
    const QList<Track> rows = m_library.selection().visibleTracks();
    const std::optional<qsizetype> row = rowOf(rows, m_player.currentID());
    if (!row || *row + 1 >= rows.size())
        return;
    goTo(rows[*row + 1], true);
}

void ContentView::findReturnPlayback()
{
    m_playlistReturnPlaybackID.reset();
    const std::optional<Track>& track = m_player.requestedTrack();
    if (!track || !isPlayingOrAboutTo(m_player))
        return;
    const QList<Track> rows = m_library.order().playlistTracks();
    if (rowOf(rows, track->id())) {
        m_playlistReturnPlaybackID = track->id();
        return;
    }
    const QUrl url = FileURL::standardized(track->url());
    const auto sameFile =
        std::ranges::find_if(rows, [&](const Track& row) { return FileURL::standardized(row.url()) == url; });
    if (sameFile != rows.cend())
        m_playlistReturnPlaybackID = sameFile->id();
}
