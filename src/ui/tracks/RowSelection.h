#pragma once

#include <QItemSelectionModel>

/// The selection of a list that may consist of very many runs of rows. Thread: main.
class RowSelection : public QItemSelectionModel {
    Q_OBJECT

public:
    using QItemSelectionModel::QItemSelectionModel;

    /// Where a new selection takes the old one's place and either has many runs, the old one goes first, with a signal
    /// of its own: the toolkit would cut each run by each other one to find what they share.
    void select(const QItemSelection& selection, SelectionFlags command) override;
    using QItemSelectionModel::select;
};
