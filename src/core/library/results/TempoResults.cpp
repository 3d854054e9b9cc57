#include "core/library/results/TempoResults.h"

namespace {

template <typename Value>
std::optional<Value> found(const QHash<TrackID, Value>& table, const TrackID& id)
{
    const auto entry = table.constFind(id);
    return entry == table.cend() ? std::nullopt : std::optional<Value>(*entry);
}

} // namespace

void TempoResults::assign(TempoTables tables)
{
    m_estimates = std::move(tables.estimatedBPMByTrackID);
    m_confidences = std::move(tables.estimatedBPMConfidenceByTrackID);
    m_files = FileResults<CachedBPMEstimate>(std::move(tables.estimatedBPMByFile));
    m_alternatives.clear();
}

std::optional<QString> TempoResults::estimate(const TrackID& id) const
{
    return found(m_estimates, id);
}

std::optional<double> TempoResults::confidence(const TrackID& id) const
{
    return found(m_confidences, id);
}

bool TempoResults::setEstimate(const TrackID& id, const std::optional<QString>& text)
{
    const bool changes = estimate(id) != text;
    if (text) {
        m_estimates.insert(id, *text);
    } else {
        m_estimates.remove(id);
        m_confidences.remove(id);
        m_alternatives.remove(id);
    }
    return changes;
}

void TempoResults::setConfidence(const TrackID& id, double confidence)
{
    m_confidences.insert(id, confidence);
}

void TempoResults::setAlternatives(const TrackID& id, const QList<TempoEstimate::Alternative>& alternatives)
{
    m_alternatives.insert(id, alternatives);
}
