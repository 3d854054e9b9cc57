#include "core/library/tempo/Tempo.h"

#include "async/MainQueue.h"

// How tempo analysis gives way to playback, and takes its pace up again behind it.

namespace {

constexpr double kDelayPlaying = 0.5; // seconds; the start of a song comes first
constexpr double kDelayStopped = 0.6; // seconds; a step to the next song is no end of playing
constexpr int kRounds = 50;
constexpr double kRound = 0.1; // seconds

void call(const std::function<void()>& listener)
{
    if (listener)
        listener();
}

} // namespace

void Tempo::playbackStateDidChange(bool isPlaying, const std::optional<TrackID>& currentTrackID)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_resumeTask.cancel();
    m_isPlaying = isPlaying;
    if (isPlaying) {
        prioritizeBPMAnalysisForPlayback(currentTrackID);
        call(m_dependencies.cancelQuietAnalyses);
    } else {
        m_queue.setPriority(std::nullopt);
    }
    if (m_workers.hasAnalysis(!isPlaying)) { // of the wrong pace
        m_workers.cancelActiveBPMWorkers();
        m_workers.scheduleBPMWorkerRestart();
    }
    m_resumeTask.start([this, isPlaying](std::stop_token stop) {
        return isPlaying ? resumePlaying(std::move(stop)) : resumeStopped(std::move(stop));
    });
}

void Tempo::prioritizeBPMAnalysisForPlayback(const std::optional<TrackID>& trackID)
{
    m_queue.setPriority(std::nullopt);
    if (!trackID || !withoutTag(*trackID))
        return;
    if (m_dependencies.results.hasEstimate(*trackID) && !m_queue.contains(*trackID))
        return;
    if (m_queue.isEmpty() && !m_workers.isAnalyzingAny() && !m_workers.isRunning())
        return; // no batch to come first in
    if (m_queue.join(*trackID))
        scheduleBPMNotification();
    if (m_workers.isAnalyzing(*trackID))
        return;
    m_queue.setPriority(trackID);
    startBPMWorkerIfPossible();
}

/// Waits until no worker runs. \return whether that came to be within the rounds.
async::Task<bool> Tempo::workersGone(std::stop_token stop)
{
    for (int round = 0; round < kRounds && m_workers.isRunning(); ++round)
        co_await m_dependencies.clock.sleep(async::seconds(kRound), stop);
    co_return !m_workers.isRunning();
}

async::Task<> Tempo::resumePlaying(std::stop_token stop)
{
    co_await m_dependencies.clock.sleep(async::seconds(kDelayPlaying), stop);
    const bool areGone = co_await workersGone(stop);
    if (areGone)
        startBPMWorkerIfPossible();
    else
        m_workers.scheduleBPMWorkerRestart();
}

async::Task<> Tempo::resumeStopped(std::stop_token stop)
{
    co_await m_dependencies.clock.sleep(async::seconds(kDelayStopped), stop);
    const bool areGone = co_await workersGone(stop);
    if (!areGone)
        m_workers.scheduleBPMWorkerRestart();
    call(m_dependencies.startQuietAnalyses);
    if (areGone)
        startBPMWorkerIfPossible();
}
