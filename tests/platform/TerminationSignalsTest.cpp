#include "platform/TerminationSignals.h"

#include <QSignalSpy>
#include <csignal>
#include <gtest/gtest.h>

TEST(TerminationSignals, RequestsBecomeEvents)
{
    TerminationSignals signalsOfSystem;
    QSignalSpy requested(&signalsOfSystem, &TerminationSignals::requested);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        requested.clear();
        raise(number);
        EXPECT_EQ(requested.size(), 0) << "never from inside the handler";
        EXPECT_TRUE(requested.wait(5000));
    }
}
