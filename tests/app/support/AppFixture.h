#pragma once

#include "app/VelmoraApp.h"
#include "async/TaskSlot.h"
#include "core/library/LibraryStore.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"
#include "support/FakeAudio.h"
#include "support/Machine.h"
#include "support/ManualClock.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

/// Starts of the whole program on a made-up output; it ends all its tasks by itself.
class AppFixture : public testing::Test {
protected:
    ~AppFixture() override { quit(); }

    static std::unique_ptr<Preferences>
    newPreferences(std::unique_ptr<PreferenceStore> store = std::make_unique<MemoryPreferenceStore>())
    {
        auto preferences = std::make_unique<Preferences>(std::move(store));
        preferences->defaultsMigrated.set(true);
        return preferences;
    }
    void start(std::unique_ptr<Preferences> preferences, std::unique_ptr<WorkspaceSessionStorage> storage = nullptr)
    {
        auto system = std::make_unique<FakeAudioSystem>(audioClock);
        audio = system.get();
        app = std::make_unique<VelmoraApp>(std::move(preferences), std::move(system), std::move(storage));
    }
    void quit()
    {
        app.reset();
        EXPECT_EQ(async::liveTaskCount(), 0);
    }
    Workspace& workspace() { return app->store().workspace(); }
    static bool waitFor(const std::function<bool()>& isDone) { return QTest::qWaitFor(isDone, 30'000); }
    /// Makes a file. \return its URL.
    QUrl file(const QString& name, const QByteArray& bytes = {})
    {
        return FileURL::fromPath(writeFile(folder.filePath(name), bytes));
    }

    QTemporaryDir folder;
    ManualClock audioClock; ///< of what plays: nothing gets on by itself
    FakeAudioSystem* audio = nullptr;
    std::unique_ptr<VelmoraApp> app;
};
