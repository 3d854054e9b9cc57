#pragma once

#include "core/library/tagwriting/StepAnnouncement.h"
#include "core/library/tagwriting/TagSaver.h"
#include "core/library/undo/History.h"
#include "core/model/Track.h"

#include <QHash>
#include <QList>

#include <memory>

class OriginalTags;
struct FileChange;

/// A change of whole tags, as undo and redo see it: what stood in each file before, and what was left there. A step
/// from its beginning: taken back before its end it waits for that. Thread: main.
class PutBackStep final : public History::Step, public std::enable_shared_from_this<PutBackStep> {
public:
    using Direction = StepAnnouncement::Direction;
    struct Row {
        QUrl url;
        QByteArray tags;       ///< what stood before this or its undo; empty where that is not kept
        AudioTags fields = {}; ///< what the row said before
        SaveJobs::Left left;
    };

    /// \param owner outlives the step's last use. \param actionName localisation key.
    PutBackStep(OriginalTags& owner, QString actionName, TagSaver::Wanted wanted);

    QString name() const override { return m_actionName; }
    bool isSpent() const override { return !m_isRunning && m_rows.isEmpty(); }
    qint64 byteCount() const override;
    bool canRedo() const override { return true; }
    bool tellsItself() const override { return true; }
    History::Outcome undo() override;
    History::Outcome redo() override;

    /// Whether all is put back, or the picture alone.
    TagSaver::Wanted wanted() const { return m_wanted; }
    /// The rows whose files can be brought one step further; empty while none was changed.
    const QHash<TrackID, Row>& rows() const { return m_rows; }
    /// What brings the rows' files one step further.
    QHash<TrackID, TagSaver::PutBack> next(Direction direction) const;
    /// Files are being changed: what is heard of them counts for rows that are added later.
    void begin() { m_isRunning = true; }
    void add(const TrackID& id, Row row);
    /// The change is over. \return whether it is to be taken back already.
    bool end();
    /// \return what became of the whole, as the history asks for it. Rows that a stop left stay, and nothing else then.
    History::Outcome moved(const TagSaver::Outcome& outcome);
    /// Whether its undo waits for its end.
    bool isUndoWanted() const { return m_isUndoWanted; }
    /// What the program itself does to a file is no change by others.
    void follow(const FileChange& change);

private:
    void keepWithinLimit();

    OriginalTags& m_owner;
    QString m_actionName;
    TagSaver::Wanted m_wanted;
    QHash<TrackID, Row> m_rows;
    QList<FileChange> m_heard; ///< while it runs
    bool m_isRunning = false;
    bool m_isUndoWanted = false;
};
