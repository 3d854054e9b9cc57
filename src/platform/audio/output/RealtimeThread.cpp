#include "platform/audio/output/RealtimeThread.h"

#ifdef __linux__
#include <sched.h>
#include <sys/resource.h>

namespace {

constexpr int kRealtimePriority = 5; // chosen: above everything ordinary, below the system's own such threads
constexpr int kNiceness = -11;       // what sound servers take where the real-time class is refused

void setPriority(int policy, int priority, int niceness)
{
    sched_param parameters{};
    parameters.sched_priority = priority;
    // 0 is the calling thread in both calls.
    if (sched_setscheduler(0, policy, &parameters) != 0 || policy == SCHED_OTHER)
        setpriority(PRIO_PROCESS, 0, niceness);
}

} // namespace

void RealtimeThread::raise()
{
    setPriority(SCHED_FIFO, kRealtimePriority, kNiceness);
}

RealtimeThread::Scope::Scope()
{
    raise();
}

RealtimeThread::Scope::~Scope()
{
    setPriority(SCHED_OTHER, 0, 0);
}
#else
void RealtimeThread::raise() {}

RealtimeThread::Scope::Scope() = default;
RealtimeThread::Scope::~Scope() = default;
#endif
