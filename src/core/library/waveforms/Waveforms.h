#pragma once

#include "core/model/Track.h"

#include <QList>
#include <QUrl>

#include <functional>

class Selection;

/// Which files' waveforms are made ahead, and which of them before the others. Thread: main.
class Waveforms {
public:
    struct Dependencies {
        Selection& selection;
        /// Appends files to the work ahead; may be empty.
        std::function<void(const QList<QUrl>& urls)> preload;
        /// Puts the file that plays, and what follows it, before all others; may be empty.
        std::function<void(const QUrl& currentURL, const QList<QUrl>& followingURLs)> prioritize;
    };

    explicit Waveforms(const Dependencies& dependencies);

    /// Makes the waveform of one file ahead.
    void preloadWaveform(const QUrl& url);
    /// Makes the waveforms of files ahead, in this order.
    void preloadWaveforms(const QList<QUrl>& urls);
    /// Prefers a track of the active section and the rows behind it. Nothing where it is not among these rows.
    void prioritizeWaveformsForPlayback(const TrackID& trackID);

private:
    Dependencies m_dependencies;
};
