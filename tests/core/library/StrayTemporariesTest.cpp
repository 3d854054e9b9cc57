#include "core/library/imports/StrayTemporaries.h"
#include "core/library/files/FileLocks.h"
#include "support/StoreFixture.h"

using Case = TrashError::Case;
using Tone = WorkspaceStatus::Tone;

class StrayTemporariesTest : public StoreFixture {
protected:
    static QUrl url(const char* name) { return FileURL::fromPath(QStringLiteral("/music/") + QLatin1StringView(name)); }

    std::unique_ptr<StrayTemporaries> make()
    {
        return std::make_unique<StrayTemporaries>(
            StrayTemporaries::Dependencies{store->status(), executor, locks, store->board(), &trashCan});
    }

    FileLocks locks;
    std::unique_ptr<StrayTemporaries> strays = make();
};

TEST_F(StrayTemporariesTest, NothingMovesUnasked)
{
    QSignalSpy changes(strays.get(), &StrayTemporaries::changed);
    strays->add({url("a"), url("b"), url("a")});
    strays->add({url("b")});
    EXPECT_EQ(strays->list(), (QList<QUrl>{url("a"), url("b")}));
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(executor.pendingCount(), 0);
}

TEST_F(StrayTemporariesTest, TheStatusLineSaysWhatCameOfTheMove)
{
    const std::tuple<QMap<QUrl, Case>, QList<QUrl>, QString, Tone> rows[] = {
        {{}, {}, QStringLiteral("Перемещено в Корзину: 3"), Tone::Success},
        {{{url("a"), Case::noSuchFile}}, {}, QStringLiteral("Перемещено в Корзину: 2"), Tone::Success},
        {{{url("b"), Case::unavailable}, {url("c"), Case::noPermission}},
         {url("b"), url("c")},
         QStringLiteral("Перемещено в Корзину: 1 · Корзина недоступна на томе с файлом b."),
         Tone::Warning},
        {{{url("a"), Case::outOfSpace}, {url("b"), Case::noSuchFile}, {url("c"), Case::readOnlyVolume}},
         {url("a"), url("c")},
         QStringLiteral("Файл a не перемещён: недостаточно места."),
         Tone::Warning},
    };
    for (const auto& [errors, left, status, tone] : rows) {
        strays = make();
        trashCan.asked.clear();
        trashCan.errors = errors;
        strays->add({url("a"), url("b"), url("c")});
        strays->moveToTrash();
        EXPECT_TRUE(trashCan.asked.isEmpty()) << "in the background alone";
        executor.runAll();
        EXPECT_EQ(trashCan.asked, (QList<QUrl>{url("a"), url("b"), url("c")}))
            << "one failure does not hold up the others";
        EXPECT_EQ(strays->list(), left);
        EXPECT_EQ(statusText(), status);
        EXPECT_EQ(workspace().workspaceStatus()->tone, tone);
    }
}

TEST_F(StrayTemporariesTest, OneMoveAtATimeAndLateOnesStay)
{
    strays->moveToTrash();
    EXPECT_EQ(executor.pendingCount(), 0) << "nothing to move";
    strays->add({url("a")});
    bool wasMoving = true;
    QObject::connect(strays.get(), &StrayTemporaries::changed, [&] { wasMoving = strays->isMoving(); });
    strays->moveToTrash();
    strays->moveToTrash();
    EXPECT_TRUE(strays->isMoving() && wasMoving);
    EXPECT_EQ(executor.pendingCount(), 1);
    strays->add({url("late")});
    executor.runAll();
    EXPECT_EQ(strays->list(), QList<QUrl>{url("late")});
    EXPECT_FALSE(wasMoving) << "whoever hears of the end can ask again";
    strays->moveToTrash();
    executor.runAll();
    EXPECT_TRUE(strays->list().isEmpty());
    EXPECT_EQ(trashCan.asked, (QList<QUrl>{url("a"), url("late")}));
}

TEST_F(StrayTemporariesTest, AnEndInTheMiddleTouchesNothingMore)
{
    strays->add({url("a"), url("b")});
    strays->moveToTrash();
    strays.reset();
    executor.runAll();
    EXPECT_LE(trashCan.asked.size(), 1) << "at most the one that had begun";
    EXPECT_FALSE(workspace().workspaceStatus());
}
