#include "core/library/session/WorkspaceSessionStorage.h"
#include "support/FailingFileCalls.h"
#include "support/FileTimes.h"
#include "support/Machine.h"
#include "support/SessionSamples.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

const WorkspaceSessionStorage::Options kForTests{.skipInTests = false};

QByteArray session(int tracks, int favorites = 0)
{
    return SessionCoding::encode(SessionSamples::withRows(tracks, favorites));
}

class SessionStorage : public testing::Test {
protected:
    QList<QByteArray> checkpoints()
    {
        QList<QByteArray> contents;
        for (const auto& checkpoint : storage.archives())
            contents.append(readFile(checkpoint.path));
        return contents;
    }

    QTemporaryDir folder;
    WorkspaceSessionStorage storage{folder.filePath(QStringLiteral("Velmora")), kForTests};
    QByteArray stored() { return readFile(storage.sessionFile()); }
};

} // namespace

TEST_F(SessionStorage, CheckpointsOfWhatAWriteLoses)
{
    const struct {
        const char* name;
        QByteArray before;
        QByteArray after;
        int newestAge; ///< seconds; negative for no checkpoint at all
        bool isKept;
    } cases[] = {
        {"first write", {}, session(3), -1, false},
        {"an empty list before", session(0), session(3), -1, false},
        {"no checkpoint yet", session(3), session(3), -1, true},
        {"recent checkpoint", session(3), session(3), 890, false},
        {"old checkpoint", session(3), session(3), 901, true},
        {"a row less", session(100), session(99), 1, true},
        {"a favourite less", session(3, 2), session(4, 1), 1, true},
        {"no counts", session(3), "[1]", 1, true},
        {"a foreign file", "no session", session(3), -1, false},
        {"a file of zero bytes", "", session(3), -1, false},
        {"a truncated file", session(3).chopped(5), session(3), -1, false},
    };
    for (const auto& own : cases) {
        const QTemporaryDir ownFolder;
        WorkspaceSessionStorage fresh(ownFolder.path(), kForTests);
        if (!own.before.isNull())
            writeFile(fresh.sessionFile(), own.before);
        if (own.newestAge >= 0) {
            fresh.createCheckpoint("{}", WorkspaceSessionStorage::Kind::Automatic);
            setModified(fresh.archives().first().path, QDateTime::currentDateTime().addSecs(-own.newestAge));
        }
        fresh.write(own.after, 1);
        EXPECT_EQ(readFile(fresh.sessionFile()), own.after) << own.name;
        const auto archives = fresh.automaticArchives();
        EXPECT_EQ(archives.size(), (own.newestAge >= 0) + own.isKept) << own.name;
        if (own.isKept) {
            EXPECT_EQ(readFile(archives.first().path), own.before) << own.name;
        }
    }
}

TEST_F(SessionStorage, AnOwnEarlierWriteIsKnownWithoutReadingIt)
{
    storage.write(session(100), 1);
    storage.write(session(99), 2);
    EXPECT_EQ(checkpoints().size(), 1);
    // Another program's file in its place is looked at.
    const QByteArray foreign = session(500);
    writeFile(storage.sessionFile(), foreign);
    storage.write(session(400), 3);
    EXPECT_TRUE(checkpoints().contains(foreign));
}

TEST_F(SessionStorage, TwelveAutomaticCheckpointsAndEveryManualOneStay)
{
    storage.createCheckpoint(session(50), WorkspaceSessionStorage::Kind::Manual);
    for (int rows = 20; rows >= 5; --rows) {
        storage.write(session(rows), 100 - rows);
        setModified(storage.archives().first().path, QDateTime::currentDateTime());
    }
    EXPECT_EQ(storage.automaticArchives().size(), 12);
    EXPECT_EQ(storage.archives().size(), 13);
    const QByteArray kept = session(50);
    storage.createCheckpoint(kept, WorkspaceSessionStorage::Kind::Manual);
    storage.createCheckpoint(kept, WorkspaceSessionStorage::Kind::Manual);
    EXPECT_EQ(storage.archives().size(), 14) << "the same bytes are kept once";
    EXPECT_THROW(storage.createCheckpoint("{", WorkspaceSessionStorage::Kind::Manual), SessionStorageError);
}

TEST_F(SessionStorage, ACopyThatWasAskedForIsNotMadeAgainByTheWrite)
{
    const QByteArray replaced = session(50);
    writeFile(storage.sessionFile(), replaced);
    storage.createCheckpoint(replaced, WorkspaceSessionStorage::Kind::Automatic);
    storage.write(session(1), 1);
    EXPECT_EQ(checkpoints().size(), 1);
}

TEST_F(SessionStorage, CopiesThatNameLeftOutFilesArePrunedOnTheirOwn)
{
    storage.createCheckpoint(session(1), WorkspaceSessionStorage::Kind::Automatic);
    for (int rows = 1; rows <= 14; ++rows)
        storage.createCheckpoint(session(rows), WorkspaceSessionStorage::Kind::LeftOut);
    EXPECT_EQ(storage.archives().size(), 13);
    EXPECT_EQ(storage.automaticArchives().size(), 1);
}

