#include "work/WorkBoard.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

Allowance always(const Circumstances&, qsizetype)
{
    return {1};
}

const WorkKind kKeys{1, &always, 0, {}, {}, "keys"};
const WorkKind kTempo{2, &always, 0, {}, {}, "tempo"};

TEST(WorkBoard, ShowsWhatTheUserWaitsForFirstThenWhatIsAheadThenByRank)
{
    WorkBoard board;
    WorkEntry tempo(board, kTempo);
    WorkEntry keys(board, kKeys);
    WorkEntry writes(board, 2, u"writes"_s);
    WorkEntry moves(board, 1, u"moves"_s, WorkEntry::Stop::None);
    const auto shown = [&] {
        QStringList texts;
        for (const WorkEntry* entry : board.entries())
            texts.append(entry->text());
        return texts.join(QLatin1Char(' ')).toStdString();
    };
    QSignalSpy changes(&board, &WorkBoard::changed);
    EXPECT_EQ(board.first(), nullptr);
    tempo.show({1, 3});
    keys.show({0, 1});
    EXPECT_EQ(shown(), "keys tempo");
    tempo.setAhead(true);
    EXPECT_EQ(shown(), "tempo keys");
    keys.setAhead(true);
    EXPECT_EQ(shown(), "keys tempo");
    writes.show({0, 2});
    moves.show(u"moves back"_s, {0, 2});
    EXPECT_EQ(shown(), "moves back writes keys tempo");
    EXPECT_EQ(changes.size(), 6);
    writes.show({0, 2});
    EXPECT_EQ(changes.size(), 6) << "nothing differs";
    moves.show({2, 2});
    EXPECT_EQ(board.first(), &writes);
    QSignalSpy writesStopped(&writes, &WorkEntry::stopRequested);
    QSignalSpy movesStopped(&moves, &WorkEntry::stopRequested);
    writes.stop();
    moves.stop();
    EXPECT_EQ(writesStopped.size(), 1);
    EXPECT_EQ(movesStopped.size(), 0) << "this one cannot be stopped";
}

} // namespace
