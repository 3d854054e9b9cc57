#include "core/library/analysis/AudioAnalyser.h"

BPMAnalysisOutcome AudioAnalyser::tempo(const QUrl&, const BPMAnalysisMode&, std::stop_token)
{
    return {BPMAnalysisOutcome::Case::PermanentFailure, {}};
}

std::optional<MusicalKeyAnalysis> AudioAnalyser::musicalKey(const QUrl&, std::stop_token)
{
    return std::nullopt;
}

AudioAnalyser& AudioAnalyser::none()
{
    static AudioAnalyser analyser;
    return analyser;
}
