#include "core/library/removal/RemovalStep.h"

#include "core/library/removal/Removal.h"

namespace {
constexpr qint64 kBytesPerEntry = 1024; // about, with the tags; covers are shared with other rows mostly
}

RemovalStep::RemovalStep(Removal& removal, History::Kind kind, QString actionName, QList<RemovedTrack> entries)
    : Step(kind)
    , m_removal(removal)
    , m_actionName(std::move(actionName))
    , m_entries(std::move(entries))
    , m_isMoving(kind == History::Kind::Trash)
{
}

qint64 RemovalStep::byteCount() const
{
    return m_entries.size() * kBytesPerEntry;
}

History::Outcome RemovalStep::undo()
{
    if (kind() != History::Kind::Trash)
        return m_removal.putBack(m_entries) ? History::Outcome::Done : History::Outcome::Nothing;
    m_removal.restore(shared_from_this());
    return History::Outcome::UnderWay;
}

void RemovalStep::moved(QList<RemovedTrack> entries)
{
    m_isMoving = false;
    m_entries = std::move(entries);
}

void RemovalStep::setStamps(const QHash<QUrl, FileStamp>& stamps)
{
    for (RemovedTrack& entry : m_entries) {
        const auto stamp = stamps.constFind(entry.track.url());
        if (stamp != stamps.cend())
            entry.stamp = *stamp;
    }
}

void RemovalStep::forget(const QSet<TrackID>& ids)
{
    m_entries.removeIf([&](const RemovedTrack& entry) { return ids.contains(entry.track.id()); });
}
