#pragma once

#include "core/library/analysis/BPMAnalysisOutcome.h"
#include "core/model/MusicalKey.h"

#include <QUrl>

#include <optional>
#include <stop_token>

/// What hears tempo and key in a file. This one hears nothing. Called on worker threads, several calls at a time;
/// blocks until the file is heard or the stop is requested.
class AudioAnalyser {
public:
    virtual ~AudioAnalyser() = default;

    /// The tempo of one file. Must not throw.
    virtual BPMAnalysisOutcome tempo(const QUrl& url, const BPMAnalysisMode& mode, std::stop_token stop);
    /// The key of one file; nothing where none is heard or the analysis was stopped. Must not throw.
    virtual std::optional<MusicalKeyAnalysis> musicalKey(const QUrl& url, std::stop_token stop);

    /// The one that hears nothing.
    static AudioAnalyser& none();
};
