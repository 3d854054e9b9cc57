#include "core/library/tagwriting/UnwrittenEdits.h"

#include "core/library/tagwriting/ClosingQuestion.h"
#include "core/library/tagwriting/GivenUpEdits.h"
#include "support/FailingFileCalls.h"
#include "support/Machine.h"
#include "support/Pictures.h"
#include "support/StoreFixture.h"

namespace {

KeptEdit edit(const QByteArray& path, const QByteArray& genre, TagFields fields = TagField::Genre)
{
    return {FileURL::fromPath(QString::fromUtf8(path)), fields, TagTexts::of({{&AudioTags::genre, genre.constData()}})};
}

/// "a.mp3=House b.mp3=Pop"
std::string genres(const QList<KeptEdit>& edits)
{
    QStringList result;
    for (const KeptEdit& each : edits)
        result.append(FileURL::lastPathComponent(each.url) + u'=' + each.tags.genre);
    return result.join(u' ').toStdString();
}

} // namespace

class EditJournalTest : public testing::Test {
protected:
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("data/unwritten-edits-v1.jsonl"));
    const QString data = folder.filePath(QStringLiteral("data"));
    std::string kept() { return genres(EditJournal(data).read()); }
    QByteArray bytes() const { return readFile(path); }
};

TEST_F(EditJournalTest, HoldsTheLastWordOfEachFile)
{
    EditJournal journal(data);
    EXPECT_TRUE(journal.note({edit("/a.mp3", "House"), edit("/b\n.mp3", "Line\nend")}, 1));
    EXPECT_TRUE(journal.note({edit("/c.mp3", "", TagField::Genre | TagFields(TagField::Year))}, 2));
    EXPECT_TRUE(journal.note({edit("/a.mp3", "Late")}, 2)) << "too late";
    EXPECT_EQ(kept(), "a.mp3=House b\n.mp3=Line\nend c.mp3=");
    EXPECT_EQ(EditJournal(data).read().last().fields, TagField::Genre | TagFields(TagField::Year));
    EXPECT_TRUE(journal.note({edit("/a.mp3", "Techno")}, 3));
    EXPECT_TRUE(journal.note({edit("/b\n.mp3", "", {}), edit("/c.mp3", "", {})}, 4));
    EXPECT_EQ(kept(), "a.mp3=Techno");
    EXPECT_TRUE(journal.note({edit("/a.mp3", "", {})}, 5));
    EXPECT_TRUE(bytes().isEmpty()) << "nothing is left behind";
}

TEST_F(EditJournalTest, AStopAtAnyStepLosesNothingThatWasKept)
{
    for (int step = 0;; ++step) {
        SCOPED_TRACE(step);
        QFile::remove(path);
        EditJournal journal(data);
        ASSERT_TRUE(journal.note({edit("/a.mp3", "House")}, 1));
        const auto steps = [&] {
            FailingFileCalls calls;
            calls.stopStep = step;
            calls.transferLimit = 20;
            journal.note({edit("/b.mp3", "Pop")}, 2);
            return calls.stepCount();
        }();
        const std::string found = kept();
        EXPECT_TRUE(found == "a.mp3=House" || found == "a.mp3=House b.mp3=Pop") << found;
        EditJournal again(data); // what was cut is written over
        ASSERT_TRUE(again.note({edit("/c.mp3", "X")}, 1));
        EXPECT_EQ(kept(), found + " c.mp3=X");
        if (steps <= step)
            break;
    }
}

// Neither a disk's trouble nor a file too large is taken for an empty journal.
TEST_F(EditJournalTest, AFileThatCannotBeReadIsNeverWrittenOver)
{
    ASSERT_TRUE(EditJournal(data).note({edit("/a.mp3", "House")}, 1));
    const QByteArray before = bytes();
    {
        FailingFileCalls calls;
        calls.failingName = "read";
        EXPECT_TRUE(EditJournal(data).note({edit("/b.mp3", "Pop")}, 1));
    }
    EXPECT_EQ(kept(), "b.mp3=Pop");
    EXPECT_EQ(readFile(QDir(data).filePath(QDir(data).entryList({QStringLiteral("*.unread-*")}).value(0))), before);
}

