#include "core/library/files/FileLocks.h"
#include "support/FolderTrashCan.h"
#include "support/Machine.h"
#include "support/StoreFixture.h"

using List = Track::MetadataDestination;
using Case = TrashError::Case;

/// Rows whose files go to the Trash.
class RemovalTrashTest : public StoreFixture {
protected:
    Removal& removal() { return store->removal(); }
    void trash(const QList<Track>& rows)
    {
        removal().trashTracks(ids(rows));
        settle();
    }
    QStringList listed() { return titles(workspace().tracks().rows()); }
    QString lastError() const { return store->workspace().lastError().value_or(QString()); }
    void undoAll()
    {
        while (history().canUndo())
            undo();
    }

    const Track star = favorite(QStringLiteral("star.mp3"));
};

TEST_F(RemovalTrashTest, FilesGoOneByOneAndTheirRowsTogether)
{
    fill({a, star, b, c});
    const Track copy = star.withID(freshID());
    workspace().setList(List::Analysis, {copy});
    store->selection().select(ids({a, star}), star.id());
    store->selection().rememberSelection(LibraryTab::Favorites);
    player.current = star.id();
    QSignalSpy changes(&workspace(), &Workspace::tracksChanged);
    QSignalSpy told(&notifications, &Notifications::velmoraFavoriteMembershipDidChange);
    QStringList steps;
    QObject::connect(&store->board(), &WorkBoard::changed, [&] {
        const WorkEntry* const entry = store->board().first();
        const WorkProgress progress = entry ? entry->progress() : WorkProgress();
        steps.append(QStringLiteral("%1/%2").arg(progress.done).arg(progress.total));
    });
    removal().trashTracks(ids({star, a}));
    EXPECT_TRUE(trashCan.asked.isEmpty()) << "in the background alone";
    executor.runOne();
    EXPECT_EQ(workspace().tracks().size(), 4);
    settle();
    EXPECT_EQ(trashCan.asked, (QList<QUrl>{a.url(), star.url()})) << "in list order";
    EXPECT_EQ(steps, (QStringList{QStringLiteral("0/2"), QStringLiteral("1/2"), QStringLiteral("0/0")}));
    EXPECT_EQ(listed(), titles({b, c}));
    EXPECT_TRUE(workspace().analysisTracks().isEmpty()) << "a file that is gone has no row anywhere";
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(told.size(), 1);
    EXPECT_EQ(player.current, c.id()) << "the nearest row as the playlist shows them, by name";
    EXPECT_EQ(workspace().selectedIDs(), ids({c}));
    EXPECT_EQ(statusText(), QStringLiteral("Перемещено в Корзину: 2"));

    undo();
    EXPECT_EQ(listed(), titles({a, star, b, c}));
    EXPECT_TRUE(now(star).isFavorite());
    EXPECT_EQ(ids(workspace().analysisTracks().rows()), ids({copy}));
    EXPECT_EQ(trashCan.restored, (QList<QByteArray>{"/music/a.mp3", "/music/star.mp3"})) << "each file once";
    EXPECT_EQ(statusText(), QStringLiteral("Восстановлено: 2"));
    EXPECT_TRUE(store->selection().selectionState(LibraryTab::Favorites).ids.isEmpty()) << "forgotten everywhere";
}

TEST_F(RemovalTrashTest, AFileThatFailsStaysAndTheFirstErrorIsTold)
{
    fill({a, b, c});
    trashCan.errors = {{a.url(), Case::noPermission}, {c.url(), Case::noSuchFile}};
    trash({a, b, c});
    EXPECT_EQ(listed(), titles({a, c}));
    EXPECT_EQ(lastError(), QStringLiteral("Нет прав на перемещение файла a.mp3."));
    EXPECT_EQ(workspace().lastErrorTitle(), QStringLiteral("Не удалось переместить в Корзину"));
    EXPECT_EQ(statusText(), QStringLiteral("Перемещено в Корзину: 1"));
    workspace().setWorkspaceStatus(std::nullopt);
    trash({a, c});
    EXPECT_TRUE(statusText().isEmpty());
    undo();
    EXPECT_EQ(listed(), titles({a, b, c})) << "a step that came to nothing is not in the way";
}

TEST_F(RemovalTrashTest, WhatCannotBeRestoredIsSkippedWithAnError)
{
    const std::pair<Case, QString> cases[] = {
        {Case::fileExists, QStringLiteral("На месте файла b.mp3 уже стоит другой файл.")},
        {Case::noSuchFile, QStringLiteral("Файл b.mp3 не найден.")},
    };
    for (const auto& [reason, error] : cases) {
        fill({a, b, c});
        trashCan.errors.clear();
        trash({a, b, c});
        trashCan.errors = {{b.url(), reason}};
        undo();
        EXPECT_EQ(listed(), titles({a, c}));
        EXPECT_EQ(lastError(), QStringLiteral("Не удалось восстановить «b.mp3»: ") + error);
        EXPECT_EQ(statusText(), QStringLiteral("Восстановлено: 2"));
        EXPECT_FALSE(history().canUndo()) << "the step is used up";
    }
}

