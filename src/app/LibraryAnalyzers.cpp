#include "app/LibraryAnalyzers.h"

#include "analysis/decoding/DecoderError.h"
#include "analysis/key/MusicalKeyAnalyzer.h"
#include "analysis/tempo/BPMAnalyzer.h"
#include "async/Cancelled.h"

namespace {

// The tempos that are searched for. Results are folded to 70 to 140 all the same.
constexpr double kSlowest = 70;
constexpr double kFastest = 200;

} // namespace

BPMAnalysisOutcome LibraryAnalyzers::analyzeBPM(const QUrl& url, const BPMAnalysisMode& mode, std::stop_token stop,
                                                const WorkerClock& clock)
{
    using Case = BPMAnalysisOutcome::Case;
    using AudioPCMDecoder::DecoderError;
    try {
        return {Case::Success, BPMAnalyzer::estimateDetailed(url, kSlowest, kFastest, mode.lowImpact,
                                                             mode.decoderLowPriority, std::move(stop), clock)};
    } catch (const async::Cancelled&) {
        return {Case::Cancelled, {}};
    } catch (const DecoderError& error) {
        return {error.which() == DecoderError::Case::TimedOut ? Case::PermanentFailure : Case::RetryableFailure, {}};
    } catch (const std::exception&) {
        return {Case::RetryableFailure, {}};
    }
}

std::optional<MusicalKeyAnalysis> LibraryAnalyzers::analyzeMusicalKey(const QUrl& url, std::stop_token stop)
{
    try {
        return MusicalKeyAnalyzer::estimate(MusicalKeyAnalyzer::features(url, false, std::move(stop)));
    } catch (const async::Cancelled&) {
        return std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}
