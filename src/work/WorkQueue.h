#pragma once

#include "async/Cancelled.h"
#include "async/MainQueue.h"
#include "async/TaskGroup.h"
#include "work/ScheduledWork.h"
#include "work/Scheduler.h"
#include "work/WorkJob.h"
#include "work/WorkLine.h"

#include <QSet>

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>

/// What becomes of a key whose job has ended.
enum class WorkEnd {
    /// The key leaves the queue, with or without a result.
    Done,
    OnceMore, ///< to the end of the queue after its first failure, else it is done
    PutBack,  ///< to the front: the job gave up without being told to
};

/// What a queue asks and tells the concern that owns it. Thread: main.
template <typename Key, typename Result>
class WorkConcern {
public:
    virtual ~WorkConcern() = default;

    /// The job for a key whose turn has come. It only looks: the queue stays as it is.
    virtual WorkJob<Result> begin(const Key& key, const Allowance& allowance) = 0;
    /// Takes the result over, of a job that was not stopped. The key still counts as queued, in the state Ending.
    /// \param result nothing where the job threw
    /// \return what becomes of the key
    virtual WorkEnd finished(const Key& key, std::optional<Result> result) = 0;
    /// Jobs of these keys began, ended or were stopped, or the keys left the queue. append() tells its caller
    /// instead. May be called from inside append() and withdraw(), for the keys that begin or end by it.
    virtual void statesChanged(const QSet<Key>& keys) = 0;
};

/// The queue of one kind of work: keys in order, each once, and the jobs that run. The Scheduler says when jobs begin
/// and which pause. A stopped job's key is at the front again at once, or gone where it is no longer wanted; the
/// queue waits for that job to end before another begins. Owned by its concern, and declared after all that the
/// concern's functions use. Thread: main.
template <typename Key, typename Result>
class WorkQueue final : public ScheduledWork {
public:
    /// All four are kept by reference and live longer than the queue.
    WorkQueue(const WorkKind& kind, WorkConcern<Key, Result>& concern, Scheduler& scheduler, async::Executor& executor)
        : m_kind(kind)
        , m_concern(concern)
        , m_scheduler(scheduler)
        , m_executor(executor)
        , m_tasks(std::numeric_limits<int>::max()) // the rule bounds the jobs, not the group
    {
        m_scheduler.add(*this);
    }
    /// Requests a stop of what runs and does not wait for it; finished() is not called any more.
    ~WorkQueue() override { m_scheduler.remove(*this); }
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;

    /// Adds keys that are not queued at the end, and begins what may begin. \return those that were added.
    QList<Key> append(const QList<Key>& keys)
    {
        QList<Key> added = m_line.append(keys);
        if (!added.isEmpty())
            m_scheduler.queueChanged();
        return added;
    }
    /// The keys whose turn comes before all others while they wait, in this order, instead of those named before.
    void prefer(const QList<Key>& keys)
    {
        m_line.prefer(keys);
        m_scheduler.queueChanged();
    }
    bool isPreferred(const Key& key) const { return m_line.isPreferred(key); }
    /// Ends keys wherever they stand, without finished(); what runs for them is stopped. Keys that are not queued are
    /// ignored.
    void withdraw(const QSet<Key>& keys)
    {
        QSet<Key> gone;
        for (const Key& key : keys) {
            if (m_line.isQueued(key))
                gone.insert(key);
        }
        if (gone.isEmpty())
            return;
        for (const RunningPtr& running : std::as_const(m_running)) {
            if (gone.contains(running->key))
                running->stop();
        }
        m_line.withdraw(gone);
        m_concern.statesChanged(gone);
        m_scheduler.queueChanged();
    }
    /// Ends all keys, running and waiting ones.
    void drop() { withdraw(m_line.queued()); }
    /// Stops what runs for others than this key; they return to the front. \param key nothing stops all
    void interruptOthersThan(const std::optional<Key>& key)
    {
        stopWhere([&](const Running& running) { return running.key != key; });
        m_scheduler.queueChanged();
    }

    /// None for a key that is not queued.
    WorkState stateOf(const Key& key) const { return m_line.stateOf(key); }
    bool isQueued(const Key& key) const { return m_line.isQueued(key); }
    /// Nothing waits or runs.
    bool isEmpty() const { return m_line.queuedCount() == 0; }
    QSet<Key> queued() const { return m_line.queued(); }
    /// In order, without what runs.
    const QList<Key>& waiting() const { return m_line.waiting(); }
    /// What runs and was not stopped, in the order in which it began.
    QList<Key> running() const
    {
        QList<Key> keys;
        for (const RunningPtr& running : m_running) {
            if (!running->isStopped)
                keys.append(running->key);
        }
        return keys;
    }
    /// Of what came since the queue was empty; what was withdrawn does not count.
    WorkProgress progress() const { return m_line.progress(); }

