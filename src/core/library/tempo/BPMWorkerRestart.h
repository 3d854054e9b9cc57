#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"

#include <functional>

/// The one pending restart of the tempo workers: waits a moment, then until those that were stopped have gone, and
/// starts new ones. A later restart takes the place of an earlier one. Thread: main.
class BPMWorkerRestart {
public:
    struct Dependencies {
        async::Clock& clock;
        std::function<bool()> isPlaying;
        std::function<bool()> areWorkersRunning;
        std::function<void()> startWorkers;
    };

    explicit BPMWorkerRestart(Dependencies dependencies);

    void schedule();

private:
    async::Task<> run(std::stop_token stop);

    Dependencies m_dependencies;
    async::TaskSlot m_task;
};
