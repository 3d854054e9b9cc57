#pragma once

#include <optional>

/// How far tempo analysis is.
struct BPMAnalysisProgress {
    int completed = 0;
    int total = 0;

    bool operator==(const BPMAnalysisProgress&) const = default;
};

/// The progress that was published last.
class BPMAnalysisProgressState {
public:
    /// Nothing while nothing is queued.
    const std::optional<BPMAnalysisProgress>& progress() const { return m_progress; }
    /// \return whether the value is another one, to be published.
    bool update(const std::optional<BPMAnalysisProgress>& progress)
    {
        const bool changes = m_progress != progress;
        m_progress = progress;
        return changes;
    }

private:
    std::optional<BPMAnalysisProgress> m_progress;
};