    const WorkKind& kind() const override { return m_kind; }
    qsizetype queuedCount() const override { return m_line.queuedCount(); }
    bool isAnyWaiting() const override { return !m_line.waiting().isEmpty(); }
    int runningCount() const override { return static_cast<int>(m_running.size()); }
    bool isAnyEnding() const override
    {
        return std::ranges::any_of(m_running, [](const RunningPtr& running) { return running->isStopped; });
    }
    Step beginNext(const Allowance& allowance) override
    {
        const Key key = m_line.next();
        WorkJob<Result> job = m_concern.begin(key, allowance);
        if (job.isLater())
            return Step::Nothing;
        m_line.take(key);
        if (job.isUnwanted()) {
            m_line.finish(key);
            m_concern.statesChanged({key});
            return Step::Skipped;
        }
        const auto running = std::make_shared<Running>(Running{key, std::move(job), allowance});
        m_running.append(running);
        m_concern.statesChanged({key});
        m_tasks.add([this, running](std::stop_token stop) { return run(running, std::move(stop)); });
        return Step::Began;
    }
    void stopAll() override
    {
        stopWhere([](const Running&) { return true; });
    }
    void stopOthersThan(Pace pace) override
    {
        stopWhere([=](const Running& running) { return running.allowance.pace != pace; });
    }

private:
    struct Running {
        Key key;
        WorkJob<Result> job;
        Allowance allowance;
        std::stop_source source = {};
        bool isStopped = false;

        void stop()
        {
            isStopped = true;
            source.request_stop();
        }
    };
    using RunningPtr = std::shared_ptr<Running>;

    template <typename Which>
    void stopWhere(Which which)
    {
        QSet<Key> stopped;
        for (const RunningPtr& running : std::as_const(m_running)) {
            if (running->isStopped || !which(*running))
                continue;
            running->stop();
            m_line.putBack(running->key);
            stopped.insert(running->key);
        }
        if (!stopped.isEmpty())
            m_concern.statesChanged(stopped);
    }

    /// A job in the background. It ends early both when it is stopped and when the queue goes.
    static std::optional<Result> work(const typename WorkJob<Result>::Function& function, std::stop_source source,
                                      const std::stop_token& ownerStop)
    {
        const auto forward = [&source] { source.request_stop(); };
        const std::stop_callback onOwnerStop(ownerStop, forward);
        if (source.stop_requested())
            return std::nullopt;
        try {
            return std::optional<Result>(function(source.get_token()));
        } catch (const std::exception&) {
            return std::nullopt;
        }
    }

    /// The executor does not wait for a stopped job, the queue does: so the executor gets the queue's token alone.
    async::Task<std::optional<Result>> runOnWorker(RunningPtr running, std::stop_token ownerStop)
    {
        auto job = [function = running->job.function(), source = running->source](const std::stop_token& stop) {
            return work(function, source, stop);
        };
        std::optional<Result> result = co_await m_executor.run(running->allowance.priority, ownerStop, std::move(job));
        co_return result;
    }

    static async::Task<std::optional<Result>> runOnMain(RunningPtr running, std::stop_token ownerStop)
    {
        const auto forward = [running] { running->source.request_stop(); };
        const std::stop_callback onOwnerStop(ownerStop, forward);
        try {
            std::optional<Result> result = co_await running->job.coroutine()(running->source.get_token());
            co_return result;
        } catch (const async::Cancelled&) { // by somebody else, or the token tells
        } catch (const std::exception&) {
        }
        co_return std::nullopt;
    }

    /// One job from its start to its end, on whichever thread it wants. \param stop of the queue itself: nothing is
    /// told after it.
    async::Task<> run(RunningPtr running, std::stop_token stop)
    {
        std::optional<Result> result;
        if (running->job.function())
            result = co_await runOnWorker(running, stop);
        else
            result = co_await runOnMain(running, stop);
        if (stop.stop_requested())
            throw async::Cancelled();
        end(running, std::move(result));
    }

    /// Tells the concern, unless the job was stopped, and lets the next one begin.
    void end(const RunningPtr& running, std::optional<Result> result)
    {
        m_running.removeOne(running);
        if (!running->isStopped) {
            m_line.setEnding(running->key);
            switch (m_concern.finished(running->key, std::move(result))) {
            case WorkEnd::PutBack:
                m_line.putBack(running->key);
                break;
            case WorkEnd::OnceMore:
                m_line.retry(running->key);
                break;
            case WorkEnd::Done:
                m_line.finish(running->key);
                break;
            }
            m_concern.statesChanged({running->key});
        }
        m_scheduler.queueChanged();
    }

    const WorkKind& m_kind;
    WorkConcern<Key, Result>& m_concern;
    Scheduler& m_scheduler;
    async::Executor& m_executor;
    WorkLine<Key> m_line;
    QList<RunningPtr> m_running;
    async::TaskGroup m_tasks; // last: stops the jobs before anything else goes
};
