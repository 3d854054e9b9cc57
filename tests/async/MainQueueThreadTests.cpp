#include "async/MainQueue.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <thread>

using namespace async;

namespace {

bool hasEarlyRun = false;

// After the application's end a post is dropped, and with it what the function held.
void checkLatePost()
{
    const auto held = std::make_shared<int>(0);
    std::thread([&] { MainQueue::post([held] { std::abort(); }); }).join();
    MainQueue::drain();
    if (held.use_count() != 1)
        std::_Exit(EXIT_FAILURE);
}

// Runs before main() and so before the application exists.
const bool isPrepared = [] {
    MainQueue::post([] { hasEarlyRun = true; });
    return std::atexit(checkLatePost) == 0;
}();

} // namespace

TEST(MainQueue, RunsThroughTheEventLoopWhatWasPostedBeforeTheApplication)
{
    ASSERT_TRUE(isPrepared);
    QCoreApplication::processEvents();
    EXPECT_TRUE(hasEarlyRun);
}

TEST(MainQueue, KeepsTheOrderOfEveryThreadThroughTheEventLoop)
{
    constexpr int kThreads = 4;
    constexpr int kPosts = 5'000;
    int next[kThreads] = {};
    int received = 0;
    bool isInOrder = true;
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
        threads.emplace_back([&, index] {
            for (int post = 0; post < kPosts; ++post) {
                MainQueue::post([&, index, post] {
                    isInOrder = isInOrder && MainQueue::isMainThread() && next[index]++ == post;
                    ++received;
                });
            }
            EXPECT_FALSE(MainQueue::isMainThread());
        });
    }
    while (received < kThreads * kPosts)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(isInOrder);
}

TEST(MainQueue, RunsWhatIsPostedOnALaterTurnAndDrainsToTheEnd)
{
    std::string order;
    MainQueue::post([&] {
        MainQueue::post([&] { order += 'c'; });
        order += 'a';
    });
    MainQueue::post([&] { order += 'b'; });
    EXPECT_EQ(order, "");
    MainQueue::drain();
    EXPECT_EQ(order, "abc");
}

TEST(MainQueue, ANestedEventLoopGoesOnWithTheRest)
{
    std::string order;
    MainQueue::post([&] {
        while (order.empty())
            QCoreApplication::processEvents();
        order += 'a';
    });
    MainQueue::post([&] { order += 'b'; });
    while (order.size() < 2) // the dispatcher may have other things to do first
        QCoreApplication::processEvents();
    EXPECT_EQ(order, "ba");
}
