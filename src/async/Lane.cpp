#include "async/Lane.h"

#include <deque>
#include <mutex>

namespace async {

struct Lane::State {
    State(Executor& theExecutor, Priority thePriority)
        : executor(theExecutor)
        , priority(thePriority)
    {
    }

    Executor& executor; // touched by the lane and by running turns only, which the executor outlives
    const Priority priority;
    std::mutex mutex;
    std::deque<QueuedCall> waiting;
    bool isBusy = false; // a turn is with the executor
};

// One job's stay on the executor; the next one is submitted when it ends, so that lanes share the workers fairly.
class Lane::Turn final : public Call {
public:
    explicit Turn(std::shared_ptr<State> state, QueuedCall call)
        : m_state(std::move(state))
        , m_call(std::move(call))
    {
    }

    void run() noexcept override
    {
        m_call.call->run();
        next();
    }

    void fail(std::exception_ptr error) noexcept override
    {
        m_call.call->fail(std::move(error));
        next();
    }

private:
    void next()
    {
        m_call.call.reset();
        QueuedCall following;
        {
            const std::lock_guard lock(m_state->mutex);
            m_state->isBusy = !m_state->waiting.empty();
            if (!m_state->isBusy)
                return;
            following = std::move(m_state->waiting.front());
            m_state->waiting.pop_front();
        }
        m_state->executor.submit(m_state->priority, QueuedCall{std::make_shared<Turn>(m_state, std::move(following))});
    }

    const std::shared_ptr<State> m_state;
    QueuedCall m_call;
};

Lane::Lane(Executor& executor, Priority priority)
    : m_state(std::make_shared<State>(executor, priority))
{
}

Lane::~Lane()
{
    std::deque<QueuedCall> dropped;
    const std::lock_guard lock(m_state->mutex);
    dropped.swap(m_state->waiting);
}

void Lane::enqueue(QueuedCall call)
{
    {
        const std::lock_guard lock(m_state->mutex);
        if (m_state->isBusy) {
            m_state->waiting.push_back(std::move(call));
            return;
        }
        m_state->isBusy = true;
    }
    m_state->executor.submit(m_state->priority, QueuedCall{std::make_shared<Turn>(m_state, std::move(call))});
}

} // namespace async