TEST_F(EditJournalTest, WhatCannotBeWrittenIsToldAndTriedAgain)
{
    const std::tuple<const char*, int, int> troubles[] = {{"rename", 0, EIO}, // of the first look
                                                          {"write", -1, ENOSPC}};
    for (const auto& [name, step, error] : troubles) {
        SCOPED_TRACE(name);
        QDir(data).removeRecursively();
        ASSERT_TRUE(EditJournal(data).note({edit("/a.mp3", "House")}, 1));
        const QByteArray before = bytes();
        EditJournal journal(data);
        {
            FailingFileCalls calls;
            calls.failingName = name;
            calls.failingStep = step;
            calls.error = error;
            EXPECT_FALSE(journal.note({edit("/b.mp3", "Pop")}, 1));
            EXPECT_EQ(journal.error(), error);
        }
        EXPECT_EQ(bytes(), before);
        EXPECT_TRUE(journal.note({}, 2)) << "what was noted meanwhile comes after it";
        EXPECT_EQ(kept(), "a.mp3=House b.mp3=Pop");
    }
}

TEST_F(EditJournalTest, NoEditGoesForWantOfRoomUnsaid)
{
    EditJournal journal(data, 100);
    ASSERT_TRUE(journal.note({edit("/a.mp3", "House")}, 1));
    EXPECT_TRUE(journal.note({edit("/a.mp3", "House 2")}, 2)) << "what counts no more gives its room";
    EXPECT_TRUE(journal.note({edit("/a.mp3", "House 3")}, 3));
    EXPECT_FALSE(journal.note({edit("/b.mp3", "Pop"), edit("/c.mp3", "Pop"), edit("/d.mp3", "Pop")}, 4));
    EXPECT_EQ(journal.error(), EFBIG);
    EXPECT_EQ(kept(), "a.mp3=House 3");
    EXPECT_TRUE(journal.note({edit("/c.mp3", "", {}), edit("/d.mp3", "", {})}, 5));
    EXPECT_EQ(kept(), "a.mp3=House 3 b.mp3=Pop");
}

