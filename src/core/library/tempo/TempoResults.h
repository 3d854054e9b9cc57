#pragma once

#include "core/library/tempo/TempoTables.h"
#include "core/model/TempoEstimate.h"
#include "core/model/TrackPopularitySortValue.h"

/// The tempos that analyses and the user found: the tables that outlive the program, and what this run alone knows.
/// Values and nothing else; whoever writes them tells those who show or sort them. Thread: main.
class TempoResults {
public:
    const TempoTables& tables() const { return m_tables; }
    /// Takes the tables of a session over.
    void assign(TempoTables tables);

    const EstimatedBPMByTrackID& estimates() const { return m_tables.estimatedBPMByTrackID; }
    bool hasEstimate(const TrackID& id) const { return estimates().contains(id); }
    std::optional<QString> estimate(const TrackID& id) const;
    /// 0 to 1.
    std::optional<double> confidence(const TrackID& id) const;
    /// Of an analysis of this run; empty otherwise.
    QList<TempoEstimate::Alternative> alternatives(const TrackID& id) const { return m_alternatives.value(id); }

    /// Stores the text shown for a track, or removes it with all that is known beside it.
    /// \return whether the text differs now.
    bool setEstimate(const TrackID& id, const std::optional<QString>& text);
    void setConfidence(const TrackID& id, double confidence);
    void setAlternatives(const TrackID& id, const QList<TempoEstimate::Alternative>& alternatives);

    /// The estimate of a file; null if there is none. Valid until the next change. \param path standardized.
    const CachedBPMEstimate* ofFile(const QString& path) const;
    bool knowsFiles() const { return !m_tables.estimatedBPMByFile.isEmpty(); }
    void setOfFile(const QString& path, const CachedBPMEstimate& estimate);

private:
    TempoTables m_tables;
    QHash<TrackID, QList<TempoEstimate::Alternative>> m_alternatives;
};
