#include "support/StoreFixture.h"

#include "async/MainQueue.h"

TEST(UndoManagerTest, GroupsRegistrationsOfOneNameAndOneTurn)
{
    UndoManager undo;
    QStringList log;
    const auto add = [&](const QString& name, const QString& word) {
        undo.registerUndo(
            name, [&log, word] { log.append(u'-' + word); }, [&log, word] { log.append(u'+' + word); });
    };
    add(QStringLiteral("Присвоить жанр"), QStringLiteral("a"));
    add(QStringLiteral("Присвоить жанр"), QStringLiteral("b"));
    add(QStringLiteral("Изменить альбом"), QStringLiteral("c"));
    async::MainQueue::drain();
    add(QStringLiteral("Изменить альбом"), QStringLiteral("d"));
    EXPECT_TRUE(log.isEmpty()) << "registering does nothing";

    undo.undo();
    EXPECT_EQ(log, QStringList({QStringLiteral("-d")})) << "another turn is another step";
    undo.undo();
    EXPECT_EQ(undo.undoActionName(), QStringLiteral("Присвоить жанр"));
    EXPECT_EQ(undo.redoActionName(), QStringLiteral("Изменить альбом"));
    log.clear();
    undo.undo();
    EXPECT_EQ(log, QStringList({QStringLiteral("-b"), QStringLiteral("-a")})) << "backwards";
    EXPECT_FALSE(undo.canUndo());
    log.clear();
    undo.redo();
    EXPECT_EQ(log, QStringList({QStringLiteral("+a"), QStringLiteral("+b")}));
    add(QStringLiteral("Изменить альбом"), QStringLiteral("e"));
    EXPECT_FALSE(undo.canRedo()) << "a new action ends the redo line";
    async::MainQueue::drain();
}
