#include "core/library/keys/KeyStep.h"

#include "core/library/keys/KeyWriting.h"

namespace {
constexpr qint64 kBytesPerEntry = 1024; // about, with the tags
}

KeyStep::KeyStep(KeyWriting& owner, Entries entries)
    : Step(History::Kind::Edit)
    , m_owner(owner)
    , m_entries(std::move(entries))
{
}

qint64 KeyStep::byteCount() const
{
    return m_entries.size() * kBytesPerEntry;
}

History::Outcome KeyStep::undo()
{
    m_isUndoWanted = m_isRunning;
    if (!m_isRunning)
        m_owner.move(shared_from_this(), Direction::Back);
    return History::Outcome::UnderWay;
}

History::Outcome KeyStep::redo()
{
    m_owner.move(shared_from_this(), Direction::Forth);
    return History::Outcome::UnderWay;
}

void KeyStep::fileTold(const TrackID& id, const QString& key)
{
    for (Entry& entry : m_entries) {
        if (entry.row.id() == id)
            entry.former = key;
    }
}

bool KeyStep::end()
{
    m_isRunning = false;
    return std::exchange(m_isUndoWanted, false);
}
