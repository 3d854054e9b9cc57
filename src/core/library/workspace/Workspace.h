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
    /// The main list: rows of the playlist, Favorites and Covers. Every favourite is in Covers as well.
    const TrackList& tracks() const { return m_tracks; }
    /// The lists of the sections that have rows of their own.
    const TrackList& analysisTracks() const { return m_analysisTracks; }
    const TrackList& keyAnalysisTracks() const { return m_keyAnalysisTracks; }
    const TrackList& duplicateTracks() const { return m_duplicateTracks; }
    /// One of the four lists above.
    const TrackList& list(Track::MetadataDestination destination) const;
    /// The converter's queue in the order of its rows.
    const QList<ConversionItem>& conversionItems() const { return m_conversionItems; }

    /// One assignment per operation, however many tracks it touches.
    void setTracks(QList<Track> tracks) { setList(Track::MetadataDestination::Library, std::move(tracks)); }
    /// Assigns any of the four lists; nothing is told where no row differs. \param cause what the listeners are told.
    void setList(Track::MetadataDestination destination, QList<Track> tracks,
                 ListChange::Cause cause = ListChange::Cause::Other);
    /// setTracks() into the empty list, for rows whose places were entered elsewhere.
    void adoptTracks(TrackList tracks);
    /// Replaces the queue; nothing is told where no row differs.
    void setConversionItems(QList<ConversionItem> items);
    /// Folders and files that the duplicate search looks through.
    const QList<QUrl>& duplicateSearchRoots() const { return m_duplicateSearchRoots; }
    /// Replaces them; nothing is told where none differs.
    void setDuplicateSearchRoots(QList<QUrl> roots);

    /// The order or the filter of a section's rows changed although no list did.
    void noteOrderChange();

    // Selection.
    /// The row that the keyboard stands on, and the selected rows; of the section that is shown.
    const std::optional<TrackID>& selectedID() const { return m_selectedID; }
    const QSet<TrackID>& selectedIDs() const { return m_selectedIDs; }
    /// One signal when either differs.
    void setSelection(const QSet<TrackID>& ids, const std::optional<TrackID>& focused);
    /// `selectedIDs`, or the focus alone where that is empty, or nothing.
    QSet<TrackID> activeSelection() const;

    /// The section that is shown.
    LibraryTab activeTab() const { return m_activeTab; }
    /// Shows another section with its selection: both have changed when the first signal is sent.
    void switchTo(LibraryTab tab, const QSet<TrackID>& ids, const std::optional<TrackID>& focused);
    /// Shows another section with the selection that there is now.
    void setActiveTab(LibraryTab tab) { switchTo(tab, m_selectedIDs, m_selectedID); }
    /// Rises with every change of a list of tracks and of what their sections show of it.
    quint64 listRevision() const { return m_listRevision; }
    /// Rises with every change of the selection.
    quint64 selectionRevision() const { return m_selectionRevision; }
    /// Whether the window is exchanging its sections at this moment.
    bool isSwitchingSections() const { return m_isSwitchingSections; }
    void setSwitchingSections(bool value) { m_isSwitchingSections = value; }
    /// Whether the last session is being brought back: nothing is saved meanwhile.
    bool isRestoringWorkspaceSession() const { return m_isRestoring; }
    void setRestoringWorkspaceSession(bool value);
    /// Whether a field of tags has the keyboard.
    bool isEditingMetadata() const { return m_isEditingMetadata; }
    void setEditingMetadata(bool value) { m_isEditingMetadata = value; }

    /// Rises with every change of what the analysis of popularity and taste looks at.
    int playlistAnalysisRevision() const { return m_playlistAnalysisRevision; }
    /// To be called where what is analysed changed without an assignment of the list, or once for a batch of reads.
    void raisePlaylistAnalysisRevision();

    /// Tracks whose artwork is being written into the file.
    const QSet<TrackID>& artworkWritingIDs() const { return m_artworkWritingIDs; }
    void setArtworkWritingIDs(QSet<TrackID> ids);

    /// Whether a save waits for the user to say what it shall do with a file's picture and other entries.
    bool isAskingWhatSavesKeep() const { return m_isAskingWhatSavesKeep; }
    void setAskingWhatSavesKeep(bool value);

    // Messages.
    /// The message of the status line, which StatusLine sets; nothing where it is empty.
    const std::optional<WorkspaceStatus>& workspaceStatus() const { return m_status; }
    /// For StatusLine, which sees to the message's time.
    void setWorkspaceStatus(std::optional<WorkspaceStatus> status);
    /// A text that the user closes, localised.
    const std::optional<QString>& notice() const { return m_notice; }
    void setNotice(std::optional<QString> notice);
    /// The error that a dialog shows, localised; nothing once it was closed.
    const std::optional<QString>& lastError() const { return m_lastError; }
    /// What failed, localised; empty for the saving of tags.
    const QString& lastErrorTitle() const { return m_lastErrorTitle; }
    /// Shows an error in place of an earlier one, or nothing. \param title localised; empty for the saving of tags.
    void setLastError(std::optional<QString> error, const QString& title = {});

Q_SIGNALS:
    /// Before tracksChanged(), for what is derived from the list and asked by those who listen there.
    void tracksUpkeep(const ListChange& change);
    /// Of the main list, once for each assignment that changed something.
    void tracksChanged(const ListChange& change);
    /// A list other than `tracks`.
    void sectionListChanged(Track::MetadataDestination destination, const ListChange& change);
    void conversionItemsChanged();
    void duplicateSearchRootsChanged();
    /// The order or the filter of rows changed although no list did.
    void orderChanged();
    /// selectedID() or selectedIDs() differs, whatever section is shown.
    void selectionChanged();
    /// Another section is shown; its selection is in place already.
    void activeTabChanged(LibraryTab tab);
    /// isRestoringWorkspaceSession() differs.
    void restoringChanged(bool restoring);
    /// playlistAnalysisRevision() has risen, once for each change or batch.
    void playlistAnalysisRevisionChanged(int revision);
    /// With every message, be it the same text again.
    void workspaceStatusChanged();
    /// notice() differs, be it that it was closed.
    void noticeChanged();
    /// lastError() or its title differs, be it that it was closed.
    void lastErrorChanged();
    /// artworkWritingIDs() differs: a picture has begun its way into a file or has come there.
    void artworkWritingIDsChanged();
    /// isAskingWhatSavesKeep() differs: the question is to be shown, or was answered.
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
