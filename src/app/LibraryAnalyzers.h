#pragma once

#include "core/library/analysis/AudioAnalyser.h"
#include "core/model/MusicalKey.h"
#include "platform/process/WorkerClock.h"

#include <QUrl>

#include <optional>
#include <stop_token>

/// The estimators as the library's analyses call them. Thread: a worker, which is blocked. Nothing is thrown.
namespace LibraryAnalyzers {

/// The tempo of one file. A decoder that had to be stopped at its deadline is a permanent failure, all else that goes
/// wrong may go right the next time.
BPMAnalysisOutcome analyzeBPM(const QUrl& url, const BPMAnalysisMode& mode, std::stop_token stop,
                              const WorkerClock& clock = WorkerClock::system());
/// The key of one file; nothing where none is heard, the file cannot be read, or the analysis was stopped.
std::optional<MusicalKeyAnalysis> analyzeMusicalKey(const QUrl& url, std::stop_token stop);

} // namespace LibraryAnalyzers

/// The estimators behind the library's interface. Has no state: one object serves all workers.
class LibraryAnalyser final : public AudioAnalyser {
public:
    BPMAnalysisOutcome tempo(const QUrl& url, const BPMAnalysisMode& mode, std::stop_token stop) override
    {
        return LibraryAnalyzers::analyzeBPM(url, mode, std::move(stop));
    }
    std::optional<MusicalKeyAnalysis> musicalKey(const QUrl& url, std::stop_token stop) override
    {
        return LibraryAnalyzers::analyzeMusicalKey(url, std::move(stop));
    }
};
