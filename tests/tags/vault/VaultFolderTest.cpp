#include "tags/vault/VaultFolder.h"

#include "support/FailingFileCalls.h"
#include "support/FileTimes.h"
#include "support/Thrown.h"
#include "support/WrittenFiles.h"
#include "tags/writing/WriteErrors.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

VaultFolder::Key keyOf(const QString& path)
{
    return {path, "sound"};
}

class VaultFolderTest : public testing::Test {
protected:
    QString path() const { return m_folder.path(QStringLiteral("vault")); }
    /// The texts of the paths that have an entry.
    QString present(const VaultFolder& vault) const
    {
        QString names;
        for (const QChar name : QStringLiteral("abcdefgh"))
            names += vault.read(keyOf(QString(name)), 1) ? QString(name) : QString();
        return names;
    }
    static void setAge(const QString& file, int seconds)
    {
        setModified(file, QDateTime::currentDateTime().addSecs(-seconds));
    }

    FileFolder m_folder;
};

TEST_F(VaultFolderTest, letsTheOldestGoBeyondTheLimit)
{
    VaultFolder vault(path(), 100);
    const std::tuple<char, int, const char*> steps[] = {
        {'a', 40, "a"},   {'b', 40, "ab"}, {'c', 20, "abc"}, {'d', 1, "bcd"}, {'b', 10, "bcd"},
        {'e', 80, "bde"}, {'f', 100, "f"}, {'g', 0, "fg"},   {'h', 1, "gh"},
    };
    for (const auto& [name, size, left] : steps) {
        vault.put(keyOf(QString(QLatin1Char(name))), QByteArray(size, 'x'));
        EXPECT_EQ(present(vault), QLatin1StringView(left)) << name << size;
    }
}

TEST_F(VaultFolderTest, refusesWhatAlonePassesTheLimit)
{
    VaultFolder vault(path(), 100);
    vault.put(keyOf(QStringLiteral("a")), QByteArray(100, 'x'));
    const auto error = thrown<FileError>([&] { vault.put(keyOf(QStringLiteral("b")), QByteArray(101, 'x')); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->which(), FileError::Case::fileWriteOutOfSpace);
    EXPECT_EQ(error->path(), QStringLiteral("b"));
    EXPECT_EQ(present(vault), QStringLiteral("a"));
}

TEST_F(VaultFolderTest, countsWhatEarlierAndOtherInstancesKept)
{
    VaultFolder first(path(), 100);
    VaultFolder second(path(), 100);
    first.put(keyOf(QStringLiteral("a")), QByteArray(30, 'x'));
    first.put(keyOf(QStringLiteral("b")), QByteArray(30, 'x'));
    setAge(first.fileFor(keyOf(QStringLiteral("b"))), 1000); // b came before a
    second.put(keyOf(QStringLiteral("c")), QByteArray(30, 'x'));
    setAge(second.fileFor(keyOf(QStringLiteral("c"))), 500);
    second.put(keyOf(QStringLiteral("d")), QByteArray(30, 'x'));
    EXPECT_EQ(present(second), QStringLiteral("acd"));
    VaultFolder third(path(), 100);
    third.put(keyOf(QStringLiteral("e")), QByteArray(50, 'x'));
    EXPECT_EQ(present(third), QStringLiteral("de")) << "by the time on the disk";
}

TEST_F(VaultFolderTest, anEntryThatCannotBeRemovedDoesNotStopTheNextOne)
{
    VaultFolder vault(path(), 100);
    vault.put(keyOf(QStringLiteral("a")), QByteArray(60, 'x'));
    {
        FailingFileCalls calls;
        calls.failingName = "remove";
        vault.put(keyOf(QStringLiteral("b")), QByteArray(60, 'x'));
    }
    EXPECT_EQ(present(vault), QStringLiteral("ab"));
    vault.put(keyOf(QStringLiteral("c")), QByteArray(40, 'x'));
    EXPECT_EQ(present(vault), QStringLiteral("bc"));
}

TEST_F(VaultFolderTest, removesWhatAStopLeftAndNothingElse)
{
    ASSERT_TRUE(QDir().mkpath(path()));
    const QString old = QStringLiteral(".velmora-00000000-0000-4000-8000-000000000000.tmp");
    const QString recent = QStringLiteral(".velmora-00000000-0000-4000-8000-000000000001.tmp");
    const QString foreign = QStringLiteral("notes.txt");
    for (const QString& name : {old, recent, foreign}) {
        m_folder.write(QStringLiteral("vault/") + name, "left");
        setAge(path() + u'/' + name, name == recent ? 60 : 7200);
    }
    VaultFolder(path(), 10).put(keyOf(QStringLiteral("a")), QByteArray(10, 'x'));
    EXPECT_FALSE(QFile::exists(path() + u'/' + old));
    EXPECT_TRUE(QFile::exists(path() + u'/' + recent)) << "another instance may be at it";
    EXPECT_TRUE(QFile::exists(path() + u'/' + foreign));
}

TEST_F(VaultFolderTest, isSharedByThreadsAndInstances)
{
    VaultFolder one(path(), 4000);
    VaultFolder two(path(), 4000);
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        VaultFolder& vault = thread % 2 == 0 ? one : two;
        threads.emplace_back([&vault, thread] {
            for (int index = 0; index < 40; ++index)
                vault.put(keyOf(QString::number((index + thread) % 50)),
                          QByteArray(100, static_cast<char>('a' + thread)));
        });
    }
    threads.clear();
    qint64 size = 0;
    for (const QString& entry : filesBelow(path())) {
        size += QFileInfo(entry).size();
        EXPECT_EQ(QFileInfo(entry).size(), 100) << "each entry is whole";
    }
    EXPECT_LE(size, 4000 + 400);
}

} // namespace
