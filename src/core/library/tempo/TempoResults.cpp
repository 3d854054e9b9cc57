#include "core/library/tempo/TempoResults.h"

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
    m_tables = std::move(tables);
    m_alternatives.clear();
}

std::optional<QString> TempoResults::estimate(const TrackID& id) const
{
    return found(m_tables.estimatedBPMByTrackID, id);
}

std::optional<double> TempoResults::confidence(const TrackID& id) const
{
    return found(m_tables.estimatedBPMConfidenceByTrackID, id);
}

bool TempoResults::setEstimate(const TrackID& id, const std::optional<QString>& text)
{
    const bool changes = estimate(id) != text;
    if (text) {
        m_tables.estimatedBPMByTrackID.insert(id, *text);
    } else {
        m_tables.estimatedBPMByTrackID.remove(id);
        m_tables.estimatedBPMConfidenceByTrackID.remove(id);
        m_alternatives.remove(id);
    }
    return changes;
}

void TempoResults::setConfidence(const TrackID& id, double confidence)
{
    m_tables.estimatedBPMConfidenceByTrackID.insert(id, confidence);
}

void TempoResults::setAlternatives(const TrackID& id, const QList<TempoEstimate::Alternative>& alternatives)
{
    m_alternatives.insert(id, alternatives);
}

const CachedBPMEstimate* TempoResults::ofFile(const QString& path) const
{
    const auto entry = m_tables.estimatedBPMByFile.constFind(path);
    return entry == m_tables.estimatedBPMByFile.cend() ? nullptr : &*entry;
}

void TempoResults::setOfFile(const QString& path, const CachedBPMEstimate& estimate)
{
    m_tables.estimatedBPMByFile.insert(path, estimate);
}
