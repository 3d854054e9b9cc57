#pragma once

#include "support/ManualClock.h"
#include "support/ManualExecutor.h"
#include "work/WorkQueue.h"

#include <string>

/// A queue of numbers that writes down which jobs begin, gentle ones with a "g". Even a stopped job runs to its end, as
/// a decoder does.
class NumberWork final : public WorkConcern<int, int> {
public:
    NumberWork(const WorkKind& kind, Scheduler& scheduler, ManualExecutor& executor, std::string* log = nullptr)
        : queue(kind, *this, scheduler, executor)
        , m_log(log ? *log : m_ownLog)
        , m_name(kind.text)
    {
    }

    WorkJob<int> begin(const int& key, const Allowance& allowance) override
    {
        if (unwanted.contains(key))
            return WorkJob<int>::unwanted();
        if (notNow.contains(key))
            return WorkJob<int>::later();
        m_log += (m_log.empty() ? "" : " ") + m_name + std::to_string(key);
        m_log += allowance.pace == Pace::Gentle ? "g" : "";
        return WorkJob<int>::onWorker([key](std::stop_token) {
            if (key < 0)
                throw std::runtime_error("broken");
            return key * 10;
        });
    }
    WorkEnd finished(const int& key, std::optional<int> result) override
    {
        results.append(result.value_or(-1));
        return result ? WorkEnd::Done : failed.value(key, WorkEnd::OnceMore);
    }
    void statesChanged(const QSet<int>& keys) override { changes += int(keys.size()); }

    QSet<int> unwanted;
    QSet<int> notNow;
    QHash<int, WorkEnd> failed;
    QList<int> results;
    int changes = 0;
    WorkQueue<int, int> queue;

    const std::string& log() const { return m_log; }

private:
    std::string m_ownLog;
    std::string& m_log;
    std::string m_name;
};

/// What tests of work stand on.
struct WorkBench {
    ManualClock clock;
    ManualExecutor executor;
    Scheduler scheduler{clock};
};