TEST_F(EditJournalTest, DamagedLinesArePassedOverAndOldOnesDoNotPileUp)
{
    EditJournal journal(data);
    ASSERT_TRUE(journal.note({edit("/a.mp3", "House")}, 1));
    writeFile(path, bytes() + "{\"path\":\"/b.mp3\",\"genre\":\n{\"genre\":\"x\"}\n\xff\n{\"path\":\"/"
                              "c.mp3\",\"later\":[1],\"genre\":\"Y\"}\n");
    EXPECT_EQ(kept(), "a.mp3=House c.mp3=Y");
    const QByteArray text(100'000, 'x');
    for (quint64 revision = 2; revision < 60; ++revision)
        journal.note({edit("/a.mp3", text + QByteArray::number(revision))}, revision);
    EXPECT_LT(bytes().size(), 2 * 1024 * 1024);
    EXPECT_TRUE(kept() == "a.mp3=" + text.toStdString() + "59");
}

/// Starts of the program on one data folder, one after the other.
class UnwrittenEditsTest : public StoreFixture {
protected:
    UnwrittenEditsTest() { start(); }
    ~UnwrittenEditsTest() override
    {
        files.before = {};
        store.reset();
        settle();
    }

    /// Ends the program as a kill does, and starts it again.
    void start()
    {
        store.reset();
        executor.dropAll();
        async::MainQueue::drain();
        files = {};
        filesHold();
        journal = std::make_unique<EditJournal>(folder.path());
        LibraryServices fresh = services();
        fresh.editJournal = journal.get();
        store = std::make_unique<LibraryStore>(fresh);
    }
    /// As the session brings the rows back.
    void bringBack(const QList<Track>& rows)
    {
        TrackList list;
        QList<Track> restored;
        for (const Track& row : rows) {
            restored.append(Track::restored(row.id(), row.url(), row.tags()));
            restored.last().setIsInPlaylist(true);
        }
        list.assign(restored);
        workspace().setRestoringWorkspaceSession(true);
        workspace().adoptTracks(list);
        workspace().setRestoringWorkspaceSession(false);
    }
    UnwrittenEdits& edits() { return store->unwrittenEdits(); }
    ClosingQuestion& closing() { return store->closingQuestion(); }
    std::string kept() { return genres(EditJournal(folder.path()).read()); }
    void assign(const char* genre, const QList<Track>& rows)
    {
        store->tagWriting().assignGenre(QString::fromUtf8(genre), ids(rows));
    }

    std::unique_ptr<EditJournal> journal;
    const Track a = read(QStringLiteral("a.mp3"));
    const Track b = read(QStringLiteral("b.mp3"));
};

TEST_F(UnwrittenEditsTest, WhatFailedIsCountedWrittenAgainAndKept)
{
    preferences.keepsOtherTagEntries.set(true);
    fill({a, b});
    files.fail();
    assign("House", {a, b});
    EXPECT_EQ(edits().leftCount(), 0) << "on its way";
    settle();
    EXPECT_EQ(edits().leftCount(), 2);
    EXPECT_EQ(kept(), "a.mp3=House b.mp3=House");
    const QList<Track> rows = workspace().tracks().rows();

    files = {};
    edits().writeAgain(ids({a}));
    settle();
    EXPECT_EQ(edits().leftCount(), 1);
    EXPECT_EQ(kept(), "b.mp3=House");

    start();
    filesHold({{&AudioTags::genre, "Old"}, {&AudioTags::comment, "from elsewhere"}});
    bringBack(rows);
    settle();
    ASSERT_EQ(files.calls.size(), 1);
    EXPECT_EQ(files.calls.first().write.url, b.url());
    EXPECT_EQ(files.calls.first().write.tags.genre, QStringLiteral("House"));
    EXPECT_EQ(files.calls.first().write.fields, TagFields(TagField::Genre)) << "nothing else differs";
    EXPECT_EQ(now(b).tags().comment, QStringLiteral("from elsewhere"));
    EXPECT_TRUE(kept().empty());
    EXPECT_TRUE(edits().rows().isEmpty());
}

TEST_F(UnwrittenEditsTest, AWarningStandsWhileEditsCannotBeKept)
{
    fill({a});
    files.fail();
    {
        FailingFileCalls calls;
        calls.failingName = "open";
        calls.error = ENOSPC;
        assign("House", {a});
        settle();
        clock.advance(async::seconds(10)); // what became of the edit is said first
        EXPECT_EQ(statusText(),
                  QStringLiteral("Незаписанные правки не сохраняются до следующего запуска: на диске нет места"));
    }
    assign("Techno", {a});
    settle();
    clock.advance(async::seconds(10));
    EXPECT_EQ(statusText(), QString());
    EXPECT_EQ(kept(), "a.mp3=Techno");
}

TEST_F(UnwrittenEditsTest, AFileThatHoldsTheEditIsLeftAlone)
{
    ASSERT_TRUE(journal->note({edit(a.url().path().toUtf8(), "House")}, 1));
    start();
    filesHold({{&AudioTags::genre, "House"}});
    bringBack({a});
    settle();
    EXPECT_TRUE(files.calls.isEmpty());
    EXPECT_EQ(now(a).tags().genre, QStringLiteral("House"));
    EXPECT_FALSE(now(a).editedFields());
    EXPECT_TRUE(kept().empty());
}

TEST_F(UnwrittenEditsTest, AnEditThatIsFasterThanTheJournalTakesNoOtherFieldsAway)
{
    filesHold();
    ASSERT_TRUE(journal->note({edit(a.url().path().toUtf8(), "House")}, 1));
    start();
    files.fail();
    fill({a});
    type(a, {{&AudioTags::title, "Typed"}});
    settle();
    EXPECT_EQ(now(a).tags().genre, QStringLiteral("House"));
    EXPECT_EQ(now(a).editedFields(), TagField::Genre | TagFields(TagField::Title));
    EXPECT_EQ(kept(), "a.mp3=House");
}

TEST_F(UnwrittenEditsTest, AKeptEditWaitsForTheRowOfItsFile)
{
    ASSERT_TRUE(journal->note({edit(a.url().path().toUtf8(), "House")}, 1));
    start();
    bringBack({b});
    settle();
    EXPECT_TRUE(files.calls.isEmpty());
    fill({now(b), Track::unread(a.url())});
    settle();
    ASSERT_EQ(files.calls.size(), 1);
    EXPECT_EQ(files.calls.first().write.tags.genre, QStringLiteral("House"));
}

// At every step between the edit and its file: once it is noted, it is in the file or comes there after the next start.
TEST_F(UnwrittenEditsTest, AKillAtAnyStepLosesNoEdit)
{
    preferences.keepsOtherTagEntriesAsked.set(true);
    for (int steps = 1; steps < 8; ++steps) {
        SCOPED_TRACE(steps);
        start();
        fill({});
        fill({a, b});
        settle();
        assign("House", {a, b});
        for (int step = 0; step < steps; ++step)
            executor.runOne();
        const QList<Track> rows = workspace().tracks().rows();
        QList<FakeTagFiles::Call> calls = files.calls;
        start();
        bringBack(rows);
        settle();
        calls += files.calls;
        QSet<QUrl> written;
        for (const FakeTagFiles::Call& call : std::as_const(calls)) {
            if (call.write.tags.genre == QStringLiteral("House"))
                written.insert(call.write.url);
        }
        EXPECT_EQ(written, QSet<QUrl>({a.url(), b.url()}));
        EXPECT_TRUE(kept().empty());
    }
}

TEST_F(UnwrittenEditsTest, AnEditIsNoLongerKeptOnceTheFileOfARowThatLeftHoldsIt)
{
    fill({a, b});
    assign("House", {a, b});
    files.fail("disk full", b.url());
    fill({});
    settle();
    EXPECT_EQ(files.calls.size(), 2);
    EXPECT_EQ(kept(), "b.mp3=House");
}

TEST_F(UnwrittenEditsTest, AFileThatOthersChangedIsWrittenOnlyAtTheUsersWord)
{
    for (const bool isChanged : {false, true}) {
        SCOPED_TRACE(isChanged);
        start();
        const QUrl url = file(QStringLiteral("c.mp3"));
        const Track row = read(url.toLocalFile());
        fill({row});
        files.fail();
        assign("House", {row});
        settle();
        if (isChanged)
            append(url, "by others");
        start();
        bringBack({row});
        settle();
        EXPECT_EQ(files.calls.size(), isChanged ? 0 : 1);
        EXPECT_EQ(edits().leftCount(), isChanged ? 1 : 0);
        EXPECT_EQ(now(row).tags().genre, QStringLiteral("House"));
        edits().writeAgain(edits().rows());
        settle();
        EXPECT_EQ(files.calls.size(), 1);
        EXPECT_TRUE(kept().empty());
    }
}

TEST_F(UnwrittenEditsTest, AMovedFileTakesItsEditAlong)
{
    fill({a});
    files.fail();
    assign("House", {a});
    settle();
    const QUrl moved = FileURL::fromPath(QStringLiteral("/music/moved.mp3"));
    store->fileEvents().tell({FileChange::Kind::Moved, moved, a.url(), {}, {}});
    settle();
    EXPECT_EQ(kept(), "moved.mp3=House");
}

TEST_F(UnwrittenEditsTest, ARowThatComesBackFromTheTrashBringsItsEditIntoTheFile)
{
    fill({a, b});
    files.fail();
    assign("House", {a});
    settle();
    files = {};
    store->removal().trashTracks(ids({a}));
    settle();
    EXPECT_EQ(edits().leftCount(), 0);
    EXPECT_EQ(kept(), "a.mp3=House");
    undo();
    ASSERT_EQ(files.calls.size(), 1);
    EXPECT_EQ(files.calls.first().write.tags.genre, QStringLiteral("House"));
    EXPECT_TRUE(kept().empty());
}

TEST_F(UnwrittenEditsTest, ClosingWaitsForWhatIsNoEditOfARow)
{
    fill({a});
    QSignalSpy wanted(&closing(), &ClosingQuestion::closeWanted);
    store->tagWriting().saver().restoreBatch({b}, {}, TagSaver::Wanted::All);
    EXPECT_FALSE(closing().mayClose());
    closing().answer(ClosingQuestion::Answer::Stay);
    settle();
    EXPECT_TRUE(closing().mayClose());
    workspace().setArtworkWritingIDs(ids({a}));
    EXPECT_FALSE(closing().mayClose());
    closing().answer(ClosingQuestion::Answer::Finish);
    EXPECT_TRUE(wanted.isEmpty()) << "the cover is on its way";
    workspace().setArtworkWritingIDs({});
    settle();
    EXPECT_EQ(wanted.size(), 1);
}

TEST_F(UnwrittenEditsTest, ClosingStaysWithWhatIsLostAndWaitsForCovers)
{
    using Answer = ClosingQuestion::Answer;
    const QByteArray png = Pictures::plain({4, 4}, 0xFFFF0000, "PNG");
    for (const Answer answer : {Answer::Finish, Answer::Keep}) {
        for (const bool fails : {false, true}) {
            start();
            fill({a, b});
            files.fail("disk full", b.url());
            if (answer == Answer::Keep)
                assign("House", {b});
            settle();
            files.before = {};
            if (fails)
                files.fail();
            store->artwork().assignArtwork(png, ids({a}));
            executor.runOne(); // the picture is prepared
            QSignalSpy wanted(&closing(), &ClosingQuestion::closeWanted);
            ASSERT_FALSE(closing().mayClose());
            closing().answer(answer);
            EXPECT_TRUE(wanted.isEmpty()) << "a cover is kept nowhere";
            settle();
            EXPECT_EQ(wanted.size(), fails ? 0 : 1) << static_cast<int>(answer);
        }
    }
}

TEST_F(UnwrittenEditsTest, WhatCannotBeWrittenIsGivenUpAndComesBackByUndo)
{
    filesHold({{&AudioTags::genre, "Old"}});
    fill({a});
    files.fail();
    assign("House", {a});
    store->givenUpEdits().giveUp(ids({a, b}));
    settle();
    EXPECT_EQ(now(a).tags().genre, QStringLiteral("Old")) << "as the file says";
    EXPECT_TRUE(now(a).isRead());
    EXPECT_TRUE(edits().rows().isEmpty());
    EXPECT_TRUE(closing().mayClose());
    const qsizetype calls = files.calls.size();
    undo();
    EXPECT_EQ(now(a).tags().genre, QStringLiteral("House"));
    EXPECT_EQ(edits().rows(), ids({a}));
    EXPECT_EQ(files.calls.size(), calls) << "it waits to be written again";
    redo();
    EXPECT_TRUE(edits().rows().isEmpty());
}

TEST_F(UnwrittenEditsTest, WhatFailsBeforeClosingIsTriedOnceMore)
{
    for (const int failures : {1, 2}) {
        SCOPED_TRACE(failures);
        start();
        fill({a});
        files.before = [this, failures](const FakeTagFiles::Call&) {
            if (files.calls.size() <= failures)
                throw TagFileError(QStringLiteral("busy"), false);
        };
        store->tagWriting().assignGenre(QStringLiteral("House%1").arg(failures), ids({a}));
        QSignalSpy wanted(&closing(), &ClosingQuestion::closeWanted);
        EXPECT_FALSE(closing().mayClose());
        closing().answer(ClosingQuestion::Answer::Finish);
        settle();
        EXPECT_EQ(files.calls.size(), 2);
        EXPECT_EQ(wanted.size(), failures == 1 ? 1 : 0);
        EXPECT_EQ(closing().mayClose(), failures == 1);
    }
}

TEST_F(UnwrittenEditsTest, ClosingAsksWhileEditsAreNotInTheirFiles)
{
    using Answer = ClosingQuestion::Answer;
    const struct {
        const char* name;
        Answer answer;
        bool fails;
        bool asksWhatSavesKeep;
        bool closes;
        bool keeps;
    } cases[] = {
        {"they are written first", Answer::Finish, false, false, true, false},
        {"after the question of what saves keep", Answer::Finish, false, true, true, false},
        {"but cannot be", Answer::Finish, true, false, false, true},
        {"they are kept", Answer::Keep, false, true, true, true},
        {"the user stays", Answer::Stay, true, false, false, true},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        preferences.keepsOtherTagEntries.remove();
        preferences.keepsOtherTagEntriesAsked.remove();
        QFile::remove(folder.filePath(QStringLiteral("unwritten-edits-v1.jsonl")));
        start();
        fill({a, b});
        EXPECT_TRUE(closing().mayClose());
        if (test.fails)
            files.fail();
        files.held.hasPicture = test.asksWhatSavesKeep;
        assign("House", {a, b});
        QSignalSpy wanted(&closing(), &ClosingQuestion::closeWanted);
        EXPECT_FALSE(closing().mayClose());
        EXPECT_TRUE(closing().isAsking());
        closing().answer(test.answer);
        settle();
        if (workspace().isAskingWhatSavesKeep() && test.answer == Answer::Finish) {
            EXPECT_TRUE(wanted.isEmpty());
            store->tagWriting().saver().answerWhatSavesKeep(true);
            settle();
        }
        EXPECT_FALSE(closing().isAsking());
        EXPECT_EQ(wanted.size(), test.closes ? 1 : 0);
        EXPECT_EQ(closing().mayClose(), test.closes) << "else it asks again";
        EXPECT_EQ(kept(), test.keeps ? "a.mp3=House b.mp3=House" : "");
        if (!test.closes || test.keeps)
            continue;
        files.fail();
        assign("Later", {a});
        EXPECT_FALSE(closing().mayClose()) << "that was not agreed upon";
    }
}
