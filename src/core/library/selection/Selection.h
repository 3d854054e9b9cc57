#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/Track.h"

#include <QHash>
#include <QSet>

#include <optional>

class Order;
class Workspace;

/// The rows of the sections and the selection in them, remembered per section.
class Selection {
public:
    /// A selection: rows, and the one that the keyboard stands on. Either may be there without the other.
    struct State {
        QSet<TrackID> ids;
        std::optional<TrackID> focusedID;
        bool operator==(const State&) const = default;
    };

    /// Both outlive it.
    Selection(Workspace& workspace, Order& order);

    /// The rows of the active section in display order.
    QList<Track> visibleTracks() const;
    /// The rows of a section in display order (for the converter the main list, which its queue is filled from).
    QList<Track> tracks(LibraryTab tab) const;
    /// How many rows a section has, whatever its filter hides; jobs in the converter. One pass over the list.
    qsizetype rowCount(LibraryTab tab) const;
    /// What of these rows the active section shows: commands act on no others, whatever put them into a selection.
    QSet<TrackID> shown(const QSet<TrackID>& ids) const;
    /// Whether a selection of the section may hold this row: the section has it, whatever the order.
    bool isSelectable(LibraryTab tab, const TrackID& id) const;
    /// The selected ids, or the focus alone where there are none, reduced to what the section shows.
    QSet<TrackID> activeSelection() const;
    /// The focused row if it is visible.
    std::optional<Track> selectedTrack() const;

    /// Makes rows of the active section its selection.
    void select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused);
    /// Selects all visible rows.
    void selectAll();
    /// Stores the present selection under a section, reduced to what is in it.
    void rememberSelection(LibraryTab tab);
    /// What was remembered for a section, reduced to what is still there; mended so that a lone row is focused and a
    /// focus is selected.
    State selectionState(LibraryTab tab);
    /// What is remembered for a section; nothing if it was never left.
    std::optional<State> rememberedState(LibraryTab tab) const;
    /// Remembers a selection of rows that the section has.
    void restoreState(LibraryTab tab, const State& state);
    /// Shows another section: remembers the selection of the one shown and takes the other's up.
    void switchTo(LibraryTab tab);
    /// Takes rows out of what is remembered for every section: they are not selected again when they come back.
    void forget(const QSet<TrackID>& ids);
    /// Takes rows that are gone from the section out of the present selection.
    void dropInvisible();

private:
    /// What of a selection is known to be rows of the section, until a list changes.
    struct Checked {
        State state;
        quint64 listRevision = 0;
    };
    bool shows(LibraryTab tab, const Track& track) const;
    State reduced(const State& state, LibraryTab tab) const;
    State presentState() const;
    void noteChecked();

    Workspace& m_workspace;
    Order& m_order;
    QHash<QString, Checked> m_statesByTab; // by raw value of the section
    // The present selection was made from visible rows; it need not be checked again, which takes time for 100,000 of
    // them.
    quint64 m_checkedListRevision = 0;
    quint64 m_checkedSelectionRevision = 0;
};
