// The workspace over several starts of the whole program.

#include "app/VelmoraApp.h"
#include "async/TaskSlot.h"
#include "core/library/LibraryStore.h"
#include "core/library/session/Session.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "support/FakeAudio.h"
#include "support/ManualClock.h"
#include "ui/controls/ThemeButton.h"
#include "ui/sections/SectionView.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/window/MainWindow.h"

#include <QElapsedTimer>
#include <QFile>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class SessionWiringTest : public testing::Test {
protected:
    ~SessionWiringTest() override { quit(); }

    /// A start of the program, with files handed over by the desktop.
    void start(const QList<QUrl>& files = {})
    {
        auto preferences = std::make_unique<Preferences>(std::make_unique<MemoryPreferenceStore>());
        preferences->defaultsMigrated.set(true);
        app = std::make_unique<VelmoraApp>(
            std::move(preferences), std::make_unique<FakeAudioSystem>(audioClock),
            std::make_unique<WorkspaceSessionStorage>(folder.filePath(QStringLiteral("data")),
                                                      WorkspaceSessionStorage::Options{.skipInTests = false}));
        app->open(files);
    }
    void quit()
    {
        app.reset();
        EXPECT_EQ(async::liveTaskCount(), 0);
    }
    QUrl file(const QString& name)
    {
        QFile created(folder.filePath(name));
        EXPECT_TRUE(created.open(QIODevice::WriteOnly));
        return FileURL::fromPath(created.fileName());
    }
    bool waitForRows(int count)
    {
        return QTest::qWaitFor([&] { return app->store().workspace().tracks().size() == count; }, 30'000);
    }
    bool waitForRestore()
    {
        return QTest::qWaitFor([&] { return !app->store().workspace().isRestoringWorkspaceSession(); }, 30'000);
    }
    ThemeButton* restoreLink()
    {
        for (ThemeButton* button : app->window().findChildren<ThemeButton*>()) {
            if (button->text() == QStringLiteral("Вернуть из копии…"))
                return button;
        }
        return nullptr;
    }

    QTemporaryDir folder;
    ManualClock audioClock;
    std::unique_ptr<VelmoraApp> app;
};

} // namespace

TEST_F(SessionWiringTest, TheNextStartShowsTheRowsAndTakesFilesOnTop)
{
    start({file(QStringLiteral("a.mp3")), file(QStringLiteral("b.mp3"))});
    ASSERT_TRUE(waitForRows(2));
    app->store().workspace().switchTo(LibraryTab::Covers, {}, std::nullopt);
    quit();

    start({file(QStringLiteral("c.mp3"))});
    ASSERT_TRUE(waitForRows(3)) << "the file that opened the program does not push the last session out";
    app->openAgain({file(QStringLiteral("d.mp3"))});
    ASSERT_TRUE(waitForRows(4));
    quit();

    start();
    ASSERT_TRUE(waitForRows(4));
    EXPECT_EQ(app->window().section(LibraryTab::Playlist).model().rowCount(), 4);
}

TEST_F(SessionWiringTest, AnEndBeforeTheRestoreLosesNothing)
{
    start({file(QStringLiteral("a.mp3"))});
    ASSERT_TRUE(waitForRows(1));
    quit();
    for (int round = 0; round < 20; ++round) {
        start();
        if (round % 2 == 1)
            QCoreApplication::processEvents();
        quit();
    }
    start();
    EXPECT_TRUE(waitForRows(1));
}

TEST_F(SessionWiringTest, TheStatusLineOffersCopiesWhenFilesAreGone)
{
    start({file(QStringLiteral("a.mp3")), file(QStringLiteral("b.mp3"))});
    ASSERT_TRUE(waitForRows(2));
    quit();
    QFile::remove(folder.filePath(QStringLiteral("b.mp3")));
    start();
    ASSERT_TRUE(waitForRestore());
    ASSERT_EQ(app->store().workspace().tracks().size(), 1);
    ThemeButton* const link = restoreLink();
    ASSERT_TRUE(link && link->isVisible());
    QTest::mouseClick(link, Qt::LeftButton);
    QMenu* menu = nullptr;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return (menu = app->window().findChild<QMenu*>(QStringLiteral("checkpoints"))) != nullptr; }, 30'000));
    EXPECT_FALSE(link->isVisible());
    QAction* copy = nullptr;
    for (QAction* action : menu->actions()) {
        if (action->text().contains(QStringLiteral("2 трека")))
            copy = action;
    }
    ASSERT_TRUE(copy);
    copy->trigger();
    menu->close();
    (void)file(QStringLiteral("b.mp3"));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return QFile::exists(folder.filePath(QStringLiteral("data/workspace-session-restore-pending.json"))); },
        30'000));
    quit();
    start();
    EXPECT_TRUE(waitForRows(2));
}