TEST_F(RemovalTrashTest, AFileGoesOnlyAfterTheWriteIntoIt)
{
    fill({a, b});
    store->fileLocks().acquire(QStringLiteral("/music/a.mp3"), {});
    trash({a, b});
    EXPECT_TRUE(trashCan.asked.isEmpty());
    store->fileLocks().release(QStringLiteral("/music/a.mp3"));
    settle();
    EXPECT_EQ(trashCan.asked.size(), 2);
    EXPECT_TRUE(workspace().tracks().isEmpty());
    // And a write that was asked for meanwhile finds the file free and its row gone.
    files.calls.clear();
    store->tagWriting().saver().write(a.id());
    settle();
    EXPECT_TRUE(files.calls.isEmpty());
    EXPECT_TRUE(lastError().isEmpty());
}

TEST_F(RemovalTrashTest, AFilesPathStaysLockedUntilItsRowIsGone)
{
    Track edited = a;
    edited.setTagSource(Track::TagSource::Read);
    edited.edit(TagTexts::of({{&AudioTags::genre, "House"}}, a.tags()), TagField::Genre);
    fill({edited, b, c, star});
    removal().trashTracks(ids({a, b, c, star})); // enough for a write that did not wait
    executor.runOne();
    ASSERT_EQ(trashCan.asked, QList<QUrl>{a.url()});
    ASSERT_TRUE(workspace().tracks().contains(a.id())) << "it waits for the others";
    files.before = [this](const FakeTagFiles::Call&) {
        EXPECT_FALSE(workspace().tracks().contains(a.id())) << "whoever waits for the file comes after its row is gone";
    };
    store->tagWriting().saver().write(a.id());
    settle();
    EXPECT_TRUE(lastError().isEmpty());
    files.before = {};
    undoAll();
    EXPECT_EQ(listed(), titles({a, b, c, star}));
}

TEST_F(RemovalTrashTest, WhoeverHoldsAFileHearsOfItsMoves)
{
    fill({a, b});
    QStringList told;
    QObject::connect(&store->fileEvents(), &FileEvents::changed, [&](const FileChange& change) {
        using Kind = FileChange::Kind;
        EXPECT_EQ(change.url, change.former);
        EXPECT_TRUE(change.isSoundSame);
        told.append(FileURL::lastPathComponent(change.url) + (change.kind == Kind::Trashed ? u'-' : u'+'));
    });
    trashCan.errors = {{b.url(), Case::noPermission}};
    trash({a, b});
    undoAll();
    EXPECT_EQ(told, QStringList({QStringLiteral("a.mp3-"), QStringLiteral("a.mp3+")}));
}

TEST_F(RemovalTrashTest, UndoWaitsForTheMoveThatIsUnderWay)
{
    fill({a, b, c});
    removal().removeTracksFromPlaylist(ids({c}));
    removal().trashTracks(ids({a, b}));
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Переместить в Корзину"));
    history().undo();
    EXPECT_FALSE(history().canUndo()) << "what was done before it has to wait";
    settle();
    EXPECT_EQ(listed(), titles({a, b}));
    EXPECT_TRUE(trashCan.held.isEmpty());
    undoAll();
    EXPECT_EQ(listed(), titles({a, b, c}));

    // If nothing of it went, an older step is not taken for it.
    trashCan.errors = {{a.url(), Case::unavailable}};
    removal().removeTracksFromPlaylist(ids({c}));
    removal().trashTracks(ids({a}));
    undo();
    EXPECT_EQ(listed(), titles({a, b}));
    undoAll();
    EXPECT_EQ(listed(), titles({a, b, c}));
}

TEST_F(RemovalTrashTest, RowsComeBackWithTheirFiles)
{
    const QList<Track> rows = numbered(20);
    fill(rows);
    trash(rows);
    history().undo();
    EXPECT_TRUE(history().isBusy());
    for (int file = 0; file < 12; ++file) {
        executor.runOne();
        const qsizetype listed = workspace().tracks().rows().size();
        EXPECT_GT(listed + 8, trashCan.restored.size()) << "rows do not lag far behind their files";
    }
    EXPECT_FALSE(workspace().tracks().isEmpty());
    settle();
    EXPECT_EQ(listed(), titles(rows));
    EXPECT_TRUE(!history().canUndo());
    EXPECT_FALSE(history().isBusy());
    EXPECT_EQ(statusText(), QStringLiteral("Восстановлено: 20"));
}

