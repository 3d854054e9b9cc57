#pragma once

#include "core/library/results/FileResults.h"
#include "core/library/results/TempoTables.h"
#include "core/model/TempoEstimate.h"
#include "core/model/TrackPopularitySortValue.h"

/// The tempos that analyses and the user found: the tables that outlive the program, and what this run alone knows.
/// Values and nothing else: a writer tells those who show or sort them. Thread: main.
class TempoResults {
public:
    /// What outlives the program.
    TempoTables tables() const { return {m_estimates, m_confidences, m_files.table()}; }
    /// Takes the tables of a session over.
    void assign(TempoTables tables);

    /// The texts shown, by row.
    const EstimatedBPMByTrackID& estimates() const { return m_estimates; }
    bool hasEstimate(const TrackID& id) const { return estimates().contains(id); }
    /// The text shown for a row; nothing where none was found.
    std::optional<QString> estimate(const TrackID& id) const;
    /// 0 to 1.
    std::optional<double> confidence(const TrackID& id) const;
    /// Of an analysis of this run; empty otherwise.
    QList<TempoEstimate::Alternative> alternatives(const TrackID& id) const { return m_alternatives.value(id); }

    /// Stores the text shown for a track, or removes it with all that is known beside it.
    /// \return whether the text differs now.
    bool setEstimate(const TrackID& id, const std::optional<QString>& text);
    /// \param confidence 0 to 1; 1 where the user chose the tempo
    void setConfidence(const TrackID& id, double confidence);
    /// Other tempos of the same rhythm, strongest first; they do not outlive the program.
    void setAlternatives(const TrackID& id, const QList<TempoEstimate::Alternative>& alternatives);

    /// The estimates by file.
    FileResults<CachedBPMEstimate>& files() { return m_files; }
    const FileResults<CachedBPMEstimate>& files() const { return m_files; }

private:
    EstimatedBPMByTrackID m_estimates;
    QHash<TrackID, double> m_confidences;
    FileResults<CachedBPMEstimate> m_files;
    QHash<TrackID, QList<TempoEstimate::Alternative>> m_alternatives;
};
