#include "core/library/undo/History.h"

#include "async/MainQueue.h"
#include "platform/Localization.h"

#include <gtest/gtest.h>

TEST(HistoryTest, GroupsRegistrationsOfOneNameAndOneTurn)
{
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    History undo;
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

namespace {

class LargeStep final : public History::Step {
public:
    explicit LargeStep(qint64 bytes)
        : Step(History::Kind::Removal)
        , m_bytes(bytes)
    {
    }
    QString name() const override { return QStringLiteral("Убрать из плейлиста"); }
    qint64 byteCount() const override { return m_bytes; }
    History::Outcome undo() override { return History::Outcome::Done; }

private:
    qint64 m_bytes;
};

int undoneSteps(History& history)
{
    int count = 0;
    for (; history.canUndo(); ++count)
        history.undo();
    return count;
}

} // namespace

TEST(HistoryTest, TheOldestStepsGoWhereThereAreTooManyOrTooLargeOnes)
{
    History history;
    for (int step = 0; step < 250; ++step)
        history.push(std::make_shared<LargeStep>(0));
    EXPECT_EQ(undoneSteps(history), 200);
    for (int step = 0; step < 5; ++step)
        history.push(std::make_shared<LargeStep>(100 << 20));
    EXPECT_EQ(undoneSteps(history), 2);
    history.push(std::make_shared<LargeStep>(1 << 30));
    EXPECT_EQ(undoneSteps(history), 1) << "what was done last can always be taken back";
}

TEST(HistoryTest, ASpentStepIsNotOffered)
{
    History history;
    bool isSpent = false;
    const auto nothing = [] {};
    history.registerUndo(QStringLiteral("Присвоить жанр"), nothing, nothing);
    history.registerUndo(QStringLiteral("Изменить альбом"), nothing, nothing, [&] { return isSpent; });
    EXPECT_EQ(history.undoActionName(), QStringLiteral("Изменить альбом"));
    isSpent = true;
    EXPECT_EQ(history.undoActionName(), QStringLiteral("Присвоить жанр"));
    history.undo();
    EXPECT_FALSE(history.canUndo());
    async::MainQueue::drain();
}
