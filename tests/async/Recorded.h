#pragma once

#include "async/Cancelled.h"
#include "async/MainQueue.h"
#include "async/TaskSlot.h"
#include "support/Machine.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <string>
#include <vector>

/// What happened, in order. A test drains the main queue before its log goes: recorded() writes after a stop, too.
using Log = std::vector<std::string>;

/// Awaits \p task and writes "name:done", "name:cancelled" or "name:what" of another exception.
inline async::Task<> recorded(Log* log, std::string name, async::Task<> task)
{
    std::string outcome = "done";
    try {
        co_await task;
    } catch (const async::Cancelled&) {
        outcome = "cancelled";
    } catch (const std::exception& error) {
        outcome = error.what();
    }
    log->push_back(name + ":" + outcome);
}

/// Turns the event loop until nothing is alive; the limit only keeps a fault from hanging the program.
inline void spinUntilIdle()
{
    comesTrue([] {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 100);
        return async::liveTaskCount() == 0;
    });
    ASSERT_EQ(async::liveTaskCount(), 0) << "tasks never ended";
}
