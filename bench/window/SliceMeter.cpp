#include "SliceMeter.h"

#include <QEvent>
#include <QMetaEnum>

#include <ctime>

double SliceMeter::threadMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

bool SliceMeter::notify(QObject* receiver, QEvent* event)
{
    if (m_depth > 0)
        return QApplication::notify(receiver, event);
    // The receiver may be gone afterwards.
    const char* const name = receiver->metaObject()->className();
    const QEvent::Type type = event->type();
    const double cpuBegin = threadMilliseconds();
    const auto begin = std::chrono::steady_clock::now();
    ++m_depth;
    const bool result = QApplication::notify(receiver, event);
    --m_depth;
    const double took = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    m_longestCPU = std::max(m_longestCPU, threadMilliseconds() - cpuBegin);
    ++m_events;
    if (took > m_longest) {
        m_longest = took;
        m_longestEvent = QStringLiteral("%1 to %2").arg(int(type)).arg(QLatin1StringView(name));
    }
    return result;
}

void SliceMeter::reset()
{
    m_events = 0;
    m_longest = 0;
    m_longestCPU = 0;
    m_longestEvent.clear();
}
