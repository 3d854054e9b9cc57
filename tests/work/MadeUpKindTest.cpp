#include "MadeUpKind.h"

#include "support/Machine.h"
#include "support/ManualClock.h"
#include "support/ManualExecutor.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

namespace {

using namespace Qt::StringLiterals;

TEST(MadeUpKind, JoinsTheRoadOfWorkInFewLines)
{
    ManualClock clock;
    ManualExecutor executor;
    Scheduler scheduler(clock);
    WorkBoard board;
    MadeUpKind kind({scheduler, board, executor});
    kind.find({u"ab"_s, u"b"_s});
    ASSERT_TRUE(board.first());
    EXPECT_EQ(board.first()->progress(), (WorkProgress{0, 2}));
    scheduler.setScrolling(true);
    executor.runAll();
    EXPECT_TRUE(kind.sums().isEmpty());
    scheduler.setScrolling(false);
    executor.runAll();
    EXPECT_EQ(kind.sums(), (QHash<QString, int>{{u"ab"_s, 195}, {u"a"_s, 97}, {u"b"_s, 98}}));
    EXPECT_EQ(board.first(), nullptr);
    kind.find({u"x"_s, u"y"_s});
    board.first()->stop();
    executor.runAll();
    EXPECT_EQ(kind.sums().size(), 3);

    const QByteArray kept = readFile(QFileInfo(QStringLiteral(__FILE__)).dir().filePath(u"MadeUpKind.h"_s));
    EXPECT_GT(kept.count('\n'), 10);
    EXPECT_LE(kept.count('\n'), 120);
}

} // namespace
