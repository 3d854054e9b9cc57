#pragma once

#include "core/library/tempo/Tempo.h"
#include "ui/cells/KeyState.h"
#include "ui/cells/TrackColumns.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QSet>

#include <functional>
#include <optional>

/// A list of tracks for views. Takes whole lists and tells the views only what differs, so that selection, scroll
/// position and open menus stay while rows stream in. Thread: main.
class TrackListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /// \param columns left to right; they never change.
    explicit TrackListModel(std::vector<TrackColumn> columns, QObject* parent = nullptr);

    /// Becomes this list. Rows are matched by id, values by pointer; costs no more than one pass over pointers where
    /// the structure is the same. Ids occur once (else the model resets itself).
    void setRows(const QList<Track>& rows);
    /// The rows as they are shown, top to bottom.
    const QList<Track>& rows() const { return m_rows; }
    const Track& track(int row) const { return m_rows[row]; }
    /// The row of an id. One pass over the list.
    std::optional<int> rowOf(const TrackID& id) const;

    /// The texts of the column Status.
    void setStatusTexts(const QHash<TrackID, QString>& texts);
    /// Empty where none was set.
    QString statusText(const TrackID& id) const { return m_statusTexts.value(id); }

    /// What tells the tempos beside the tags; without it there are none.
    void setBPMStates(std::function<PlaylistBPMState(const TrackID&)> states) { m_bpmStates = std::move(states); }
    PlaylistBPMState bpmState(const TrackID& id) const { return m_bpmStates ? m_bpmStates(id) : PlaylistBPMState(); }
    /// The tempo of this row is another one now. Rows out of view need not be told of.
    void bpmStateChanged(int row);
    /// What the columns about keys show. \param stateOf asked when a cell is; may be empty.
    void setKeyStates(std::function<KeyState(const TrackID&)> stateOf) { m_keyStateOf = std::move(stateOf); }
    KeyState keyState(const TrackID& id) const { return m_keyStateOf ? m_keyStateOf(id) : KeyState(); }
    /// That of these rows is another one now. One pass over the list.
    void keyStatesChanged(const QSet<TrackID>& ids);

    const std::vector<TrackColumn>& columns() const { return m_columns; }
    TrackColumn columnAt(int column) const { return m_columns[static_cast<size_t>(column)]; }
    /// Where a column stands; nothing if it is not shown here.
    std::optional<int> columnOf(TrackColumn column) const;
    /// The texts changed their language.
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

Q_SIGNALS:
    /// In setRows, before rows come, go or move.
    void structureAboutToChange();
    /// After setRows, once, if anything differed. \param structure whether rows came, went or moved.
    void rowsReplaced(bool structure);

private:
    void replaceMiddle(const QList<Track>& rows, int first, int oldEnd, int newEnd);
    void replaceByOneRun(const QList<Track>& rows, int first, int oldEnd, int newEnd);
    bool onlyMoves(const QList<Track>& rows, int first, int end);
    bool onlyRemoves(const QList<Track>& rows, int first, int oldEnd, int newEnd);
    template <typename IsGone>
    void removeThose(int first, int oldEnd, IsGone isGone);
    void arrange(const QList<Track>& rows, int first, int newEnd);
    void insertMissing(const QList<Track>& rows, const QSet<TrackID>& known, int first, int newEnd);
    void removeRun(int first, int end);
    void permute(int first, const QList<int>& order);
    void takeValues(const QList<Track>& rows);
    void emitChanged(const QList<int>& rows);

    std::vector<TrackColumn> m_columns;
    QList<Track> m_rows;
    QHash<TrackID, QString> m_statusTexts;
    std::function<PlaylistBPMState(const TrackID&)> m_bpmStates;
    std::function<KeyState(const TrackID&)> m_keyStateOf;
};
