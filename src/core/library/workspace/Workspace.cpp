#include "core/library/workspace/Workspace.h"

#include "async/MainQueue.h"

namespace {

/// Whether every favourite is in Covers, as it has to be.
[[maybe_unused]] bool favoritesAreInCovers(const TrackList& tracks)
{
    return std::ranges::all_of(tracks,
                               [](const Track& track) { return !track.isFavorite() || track.isInCoverWorkspace(); });
}

} // namespace

const TrackList& Workspace::list(Track::MetadataDestination destination) const
{
    return const_cast<Workspace*>(this)->mutableList(destination);
}

TrackList& Workspace::mutableList(Track::MetadataDestination destination)
{
    switch (destination) {
    case Track::MetadataDestination::Library:
        return m_tracks;
    case Track::MetadataDestination::Analysis:
        return m_analysisTracks;
    case Track::MetadataDestination::MusicalKey:
        return m_keyAnalysisTracks;
    case Track::MetadataDestination::Duplicates:
        return m_duplicateTracks;
    }
    Q_UNREACHABLE();
}

void Workspace::setList(Track::MetadataDestination destination, QList<Track> tracks, ListChange::Cause cause)
{
    VELMORA_ASSERT_MAIN_THREAD();
    ListChange change = mutableList(destination).assign(std::move(tracks));
    change.cause = cause;
    if (change.kind == ListChange::Kind::Contents && change.rows.isEmpty())
        return;
    ++m_listRevision;
    if (destination != Track::MetadataDestination::Library) {
        emit sectionListChanged(destination, change);
        return;
    }
    announceTracks(change);
}

void Workspace::adoptTracks(TrackList tracks)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Q_ASSERT(m_tracks.isEmpty());
    if (tracks.isEmpty())
        return;
    m_tracks = std::move(tracks);
    ++m_listRevision;
    announceTracks({ListChange::Kind::Appended, {}, 0});
}

void Workspace::announceTracks(const ListChange& change)
{
    Q_ASSERT(favoritesAreInCovers(m_tracks));
    emit tracksUpkeep(change);
    // A batch of reads raises the revision itself, once; a star changes nothing that is analysed.
    if (change.cause == ListChange::Cause::Other)
        raisePlaylistAnalysisRevision();
    emit tracksChanged(change);
}

void Workspace::setConversionItems(QList<ConversionItem> items)
{
    if (m_conversionItems == items)
        return;
    m_conversionItems = std::move(items);
    emit conversionItemsChanged();
}

void Workspace::setDuplicateSearchRoots(QList<QUrl> roots)
{
    if (m_duplicateSearchRoots == roots)
        return;
    m_duplicateSearchRoots = std::move(roots);
    emit duplicateSearchRootsChanged();
}

void Workspace::setSelection(const QSet<TrackID>& ids, const std::optional<TrackID>& focused)
{
    switchTo(m_activeTab, ids, focused);
}

QSet<TrackID> Workspace::activeSelection() const
{
    if (m_selectedIDs.isEmpty() && m_selectedID)
        return {*m_selectedID};
    return m_selectedIDs;
}

void Workspace::noteOrderChange()
{
    ++m_listRevision;
    emit orderChanged();
}

void Workspace::switchTo(LibraryTab tab, const QSet<TrackID>& ids, const std::optional<TrackID>& focused)
{
    const bool selectionMoves = m_selectedID != focused || m_selectedIDs != ids;
    const bool tabMoves = m_activeTab != tab;
    m_selectedIDs = ids;
    m_selectedID = focused;
    m_activeTab = tab;
    m_selectionRevision += selectionMoves ? 1 : 0;
    if (tabMoves)
        emit activeTabChanged(tab);
    if (selectionMoves)
        emit selectionChanged();
}

void Workspace::setRestoringWorkspaceSession(bool value)
{
    if (m_isRestoring == value)
        return;
    m_isRestoring = value;
    emit restoringChanged(value);
}

void Workspace::raisePlaylistAnalysisRevision()
{
    emit playlistAnalysisRevisionChanged(++m_playlistAnalysisRevision);
}

void Workspace::setWorkspaceStatus(std::optional<WorkspaceStatus> status)
{
    m_status = std::move(status);
    emit workspaceStatusChanged();
}

void Workspace::setNotice(std::optional<QString> notice)
{
    if (m_notice == notice)
        return;
    m_notice = std::move(notice);
    emit noticeChanged();
}

void Workspace::setArtworkWritingIDs(QSet<TrackID> ids)
{
    if (m_artworkWritingIDs == ids)
        return;
    m_artworkWritingIDs = std::move(ids);
    emit artworkWritingIDsChanged();
}

void Workspace::setAskingWhatSavesKeep(bool value)
{
    if (std::exchange(m_isAskingWhatSavesKeep, value) != value)
        emit askingWhatSavesKeepChanged();
}

void Workspace::setLastError(std::optional<QString> error, const QString& title)
{
    if (m_lastError == error && m_lastErrorTitle == title)
        return;
    m_lastErrorTitle = title;
    m_lastError = std::move(error);
    emit lastErrorChanged();
}
