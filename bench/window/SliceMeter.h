#pragma once

#include <QApplication>

#include <chrono>

/// An application that measures how long the main thread is busy without a look at its events: the longest time from
/// waking up to waiting again is not what counts, but the longest single event, painting included.
class SliceMeter : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    /// Processor time of this thread.
    static double threadMilliseconds();

    /// Begins a new measurement.
    void reset();
    /// Longest event since reset(), in milliseconds.
    double longestMilliseconds() const { return m_longest; }
    /// The most processor time of one event, in milliseconds: what is left on a machine that other programs keep busy.
    double longestCPUMilliseconds() const { return m_longestCPU; }
    /// What the longest event was, for finding it.
    QString longestEvent() const { return m_longestEvent; }
    int events() const { return m_events; }

private:
    int m_depth = 0;
    int m_events = 0;
    double m_longest = 0;
    double m_longestCPU = 0;
    QString m_longestEvent;
};
