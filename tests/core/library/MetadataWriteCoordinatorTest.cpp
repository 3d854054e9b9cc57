#include "core/library/tagwriting/MetadataWriteCoordinator.h"

#include "async/MainQueue.h"
#include "async/TaskGroup.h"
#include "platform/FileURL.h"
#include "support/FakeTagFiles.h"
#include "support/ManualExecutor.h"

#include <gtest/gtest.h>

namespace {

const QString kPath = QStringLiteral("/music/a.mp3");

class CoordinatorTest : public testing::Test {
protected:
    async::Task<> take(QString path, int number, std::stop_token stop)
    {
        co_await coordinator.acquire(path, stop);
        order.append(number);
    }
    void ask(const QString& path, int number)
    {
        tasks.add([this, path, number](std::stop_token stop) { return take(path, number, stop); });
        async::MainQueue::drain();
    }
    void release(const QString& path)
    {
        coordinator.release(path);
        async::MainQueue::drain();
    }
    void stopAll()
    {
        tasks.cancelAll();
        async::MainQueue::drain();
    }
    ~CoordinatorTest() override { stopAll(); }

    ManualExecutor executor;
    FakeTagFiles files;
    FileLocks locks;
    MetadataWriteCoordinator coordinator{locks, executor, files};
    QList<int> order;
    async::TaskGroup tasks{100};
};

} // namespace

TEST_F(CoordinatorTest, HandsAPathOnInTheOrderOfArrival)
{
    ask(kPath, 1);
    ask(kPath, 2);
    ask(kPath, 3);
    ask(QStringLiteral("/music/b.mp3"), 10);
    EXPECT_EQ(order, QList({1, 10})) << "another path waits for nobody";
    release(kPath);
    ask(kPath, 4);
    EXPECT_EQ(order, QList({1, 10, 2})) << "a late comer does not pass those who wait";
    release(kPath);
    release(kPath);
    EXPECT_EQ(order, QList({1, 10, 2, 3, 4}));
    release(kPath);
    ask(kPath, 5);
    EXPECT_EQ(order.last(), 5) << "free again";
}

TEST_F(CoordinatorTest, AWaiterThatGivesUpLeavesTheLineWhole)
{
    ask(kPath, 1);
    ask(kPath, 2);
    stopAll(); // 1 holds the path already, 2 leaves
    ask(kPath, 3);
    EXPECT_EQ(order, QList({1}));
    release(kPath);
    EXPECT_EQ(order, QList({1, 3}));
}

TEST_F(CoordinatorTest, APathHandedToAWaiterThatWasJustStoppedGoesOn)
{
    ask(kPath, 1);
    ask(kPath, 2);
    coordinator.release(kPath); // 2 owns it but has not resumed
    tasks.cancelAll();
    async::MainQueue::drain();
    ask(kPath, 3);
    EXPECT_EQ(order.last(), 3);
}

TEST_F(CoordinatorTest, HoldsThePathUntilTheFileIsChangedEvenWhenStopped)
{
    const QUrl url = FileURL::fromPath(kPath);
    tasks.add([&](std::stop_token stop) { return coordinator.assignAlbum(QStringLiteral("Set"), url, stop); });
    async::MainQueue::drain();
    ASSERT_EQ(executor.pendingCount(), 1);
    stopAll();
    ask(kPath, 2);
    EXPECT_TRUE(order.isEmpty()) << "the file is still being changed";
    executor.runAll();
    async::MainQueue::drain();
    EXPECT_EQ(order, QList({2}));
    ASSERT_EQ(files.calls.size(), 1);
    EXPECT_EQ(files.calls.first().fields, CleanerFields(CleanerField::Album));
    EXPECT_EQ(files.calls.first().album, QStringLiteral("Set"));
    EXPECT_FALSE(files.calls.first().title);
}
