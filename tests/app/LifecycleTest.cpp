#include "app/Lifecycle.h"

#include <QStringList>
#include <gtest/gtest.h>

TEST(LifecycleTest, SavesOnALossOfActivityAndOnceAtTheEndInOrder)
{
    QStringList log;
    const auto note = [&log](const char* word) { return [&log, word] { log.append(QLatin1StringView(word)); }; };
    Lifecycle lifecycle({note("session"), note("last session"), note("curation"), note("taste")});
    lifecycle.scenePhaseChanged(Lifecycle::ScenePhase::Active);
    EXPECT_TRUE(log.isEmpty());
    lifecycle.scenePhaseChanged(Lifecycle::ScenePhase::Inactive);
    lifecycle.scenePhaseChanged(Lifecycle::ScenePhase::Background);
    EXPECT_EQ(log.join(u','), QStringLiteral("session,session"));
    log.clear();
    lifecycle.terminate();
    lifecycle.terminate();
    lifecycle.scenePhaseChanged(Lifecycle::ScenePhase::Inactive);
    EXPECT_EQ(log.join(u','), QStringLiteral("last session,curation,taste"));
    Lifecycle({}).terminate(); // nothing to save yet is no fault
}
