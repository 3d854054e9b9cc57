#include "core/library/removal/RemovalHistory.h"

const RemovalStep* RemovalHistory::find(quint64 moment) const
{
    const auto step = std::ranges::find(m_steps, moment, &RemovalStep::moment);
    return step == m_steps.end() ? nullptr : &*step;
}

void RemovalHistory::push(RemovalStep step)
{
    const auto place = std::ranges::upper_bound(m_steps, step.moment, {}, &RemovalStep::moment);
    m_steps.insert(place, std::move(step));
}

std::optional<RemovalStep> RemovalHistory::take(quint64 moment)
{
    const auto step = std::ranges::find(m_steps, moment, &RemovalStep::moment);
    if (step == m_steps.end())
        return std::nullopt;
    const RemovalStep taken = *step;
    m_steps.erase(step);
    return taken;
}

void RemovalHistory::forget(quint64 moment, const QSet<TrackID>& ids)
{
    const auto step = std::ranges::find(m_steps, moment, &RemovalStep::moment);
    if (step == m_steps.end())
        return;
    step->entries.removeIf([&](const RemovedTrack& entry) { return ids.contains(entry.track.id()); });
    if (step->entries.isEmpty())
        m_steps.erase(step);
}

quint64 RemovalHistory::undoMoment() const
{
    quint64 last = 0;
    const auto offer = [&](quint64 moment) { last = m_takingBack.contains(moment) ? last : std::max(last, moment); };
    std::ranges::for_each(m_trashing, offer);
    for (const RemovalStep& step : m_steps)
        offer(step.moment);
    return last;
}
