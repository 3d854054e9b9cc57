#pragma once

#include "core/library/keys/KeyTagPlan.h"
#include "core/library/tagwriting/StepAnnouncement.h"
#include "core/library/undo/History.h"

#include <QHash>
#include <QUrl>

#include <memory>

class KeyWriting;

/// Keys that come into files, as undo and redo see it. A step from its beginning: taken back before its end it waits
/// for that. Thread: main.
class KeyStep final : public History::Step, public std::enable_shared_from_this<KeyStep> {
public:
    using Direction = StepAnnouncement::Direction;
    struct Entry {
        Track row;      ///< that the file is saved through
        QString former; ///< what stood in the tag; as far as the row knew until the file was looked at
        QString code;

        const QString& key(Direction direction) const { return direction == Direction::Back ? former : code; }
    };
    using Entries = QHash<QUrl, Entry>;

    /// \param owner outlives the step's last use.
    KeyStep(KeyWriting& owner, Entries entries);

    QString name() const override { return QStringLiteral("Записать тональность"); }
    bool isSpent() const override { return !m_isRunning && m_entries.isEmpty(); }
    qint64 byteCount() const override;
    bool canRedo() const override { return true; }
    bool tellsItself() const override { return true; }
    History::Outcome undo() override;
    History::Outcome redo() override;

    const Entries& entries() const { return m_entries; }
    void setEntries(Entries entries) { m_entries = std::move(entries); }
    /// What a file's tag held before the first write.
    void fileTold(const TrackID& id, const QString& key);
    /// Files are being written from its beginning until end().
    void begin() { m_isRunning = true; }
    /// \return whether the step is to be taken back already.
    bool end();

private:
    KeyWriting& m_owner;
    Entries m_entries;
    bool m_isRunning = true;
    bool m_isUndoWanted = false;
};
