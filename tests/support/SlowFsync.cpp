#include "support/SlowFsync.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include <dlfcn.h>

namespace {

int delayOfEnvironment()
{
    const char* text = std::getenv("VELMORA_FSYNC_DELAY");
    return text ? std::atoi(text) : 0;
}

std::atomic<int> delay = delayOfEnvironment();
std::atomic<int> waiting = 0;

int slowly(const char* name, int descriptor)
{
    using Call = int (*)(int);
    const auto begin = std::chrono::steady_clock::now();
    ++waiting;
    while (std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(delay))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    --waiting;
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, name))(descriptor);
}

} // namespace

extern "C" {

void setFsyncDelay(int milliseconds)
{
    delay = milliseconds;
}

int waitingFsyncs()
{
    return waiting;
}

int fsync(int descriptor)
{
    return slowly("fsync", descriptor);
}

int fdatasync(int descriptor)
{
    return slowly("fdatasync", descriptor);
}
}
