#pragma once

#include "core/library/workspace/ListChange.h"
#include "core/library/workspace/TrackList.h"
#include "core/model/ConversionItem.h"
#include "core/model/LibraryTab.h"
#include "core/model/Track.h"
#include "core/model/WorkspaceStatus.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <optional>

/// The state that the window shows: the lists, the selection and the messages. Owned by LibraryStore. Only the concerns
/// write it; each list has one setter that runs the upkeep and sends one signal. Thread: main.
class Workspace : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Lists.
    const TrackList& tracks() const { return m_tracks; }
    const TrackList& analysisTracks() const { return m_analysisTracks; }
    const TrackList& keyAnalysisTracks() const { return m_keyAnalysisTracks; }
    const TrackList& duplicateTracks() const { return m_duplicateTracks; }
    const TrackList& list(Track::MetadataDestination destination) const;
    const QList<ConversionItem>& conversionItems() const { return m_conversionItems; }

    /// One assignment per operation, however many tracks it touches.
    void setTracks(QList<Track> tracks) { setList(Track::MetadataDestination::Library, std::move(tracks)); }
    void setList(Track::MetadataDestination destination, QList<Track> tracks,
                 ListChange::Cause cause = ListChange::Cause::Other);
    /// setTracks() into the empty list, for rows whose places were entered elsewhere.
    void adoptTracks(TrackList tracks);
    void setConversionItems(QList<ConversionItem> items);
    /// Folders and files that the duplicate search looks through.
    const QList<QUrl>& duplicateSearchRoots() const { return m_duplicateSearchRoots; }
    void setDuplicateSearchRoots(QList<QUrl> roots);

    /// The order or the filter of a section's rows changed although no list did.
    void noteOrderChange();

    // Selection.
    const std::optional<TrackID>& selectedID() const { return m_selectedID; }
    const QSet<TrackID>& selectedIDs() const { return m_selectedIDs; }
    /// One signal when either differs.
    void setSelection(const QSet<TrackID>& ids, const std::optional<TrackID>& focused);
    /// `selectedIDs`, or the focus alone where that is empty, or nothing.
    QSet<TrackID> activeSelection() const;

    LibraryTab activeTab() const { return m_activeTab; }
    /// Shows another section with its selection: one step for whoever watches.
    void switchTo(LibraryTab tab, const QSet<TrackID>& ids, const std::optional<TrackID>& focused);
    void setActiveTab(LibraryTab tab) { switchTo(tab, m_selectedIDs, m_selectedID); }
    /// Rises with every change of a list of tracks and of what their sections show of it.
    quint64 listRevision() const { return m_listRevision; }
    /// Rises with every change of the selection.
    quint64 selectionRevision() const { return m_selectionRevision; }
    bool isSwitchingSections() const { return m_isSwitchingSections; }
    void setSwitchingSections(bool value) { m_isSwitchingSections = value; }
    bool isRestoringWorkspaceSession() const { return m_isRestoring; }
    void setRestoringWorkspaceSession(bool value);
    bool isEditingMetadata() const { return m_isEditingMetadata; }
    void setEditingMetadata(bool value) { m_isEditingMetadata = value; }

    /// Rises with every change of what the analysis of popularity and taste looks at.
    int playlistAnalysisRevision() const { return m_playlistAnalysisRevision; }
    void raisePlaylistAnalysisRevision();

    /// Tracks whose artwork is being written into the file.
    const QSet<TrackID>& artworkWritingIDs() const { return m_artworkWritingIDs; }
    void setArtworkWritingIDs(QSet<TrackID> ids);

    /// Whether a save waits for the user to say what it shall do with a file's picture and other entries.
    bool isAskingWhatSavesKeep() const { return m_isAskingWhatSavesKeep; }
    void setAskingWhatSavesKeep(bool value);

    // Messages.
    const std::optional<WorkspaceStatus>& workspaceStatus() const { return m_status; }
    void setWorkspaceStatus(std::optional<WorkspaceStatus> status);
    const std::optional<QString>& notice() const { return m_notice; }
    void setNotice(std::optional<QString> notice);
    const std::optional<QString>& lastError() const { return m_lastError; }
    /// What failed, localised; empty for the saving of tags.
    const QString& lastErrorTitle() const { return m_lastErrorTitle; }
    void setLastError(std::optional<QString> error, const QString& title = {});

Q_SIGNALS:
    /// Before tracksChanged(), for what is derived from the list and asked by those who listen there.
    void tracksUpkeep(const ListChange& change);
    void tracksChanged(const ListChange& change);
    /// A list other than `tracks`.
    void sectionListChanged(Track::MetadataDestination destination, const ListChange& change);
    void conversionItemsChanged();
    void duplicateSearchRootsChanged();
    /// The order or the filter of rows changed although no list did.
    void orderChanged();
    void selectionChanged();
    void activeTabChanged(LibraryTab tab);
    void restoringChanged(bool restoring);
    void playlistAnalysisRevisionChanged(int revision);
    void workspaceStatusChanged();
    void noticeChanged();
    void lastErrorChanged();
    void artworkWritingIDsChanged();
    void askingWhatSavesKeepChanged();

private:
    void announceTracks(const ListChange& change);
    TrackList& mutableList(Track::MetadataDestination destination);

    TrackList m_tracks;
    TrackList m_analysisTracks;
    TrackList m_keyAnalysisTracks;
    TrackList m_duplicateTracks;
    QList<ConversionItem> m_conversionItems;
    QList<QUrl> m_duplicateSearchRoots;
    std::optional<TrackID> m_selectedID;
    QSet<TrackID> m_selectedIDs;
    LibraryTab m_activeTab = LibraryTab::Playlist;
    bool m_isSwitchingSections = false;
    bool m_isRestoring = false;
    bool m_isEditingMetadata = false;
    bool m_isAskingWhatSavesKeep = false;
    QSet<TrackID> m_artworkWritingIDs;
    int m_playlistAnalysisRevision = 0;
    quint64 m_listRevision = 0;
    quint64 m_selectionRevision = 0;
    std::optional<WorkspaceStatus> m_status;
    std::optional<QString> m_notice;
    std::optional<QString> m_lastError;
    QString m_lastErrorTitle;
};
