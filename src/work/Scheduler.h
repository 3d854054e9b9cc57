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
    explicit Scheduler(async::Clock& clock);
    ~Scheduler() override;

    const Circumstances& circumstances() const { return m_now; }
    void setPlaying(bool isPlaying);
    void setScrolling(bool isScrolling);
    void setReadingTags(bool isReading);
    void setConstrained(bool isConstrained);
    /// Whether anything waits or runs.
    bool isBusy() const { return m_isBusy; }

    /// For queues alone, which call these from their constructors and destructors.
    void add(ScheduledWork& work);
    void remove(ScheduledWork& work);
    /// Keys came or went, or a job ended.
    void queueChanged() { settle(); }

Q_SIGNALS:
    /// One of circumstances() differs, and the queues follow it already.
    void circumstancesChanged();
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
    void wakeAfterRest();
    void wakeAt(async::Duration time);
    async::Task<> wakeLater(async::Duration delay, std::stop_token stop);
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
