#pragma once

#include "core/library/removal/RemovedTrack.h"
#include "core/library/undo/History.h"

#include <QHash>
#include <QList>
#include <QSet>

class Removal;

/// What one action of the user removed. A move to the Trash is a step from its beginning: its entries come when its
/// last file has moved, and go one by one as rows come back.
class RemovalStep final : public History::Step, public std::enable_shared_from_this<RemovalStep> {
public:
    /// \param removal outlives the step's last use. \param actionName localisation key.
    RemovalStep(Removal& removal, History::Kind kind, QString actionName, QList<RemovedTrack> entries = {});

    QString name() const override { return m_actionName; }
    bool isSpent() const override { return !m_isMoving && m_entries.isEmpty(); }
    qint64 byteCount() const override;
    History::Outcome undo() override;

    /// What can still be taken back; empty while its move to the Trash is under way.
    const QList<RemovedTrack>& entries() const { return m_entries; }
    /// The move is over. \param entries of the files that went.
    void moved(QList<RemovedTrack> entries);
    /// The files as they were when their rows left.
    void setStamps(const QHash<QUrl, FileStamp>& stamps);
    /// These are back, or never can be.
    void forget(const QSet<TrackID>& ids);

private:
    Removal& m_removal;
    QString m_actionName;
    QList<RemovedTrack> m_entries;
    bool m_isMoving;
};
