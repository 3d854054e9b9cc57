#include "core/library/files/FileLine.h"

#include "async/MainQueue.h"
#include "core/library/files/FinishedJob.h"
#include "platform/FileURL.h"
#include "support/ManualExecutor.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

QUrl url(int number)
{
    return FileURL::fromPath(QStringLiteral("/music/%1.mp3").arg(number));
}

/// Goes through files by number; those in `failing` fail.
class NotingRound final : public FileRound {
public:
    NotingRound(ManualExecutor& executor, QList<int> numbers)
        : m_executor(executor)
        , m_numbers(std::move(numbers))
    {
    }

    QList<QUrl> begin() override
    {
        QList<QUrl> urls;
        for (const int number : m_numbers)
            urls.append(url(number));
        return urls;
    }
    async::Task<std::optional<FileFailure>> work(qsizetype file, FileLocks::HeldPath held,
                                                 std::stop_token stop) override
    {
        const int number = m_numbers.at(file);
        co_await finishedJob(m_executor, stop, [](const std::stop_token&) { return true; });
        worked.append(number);
        if (throwing.contains(number))
            throw std::runtime_error("not foreseen");
        if (keepsPaths)
            kept.append(held);
        if (failing.contains(number))
            co_return FileFailure{url(number), QString::number(number), missing.contains(number)};
        co_return std::nullopt;
    }
    void update() override { updates.append(worked.size()); }
    void end(const End& end) override
    {
        ended = end;
        kept.clear();
    }

    QList<int> failing;
    QList<int> missing; ///< of those that fail
    QList<int> throwing;
    bool keepsPaths = false;
    QList<int> worked;
    QList<qsizetype> updates; ///< files done by then
    std::optional<End> ended;
    QList<FileLocks::HeldPath> kept;

private:
    ManualExecutor& m_executor;
    QList<int> m_numbers;
};

class FileLineTest : public testing::Test {
protected:
    ~FileLineTest() override
    {
        line.reset();
        executor.dropAll();
        async::MainQueue::drain();
    }
    std::shared_ptr<NotingRound> round(const QList<int>& numbers)
    {
        return std::make_shared<NotingRound>(executor, numbers);
    }
    void append(const std::shared_ptr<NotingRound>& round)
    {
        line->append(round);
        async::MainQueue::drain();
    }
    QString progress() const { return QStringLiteral("%1/%2").arg(line->progress().done).arg(line->progress().total); }

    ManualExecutor executor;
    FileLocks locks;
    WorkBoard board;
    std::unique_ptr<FileLine> line =
        std::make_unique<FileLine>(locks, FileLine::Shown{board, 1, QStringLiteral("%d/%d")}, 2);
};

} // namespace

TEST_F(FileLineTest, FailuresHoldNothingUpAndRowsCatchUpEveryFewFiles)
{
    const auto files = round({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    files->failing = {3, 9};
    append(files);
    executor.runOne();
    EXPECT_EQ(progress(), QStringLiteral("1/10"));
    ASSERT_TRUE(board.first());
    EXPECT_EQ(board.first()->progress(), (WorkProgress{1, 10}));
    executor.runAll();
    EXPECT_EQ(files->worked.size(), 10);
    EXPECT_EQ(files->updates, (QList<qsizetype>{8, 10}));
    ASSERT_TRUE(files->ended);
    EXPECT_EQ(files->ended->firstFailure->message, QStringLiteral("3"));
    EXPECT_EQ(files->ended->failed, 2);
    EXPECT_EQ(files->ended->left, 0);
    EXPECT_EQ(progress(), QStringLiteral("0/0"));
    append(round({1}));
    EXPECT_FALSE(board.first()) << "one file is done before anyone could read of it";
    executor.runAll();
    EXPECT_FALSE(line->isActive());
}

TEST_F(FileLineTest, AMissingFileHidesNoOtherReason)
{
    const std::tuple<QList<int>, QList<int>, int> cases[] = {
        {{1, 2, 3}, {1}, 2}, {{1, 2, 3}, {2}, 1}, {{1, 2}, {1, 2}, 1}, {{2, 3}, {2}, 3}};
    for (const auto& [failing, missing, told] : cases) {
        const auto files = round({1, 2, 3});
        files->failing = failing;
        files->missing = missing;
        append(files);
        executor.runAll();
        ASSERT_TRUE(files->ended && files->ended->firstFailure);
        EXPECT_EQ(files->ended->firstFailure->message, QString::number(told));
        EXPECT_EQ(files->ended->failed, failing.size());
    }
}

TEST_F(FileLineTest, WhatIsThrownIsAFailureAndTheRoundComesToItsEnd)
{
    const auto files = round({1, 2, 3});
    files->throwing = {2};
    append(files);
    executor.runAll();
    EXPECT_EQ(files->worked, (QList<int>{1, 2, 3}));
    ASSERT_TRUE(files->ended);
    EXPECT_EQ(files->ended->failed, 1);
    EXPECT_EQ(files->ended->firstFailure->url, url(2));
    EXPECT_FALSE(line->isActive());
}

TEST_F(FileLineTest, AStopEndsARoundThatWaitsForAPathAtOnce)
{
    const auto files = round({1, 2});
    files->keepsPaths = true;
    const auto waiting = round({3, 1});
    append(files);
    append(waiting);
    executor.runOne(); // 1 is held until the end
    executor.runOne();
    ASSERT_EQ(waiting->worked, QList<int>{3});
    line->stop();
    async::MainQueue::drain();
    ASSERT_TRUE(waiting->ended) << "while the other round is at its file";
    EXPECT_EQ(waiting->ended->left, 1);
    EXPECT_FALSE(files->ended);
    executor.runAll();
    EXPECT_EQ(files->worked, (QList<int>{1, 2}));
    EXPECT_FALSE(line->isActive());
}

TEST_F(FileLineTest, AStopFinishesTheFileInHandAndLeavesRoundsThatWait)
{
    const auto first = round({1, 2, 3});
    const auto second = round({4, 5});
    const auto waiting = round({6});
    append(first);
    append(second);
    append(waiting);
    EXPECT_EQ(progress(), QStringLiteral("0/5")) << "the third round has not begun";
    executor.runOne();
    line->stop();
    executor.runAll();
    EXPECT_EQ(first->worked, (QList<int>{1, 2}));
    EXPECT_EQ(first->ended->left, 1);
    EXPECT_EQ(second->worked, QList<int>{4});
    EXPECT_EQ(waiting->worked, QList<int>{6});
    EXPECT_EQ(waiting->ended->left, 0);
}

TEST_F(FileLineTest, APathIsHeldWhileItsFileIsWorkedOnAndLongerOnRequest)
{
    const auto files = round({1, 2});
    files->keepsPaths = true;
    const auto rival = round({2, 1});
    append(files);
    append(rival); // holds 2 while the first has 1
    executor.runOne();
    EXPECT_EQ(files->worked, QList<int>{1});
    executor.runOne();
    EXPECT_EQ(rival->worked, QList<int>{2});
    executor.runAll();
    EXPECT_EQ(files->worked, (QList<int>{1, 2})) << "free as soon as the rival is done with it";
    EXPECT_EQ(rival->worked, (QList<int>{2, 1})) << "kept until the other round's end";
}
