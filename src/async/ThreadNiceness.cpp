#include "async/ThreadNiceness.h"

#include <QtGlobal>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace async {

#ifdef Q_OS_LINUX

void setThreadNiceness(int value)
{
    if (value > threadNiceness()) // a program that was started to give way goes on giving way
        setpriority(PRIO_PROCESS, id_t(gettid()), value);
}

int threadNiceness()
{
    return getpriority(PRIO_PROCESS, id_t(gettid()));
}

#else

void setThreadNiceness(int) {}

int threadNiceness()
{
    return 0;
}

#endif

} // namespace async
