#include "platform/process/OwnedTemporaryFile.h"

#include "support/Machine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>
#include <utime.h>

namespace {

using namespace std::chrono_literals;

const OwnedTemporaryFile::Naming kNaming{QStringLiteral("velmora-bpm-"), QStringLiteral(".pcm")};
const QString kName = QStringLiteral("velmora-bpm-0F8FAD5B-D9CB-469F-A165-70867728950E.pcm");

void makeOld(const QString& path)
{
    const utimbuf times{.actime = 1'000'000'000, .modtime = 1'000'000'000};
    EXPECT_EQ(utime(QFile::encodeName(path).constData(), &times), 0);
}

} // namespace

TEST(OwnedTemporaryFile, IsPrivateAndGoesWithItsOwner)
{
    QTemporaryDir folder;
    QString path;
    {
        const OwnedTemporaryFile file(folder.path(), kNaming);
        path = file.path();
        struct stat status = {};
        ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
        EXPECT_EQ(status.st_mode, mode_t(S_IFREG | 0600));
        EXPECT_TRUE(kNaming.matches(QFileInfo(path).fileName())) << qPrintable(path);
    }
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_THROW(OwnedTemporaryFile(folder.filePath(QStringLiteral("missing")), kNaming), std::system_error);
}

TEST(OwnedTemporaryFile, KnowsItsNames)
{
    const QString cases[] = {
        QStringLiteral("velmora-bpm-.pcm"),
        QStringLiteral("velmora-bpm-0f8fad5b-d9cb-469f-a165-70867728950e.pcm"),
        QStringLiteral("velmora-bpm-{0F8FAD5B-D9CB-469F-A165-70867728950E}.pcm"),
        QStringLiteral("velmora-bpm-0F8FAD5BD9CB469FA16570867728950E.pcm"),
        QStringLiteral("velmora-bpm-0F8FAD5B-D9CB-469F-A165-70867728950E.pcm.bak"),
        QStringLiteral("velmora-bpm-0F8FAD5B-D9CB-469F-A165-70867728950E-2.pcm"),
        QStringLiteral("my-velmora-bpm-0F8FAD5B-D9CB-469F-A165-70867728950E.pcm"),
        QStringLiteral("velmora-bpm-mix.pcm"),
        QStringLiteral("velmora-bpm-"),
        QStringLiteral("a.pcm"),
    };
    EXPECT_TRUE(kNaming.matches(kName));
    for (const QString& name : cases)
        EXPECT_FALSE(kNaming.matches(name)) << qPrintable(name);
}

TEST(OwnedTemporaryFile, OnlyOrphansAreSwept)
{
    QTemporaryDir folder;
    const QString orphan = writeFile(folder.filePath(kName));
    makeOld(orphan);
    const OwnedTemporaryFile owned(folder.path(), kNaming);
    makeOld(owned.path());
    const QString young = writeFile(folder.filePath(QString(kName).replace(u'0', u'1')));
    const QString foreign = writeFile(folder.filePath(QStringLiteral("velmora-bpm-mix.pcm")));
    makeOld(foreign);
    const QString precious = writeFile(folder.filePath(QStringLiteral("precious")));
    makeOld(precious);
    const QString link = folder.filePath(QString(kName).replace(u'0', u'2'));
    ASSERT_TRUE(QFile::link(precious, link));
    const QString pipe = folder.filePath(QString(kName).replace(u'0', u'3'));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    makeOld(pipe);
    const QString subfolder = folder.filePath(QString(kName).replace(u'0', u'4'));
    ASSERT_TRUE(QDir().mkdir(subfolder));

    EXPECT_EQ(OwnedTemporaryFile::removeStale(folder.path(), kNaming, 30s), 1);
    EXPECT_FALSE(QFile::exists(orphan));
    for (const QString& path : {owned.path(), young, foreign, precious, link, pipe, subfolder})
        EXPECT_TRUE(QFile::exists(path)) << qPrintable(path);
    EXPECT_EQ(OwnedTemporaryFile::removeStale(folder.filePath(QStringLiteral("missing")), kNaming, 30s), 0);
}

TEST(OwnedTemporaryFile, IsAnOrphanOnceItsOwnerWasKilled)
{
    QTemporaryDir folder;
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t owner = fork();
    if (owner == 0) {
        const OwnedTemporaryFile file(folder.path(), kNaming);
        makeOld(file.path());
        [[maybe_unused]] const ssize_t written = ::write(ready[1], "!", 1);
        pause();
        _exit(1);
    }
    char sign = 0;
    ASSERT_EQ(read(ready[0], &sign, 1), 1);
    EXPECT_EQ(OwnedTemporaryFile::removeStale(folder.path(), kNaming, 30s), 0) << "the owner lives";
    kill(owner, SIGKILL);
    waitpid(owner, nullptr, 0);
    EXPECT_EQ(OwnedTemporaryFile::removeStale(folder.path(), kNaming, 30s), 1);
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    close(ready[0]);
    close(ready[1]);
}
