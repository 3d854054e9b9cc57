#include "core/library/tagwriting/PutBackStep.h"

#include "core/library/files/FileEvents.h"
#include "core/library/tagwriting/OriginalTags.h"

namespace {

constexpr qsizetype kKeptBytes = 64 * 1024 * 1024; // of one step in memory; chosen: the covers of a hundred albums
constexpr qint64 kBytesPerRow = 1024;              // about, with the fields

void followRow(PutBackStep::Row& row, const FileChange& change)
{
    if (row.url != change.former || !row.left.stamp || !change.before || !change.before->isSameFile(*row.left.stamp))
        return;
    row.url = change.url;
    row.left.stamp = change.after;
    row.left.isRewritten |= change.kind == FileChange::Kind::Rewritten;
}

} // namespace

PutBackStep::PutBackStep(OriginalTags& owner, QString actionName, TagSaver::Wanted wanted)
    : Step(History::Kind::Edit)
    , m_owner(owner)
    , m_actionName(std::move(actionName))
    , m_wanted(wanted)
{
}

qint64 PutBackStep::byteCount() const
{
    qint64 bytes = m_rows.size() * kBytesPerRow;
    for (const Row& row : m_rows)
        bytes += row.tags.size();
    return bytes;
}

History::Outcome PutBackStep::undo()
{
    m_isUndoWanted = m_isRunning;
    if (!m_isRunning)
        m_owner.move(shared_from_this(), Direction::Back);
    return History::Outcome::UnderWay;
}

History::Outcome PutBackStep::redo()
{
    m_owner.move(shared_from_this(), Direction::Forth);
    return History::Outcome::UnderWay;
}

/// Where the tags that stood before could not be kept whole, the fields come back; and to be done again, those that the
/// file had at first.
QHash<TrackID, TagSaver::PutBack> PutBackStep::next(Direction direction) const
{
    QHash<TrackID, TagSaver::PutBack> next;
    for (auto row = m_rows.cbegin(); row != m_rows.cend(); ++row) {
        const bool byFields = row->tags.isEmpty() && direction == Direction::Back;
        next.insert(row.key(), {row->tags, byFields ? std::optional(row->fields) : std::nullopt, row->left});
    }
    return next;
}

void PutBackStep::add(const TrackID& id, Row row)
{
    for (const FileChange& change : std::as_const(m_heard))
        followRow(row, change);
    m_rows.insert(id, std::move(row));
}

bool PutBackStep::end()
{
    m_isRunning = false;
    m_heard.clear();
    keepWithinLimit();
    return std::exchange(m_isUndoWanted, false);
}

History::Outcome PutBackStep::moved(const TagSaver::Outcome& outcome)
{
    const QHash<TrackID, Row> before = std::exchange(m_rows, {});
    for (auto row = before.cbegin(); row != before.cend(); ++row) {
        const auto restored = outcome.restored.constFind(row.key());
        if (outcome.stopped.contains(row.key()))
            m_rows.insert(row.key(), *row);
        else if (outcome.stopped.isEmpty() && restored != outcome.restored.cend())
            add(row.key(), {row->url, restored->former, row->fields, restored->left});
    }
    end();
    return outcome.stopped.isEmpty() ? History::Outcome::Done : History::Outcome::Nothing;
}

void PutBackStep::follow(const FileChange& change)
{
    if (m_isRunning)
        m_heard.append(change);
    for (Row& row : m_rows)
        followRow(row, change);
}

/// A picture comes back with whole tags only.
void PutBackStep::keepWithinLimit()
{
    qsizetype bytes = 0;
    for (Row& row : m_rows) {
        bytes += row.tags.size();
        if (bytes > kKeptBytes)
            row.tags.clear();
    }
    if (m_wanted == TagSaver::Wanted::Picture)
        m_rows.removeIf([](const auto& row) { return row.value().tags.isEmpty(); });
}
