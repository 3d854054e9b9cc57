#pragma once

#include "core/library/tempo/BPMAnalysisOutcome.h"
#include "core/model/LoadedTrackMetadata.h"
#include "core/model/MusicalKey.h"
#include "core/model/Track.h"

#include <QList>
#include <QSet>
#include <QUrl>

#include <functional>
#include <optional>
#include <stop_token>

class Notifications;
class Preferences;
class TagFiles;
class TrashCan;
class WorkspaceSessionStorage;

namespace async {
class Clock;
class Executor;
} // namespace async

/// What the store stands on, and the calls that leave it. The references outlive it.
struct LibraryServices {
    async::Clock& clock;
    async::Executor& executor;
    Preferences& preferences;
    Notifications& notifications;
    TagFiles& tagFiles;
    /// Reads one audio file; called on worker threads. Gives nothing for a file that cannot be read.
    std::function<std::optional<LoadedTrackMetadata>(const QUrl& url, const AudioTags& fallbackTags)> readMetadata;

    /// Where thrown-away files go; null where there is none.
    TrashCan* trashCan = nullptr;

    // Calls to the analysers; an empty one means that nobody listens.
    std::function<void(const QSet<TrackID>& ids)> analyzeQuality = {};
    std::function<void(const QList<QUrl>& urls)> preloadWaveforms = {};
    std::function<void(const QUrl& currentURL, const QList<QUrl>& followingURLs)> prioritizeWaveforms = {};

    /// Where the workspace is kept; null where nothing is. Outlives the executor.
    WorkspaceSessionStorage* sessionStorage = nullptr;

    /// Estimates the tempo of one file; called on worker threads, must not throw. Empty where nothing is estimated.
    std::function<BPMAnalysisOutcome(const QUrl& url, const BPMAnalysisMode& mode, std::stop_token stop)> analyzeBPM =
        {};
    /// Estimates the key of one file; called on worker threads, must not throw. Gives nothing where no key is heard or
    /// the analysis was stopped. Empty where nothing is estimated.
    std::function<std::optional<MusicalKeyAnalysis>(const QUrl& url, std::stop_token stop)> analyzeMusicalKey = {};

    /// Whether power is low or the machine is hot, so that analyses hold back; asked often, must not block. Empty where
    /// nobody knows.
    std::function<bool()> bpmResourcesAreConstrained = {};
};
