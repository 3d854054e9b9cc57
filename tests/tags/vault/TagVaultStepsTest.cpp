#include "tags/vault/TagVault.h"

#include "support/FailingFileCalls.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cerrno>

using namespace TagBytes;

namespace {

/// A file in one folder, its vault in another.
class TagVaultStepsTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(QDir().mkpath(vaultPath())); }

    QString vaultPath() const { return m_folder.path(QStringLiteral("vault")); }
    QStringList entries() const { return filesBelow(vaultPath()); }
    QString failureOfKeeping(const QUrl& url) const
    {
        return failureOf([&](const QUrl& file) { TagVault(vaultPath()).keep(file); }, url);
    }
    QString failureOfRestoring(const QUrl& url) const
    {
        return failureOf([&](const QUrl& file) { TagVault(vaultPath()).restore(file); }, url);
    }
    void clearVault() const
    {
        for (const QString& name : entries())
            QFile::remove(name);
    }

    const QByteArray m_original = id3v2(textFrame("TIT2", "old")) + mpegFrames(50) + id3v1({.title = "old"});
    FileFolder m_folder;
    QUrl m_url = m_folder.write(QStringLiteral("a.mp3"), m_original);
};

TEST_F(TagVaultStepsTest, aFailureOfKeepingIsToldAndLeavesNoEntry)
{
    const auto keep = [this] { return failureOfKeeping(m_url); };
    const QByteArrayList steps = callsOf(keep);
    const qsizetype swap = steps.indexOf("rename");
    ASSERT_GT(swap, 0);
    EXPECT_LT(steps.indexOf("sync"), swap) << "the entry is durable before it is seen";
    EXPECT_GT(steps.lastIndexOf("sync"), swap) << "and its name is durable then";
    const qsizetype lastNeeded = steps.lastIndexOf("sync");
    const auto check = [&](int step, bool ends, const QString& failure) {
        // Behind the swap only folders are closed, whose names have been synced.
        const bool isNeeded = step <= lastNeeded && (ends || step < swap || steps.at(step) != "close");
        EXPECT_EQ(failure != QString(), isNeeded);
        EXPECT_TRUE(ends || entries().size() == (isNeeded ? 0 : 1)) << "an entry or nothing, and no part of one";
        EXPECT_TRUE(contentOf(m_url) == m_original);
        // Whatever stands there now, the next time all is well.
        EXPECT_EQ(failureOfKeeping(m_url), QString());
        EXPECT_EQ(failureOfRestoring(m_url), QString());
    };
    breakAtEveryCall(
        steps, [this] { clearVault(); }, keep, check);
}

TEST_F(TagVaultStepsTest, aFolderThatCannotBeSyncedIsNoFailureWhereNoneCanBe)
{
    const auto lastSync = static_cast<int>(callsOf([this] { failureOfKeeping(m_url); }).lastIndexOf("sync"));
    for (const int error : {EINVAL, ENOTSUP, EIO, ENOSPC}) {
        clearVault();
        FailingFileCalls calls;
        calls.failingStep = lastSync;
        calls.error = error;
        const bool isKept = failureOfKeeping(m_url) == QString();
        EXPECT_EQ(isKept, error == EINVAL || error == ENOTSUP) << error;
        EXPECT_EQ(entries().size(), isKept ? 1 : 0);
    }
}

TEST_F(TagVaultStepsTest, aFailureOfRestoringLeavesTheFileAsItIs)
{
    ASSERT_EQ(failureOfKeeping(m_url), QString());
    ASSERT_EQ(failureOf(writing(fullTags()), m_url), QString());
    const QByteArray present = contentOf(m_url);
    const auto restore = [this] { return failureOfRestoring(m_url); };
    const QByteArrayList steps = callsOf(restore);
    ASSERT_TRUE(contentOf(m_url) == m_original);
    const qsizetype swap = steps.indexOf("rename");
    const qsizetype entryClosed = steps.indexOf("close"); // has been read whole
    const auto check = [&](int step, bool ends, const QString& failure) {
        // What the kernel does not copy is read and written.
        const bool isNeeded = step <= swap && step != entryClosed && steps.at(step) != "copyRange";
        EXPECT_EQ(failure != QString(), isNeeded || (ends && step <= swap));
        EXPECT_TRUE(contentOf(m_url) == (failure == QString() ? m_original : present));
        EXPECT_LE(m_folder.removeTemporaries(), ends ? 1 : 0);
        EXPECT_EQ(m_folder.names(), QStringList{QStringLiteral("a.mp3")});
    };
    breakAtEveryCall(
        steps, [&] { m_folder.write(QStringLiteral("a.mp3"), present); }, restore, check);
    EXPECT_EQ(entries().size(), 1);
    EXPECT_EQ(failureOfRestoring(m_url), QString());
}

TEST_F(TagVaultStepsTest, writesAndReadsHoweverLittleACallMoves)
{
    FailingFileCalls calls;
    calls.transferLimit = 7;
    EXPECT_EQ(failureOfKeeping(m_url), QString());
    EXPECT_EQ(failureOf(writing({}), m_url), QString());
    EXPECT_EQ(failureOfRestoring(m_url), QString());
    EXPECT_TRUE(contentOf(m_url) == m_original);
}

TEST_F(TagVaultStepsTest, anEntryThatIsThereIsNotWrittenAgain)
{
    ASSERT_EQ(failureOfKeeping(m_url), QString());
    ASSERT_EQ(failureOf(writing(fullTags()), m_url), QString());
    FailingFileCalls calls;
    EXPECT_EQ(failureOfKeeping(m_url), QString());
    EXPECT_FALSE(calls.names().contains("write"));
    EXPECT_FALSE(calls.names().contains("sync"));
}

} // namespace
