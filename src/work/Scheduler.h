#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"
#include "work/Circumstances.h"
#include "work/WorkKind.h"

#include <QHash>
#include <QObject>

#include <optional>
#include <vector>

class ScheduledWork;

/// The one place that decides what runs in the background. It is told of every change, of the circumstances and of the
/// queues, and goes through the queues by their rank: what may not run is stopped, what may begins. It asks nothing
/// again and again. When playing begins or ends, jobs of another pace than is allowed from then on are stopped and
/// begin anew; other changes let them end. Thread: main; outlived by the clock, outlives the queues.
class Scheduler : public QObject {
    Q_OBJECT

public:
    /// \param clock measures the rests of the kinds; it lives longer than the scheduler.
    explicit Scheduler(async::Clock& clock);
    ~Scheduler() override;

    /// What was last told by the setters below; all false at the start.
    const Circumstances& circumstances() const { return m_now; }
    /// Begins the rests of all kinds (WorkKind), stops jobs whose pace no longer fits, then goes through the queues.
    /// Like each of these setters it does nothing for the value that is set already.
    void setPlaying(bool isPlaying);
    /// The playlist began or ceased to move. The queues have followed when this returns.
    void setScrolling(bool isScrolling);
    /// Files are being read or results wait to be applied, or neither any more.
    void setReadingTags(bool isReading);
    /// Power is low or the machine is hot, or neither any more.
    void setConstrained(bool isConstrained);
    /// Whether anything waits or runs.
    bool isBusy() const { return m_isBusy; }

    /// For queues alone, which call these from their constructors and destructors. Queues of one rank come in the
    /// order in which they were added. Begins nothing.
    void add(ScheduledWork& work);
    /// Forgets the queue and its turn among those that exclude each other; its jobs are its own to stop.
    void remove(ScheduledWork& work);
    /// Keys came or went, or a job ended: begins and stops what the rules now say. At most 500 keys a turn; the rest
    /// follow on later turns of the event loop, so that the window answers. May be called from inside a step.
    void queueChanged() { settle(); }

Q_SIGNALS:
    /// One of circumstances() differs, and the queues follow it already.
    void circumstancesChanged();
    /// isBusy() differs. Emitted after the queues have been gone through, so a job that follows another at once is no
    /// change.
    void busyChanged(bool isBusy);

private:
    struct Place {
        ScheduledWork* work = nullptr;
        async::Duration restsUntil{};
    };

    void set(bool Circumstances::*which, bool value);
    void settle();
    void settle(const Place& place, int& steps);
    void giveUpTurn(const ScheduledWork& work);
    bool isTurnOf(const ScheduledWork& work) const;
    /// Sees to a turn when the first of the rests is over for which something waits.
    void wakeAfterRest();
    void wakeAt(async::Duration time);
    async::Task<> wakeLater(async::Duration delay, std::stop_token stop);
    /// Tells busyChanged() where it differs from what was told.
    void tellBusy();

    async::Clock& m_clock;
    Circumstances m_now;
    std::vector<Place> m_places;              ///< by rank
    QHash<int, const ScheduledWork*> m_turns; ///< of kinds that exclude each other: who began last
    bool m_isSettling = false;
    bool m_isChanged = false; ///< while settling
    bool m_isBusy = false;
    std::optional<async::Duration> m_wakesAt;
    async::TaskSlot m_wake;
};