TEST_F(SessionStorage, OrderOfCheckpoints)
{
    const QStringList names{
        QStringLiteral("workspace-session-backup-B.json"), QStringLiteral("workspace-session-manual-C.json"),
        QStringLiteral("workspace-session-backup-A.json"), QStringLiteral("workspace-session-backup-D.json")};
    for (const QString& name : names)
        writeFile(storage.backupFolder() + u'/' + name, "{}");
    writeFile(storage.backupFolder() + QStringLiteral("/workspace-session-backup-E.json.new"), "{}");
    writeFile(storage.backupFolder() + QStringLiteral("/other.json"), "{}");
    for (const QString& name : names)
        setModified(storage.backupFolder() + u'/' + name,
                    QDateTime::currentDateTime().addSecs(name.contains(u'D') ? -100 : -50));
    QStringList listed;
    for (const auto& checkpoint : storage.archives())
        listed.append(QFileInfo(checkpoint.path).completeBaseName().right(8));
    EXPECT_EQ(listed, QStringList({QStringLiteral("manual-C"), QStringLiteral("backup-B"), QStringLiteral("backup-A"),
                                   QStringLiteral("backup-D")}));
}

TEST_F(SessionStorage, LateRevisionsAndBrokenBytesChangeNothing)
{
    const QByteArray seventh = session(7);
    storage.write(seventh, 7);
    storage.write(session(5), 5);
    storage.write(session(6), 7);
    EXPECT_EQ(stored(), seventh);
    EXPECT_THROW(storage.write(seventh.chopped(1), 8), SessionStorageError);
    EXPECT_EQ(stored(), seventh);
    const QByteArray ninth = session(9);
    storage.write(ninth, 8);
    EXPECT_EQ(stored(), ninth) << "a refused write does not use its revision up";
}

TEST_F(SessionStorage, PendingFileGoesWithTheWriteThatFollows)
{
    storage.writePendingRestore(session(1));
    storage.write(session(2), 1);
    EXPECT_TRUE(storage.readPendingRestore()) << "nobody has restored from it yet";
    storage.clearPendingAfterWrite();
    {
        FailingFileCalls failing;
        failing.failingName = "rename";
        EXPECT_THROW(storage.write(session(3), 2), SessionStorageError);
    }
    EXPECT_TRUE(storage.readPendingRestore()) << "a failed write leaves it";
    storage.write(session(3), 3);
    EXPECT_FALSE(storage.readPendingRestore());
    // One that is put there while another waits for its deletion is for the next start.
    storage.clearPendingAfterWrite();
    storage.writePendingRestore(session(1));
    storage.write(session(4), 4);
    EXPECT_TRUE(storage.readPendingRestore());
    storage.discardPendingRestore();
    EXPECT_FALSE(storage.readPendingRestore());
}

TEST_F(SessionStorage, FailedAndStoppedAtEveryStep)
{
    const QByteArray old = session(20, 3);
    const QByteArray fresh = session(10);
    enum class How { Fails, Stops };
    for (const How how : {How::Fails, How::Stops}) {
        for (int step = 0;; ++step) {
            const QTemporaryDir own;
            WorkspaceSessionStorage(own.path(), kForTests).write(old, 1);
            int steps = 0;
            bool isWritten = true;
            {
                FailingFileCalls calls;
                calls.error = ENOSPC;
                calls.transferLimit = 4096;
                (how == How::Fails ? calls.failingStep : calls.stopStep) = step;
                WorkspaceSessionStorage again(own.path(), kForTests);
                try {
                    again.write(fresh, 1);
                } catch (const SessionStorageError& error) {
                    isWritten = false;
                    EXPECT_EQ(error.which(), SessionStorageError::Case::NotWritten);
                    if (how == How::Fails) {
                        EXPECT_EQ(error.code(), ENOSPC);
                    }
                }
                steps = calls.stepCount();
            }
            WorkspaceSessionStorage next(own.path(), kForTests);
            const QByteArray found = readFile(next.sessionFile());
            EXPECT_TRUE(found == old || found == fresh) << "step " << step;
            if (how == How::Fails) {
                EXPECT_EQ(found == fresh, isWritten) << "step " << step;
            }
            for (const auto& checkpoint : next.archives())
                EXPECT_EQ(readFile(checkpoint.path), old) << "step " << step;
            next.write(fresh, 2); // whatever was left behind is no obstacle
            EXPECT_EQ(readFile(next.sessionFile()), fresh) << "step " << step;
            if (step >= steps)
                break;
        }
    }
}

TEST_F(SessionStorage, APipeHoldsNobodyUp)
{
    ASSERT_TRUE(QDir().mkpath(folder.filePath(QStringLiteral("Velmora"))));
    ASSERT_EQ(mkfifo(QFile::encodeName(storage.pendingFile()).constData(), 0600), 0);
    EXPECT_FALSE(storage.readPendingRestore());
}

TEST_F(SessionStorage, TestProcessesLeaveTheFolderAlone)
{
    const QByteArray before = qgetenv("VELMORA_TESTING");
    qputenv("VELMORA_TESTING", "1");
    WorkspaceSessionStorage real(folder.filePath(QStringLiteral("real")));
    real.write(session(1), 1);
    real.createCheckpoint(session(1), WorkspaceSessionStorage::Kind::Manual);
    real.writePendingRestore(session(1));
    EXPECT_FALSE(QFileInfo::exists(folder.filePath(QStringLiteral("real"))));
    writeFile(real.sessionFile(), session(1));
    EXPECT_FALSE(real.readSession());
    qputenv("VELMORA_TESTING", before);
}
