#pragma once

#include "core/model/Track.h"

#include <QObject>
#include <QSet>

#include <optional>

class DashboardActions;
class QAbstractItemView;
class TrackListModel;
class Workspace;

/// Keeps the selection of a view and that of the workspace the same while the view is the one shown. Changes of the
/// view are gathered and handed on once per turn of the event loop; changes of the workspace are taken at once. Thread:
/// main.
class SelectionSync : public QObject {
    Q_OBJECT

public:
    /// Owned by the view, and not active at first. The others outlive it.
    SelectionSync(QAbstractItemView& view, TrackListModel& model, Workspace& workspace, DashboardActions& actions);

    /// Whether the view is the one shown. Becoming active takes the workspace's selection over.
    void setActive(bool active);
    /// Hands on what the user selected and is still waiting; before every command.
    void flush();
    /// To be called around changes of the model's rows, during which the view's selection may shrink by itself.
    void beginRows();
    /// \param structure whether rows came, went or moved: then the workspace's selection is taken over again
    void endRows(bool structure);

    /// The selected rows of the view.
    static QSet<TrackID> selectedIDs(const QAbstractItemView& view, const TrackListModel& model);
    /// The row with the focus, selected or not.
    static std::optional<TrackID> focusedID(const QAbstractItemView& view, const TrackListModel& model);

private:
    void viewChanged();
    void workspaceChanged();
    void liftLargeSelection();
    void take();
    void applyRows(const QSet<TrackID>& ids);
    void applyFocus(const std::optional<TrackID>& focused);

    QAbstractItemView& m_view;
    TrackListModel& m_model;
    Workspace& m_workspace;
    DashboardActions& m_actions;
    QSet<TrackID> m_shown; ///< ids that the view's selection stands for
    bool m_isActive = false;
    bool m_isTaking = false; ///< the view changes because the workspace did
    bool m_isPending = false;
};