TEST_F(RemovalTrashTest, ARoundOfMovesCanBeStopped)
{
    const QList<Track> rows = numbered(10);
    fill(rows);
    removal().trashTracks(ids(rows));
    for (int file = 0; file < 3; ++file)
        executor.runOne();
    store->board().first()->stop();
    settle();
    EXPECT_EQ(trashCan.asked.size(), 4) << "the file under way goes";
    EXPECT_EQ(workspace().tracks().rows().size(), 6);
    EXPECT_EQ(statusText(), QStringLiteral("Перемещено в Корзину: 4 · остановлено, осталось: 6"));
    EXPECT_FALSE(store->board().first());

    history().undo();
    executor.runOne();
    store->board().first()->stop();
    settle();
    EXPECT_EQ(workspace().tracks().rows().size(), 8);
    EXPECT_EQ(statusText(), QStringLiteral("Восстановлено: 2 · остановлено, осталось: 2"));
    EXPECT_FALSE(history().isBusy());
    history().undo(); // and the rest
    settle();
    EXPECT_EQ(listed(), titles(rows));
    EXPECT_TRUE(!history().canUndo());
}

TEST_F(RemovalTrashTest, NothingElseIsTakenBackWhileFilesComeBack)
{
    const Track edited = read(QStringLiteral("edited.mp3"));
    fill({edited});
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({edited}));
    settle();
    trash({edited});
    history().undo();
    EXPECT_FALSE(history().canUndo());
    history().undo(); // a second press while the file is on its way
    settle();
    ASSERT_EQ(workspace().tracks().rows().size(), 1);
    EXPECT_EQ(now(edited).tags().genre, QStringLiteral("House")) << "the edit below was left alone";
    EXPECT_TRUE(history().canUndo());
}

TEST_F(RemovalTrashTest, TheTrashGoesBeforeLaterEditsButNotBeforeLaterRemovals)
{
    fill({a, b, star});
    trash({a});
    store->favorites().toggleFavorites(ids({b}));
    settle();
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Переместить в Корзину"));
    removal().removeTracksFromPlaylist(ids({star}));
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Убрать из плейлиста"));
    history().undo();
    undo();
    EXPECT_EQ(listed(), titles({a, b, star}));
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Изменить избранное"));
}

TEST_F(RemovalTrashTest, DuplicatesAreLookedUpInTheirOwnList)
{
    const Track twin = b.withID(freshID());
    fill({a, b});
    workspace().setList(List::Duplicates, {twin, c});
    player.current = twin.id();
    removal().trashDuplicateTracks(ids({a, twin}));
    settle();
    EXPECT_EQ(trashCan.asked, QList<QUrl>{b.url()}) << "not the playlist's row";
    EXPECT_EQ(ids(workspace().duplicateTracks().rows()), ids({c}));
    EXPECT_EQ(listed(), titles({a}));
    EXPECT_EQ(player.current, c.id()) << "on in the duplicates as they were";
    undoAll();
    EXPECT_EQ(ids(workspace().duplicateTracks().rows()), ids({twin, c}));
    EXPECT_EQ(listed(), titles({a, b}));
}

TEST_F(RemovalTrashTest, AnEndInTheMiddleMovesNothingMore)
{
    fill({a, b, c});
    removal().trashTracks(ids({a, b, c}));
    executor.runOne();
    store.reset();
    executor.runAll();
    EXPECT_LE(trashCan.asked.size(), 2) << "at most the one that had begun";
}

TEST_F(RemovalTrashTest, RealFilesGoAndComeBackAndAreNeverOverwritten)
{
    FolderTrashCan can(folder.filePath(QStringLiteral("Trash")));
    useTrashCan(can);
    const Track first = track(writeFile(folder.filePath(QStringLiteral("music/один.mp3")), "first"));
    const Track second = track(writeFile(folder.filePath(QStringLiteral("music/two.mp3")), "second"));
    fill({first, second});
    const QDir trashed(folder.filePath(QStringLiteral("Trash/files")));
    for (int round = 0; round < 2; ++round) {
        trash({first, second});
        EXPECT_FALSE(QFile::exists(first.url().toLocalFile()));
        EXPECT_EQ(trashed.entryList(QDir::Files).size(), 2);
        EXPECT_TRUE(workspace().tracks().isEmpty());
        undo();
        EXPECT_EQ(readFile(first.url().toLocalFile()), "first");
        EXPECT_EQ(listed(), titles({first, second}));
    }
    trash({first, second});
    writeFile(first.url().toLocalFile(), "newcomer");
    EXPECT_TRUE(QFile::remove(trashed.filePath(QStringLiteral("two.mp3")))) << "the Trash is emptied of it";
    undo();
    EXPECT_EQ(readFile(first.url().toLocalFile()), "newcomer");
    EXPECT_EQ(trashed.entryList(QDir::Files), QStringList{QStringLiteral("один.mp3")}) << "left alone";
    EXPECT_TRUE(workspace().tracks().isEmpty());
    EXPECT_EQ(lastError(), QStringLiteral("Не удалось восстановить «один.mp3»: На месте файла один.mp3 уже стоит "
                                          "другой файл."));
    EXPECT_EQ(workspace().lastErrorTitle(), QStringLiteral("Не удалось вернуть из Корзины"));
}
