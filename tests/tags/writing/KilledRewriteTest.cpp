#include "platform/files/FileCalls.h"
#include "support/TagsOf.h"
#include "tags/writing/FileRewrite.h"

#include <gtest/gtest.h>

#include <csignal>
#include <random>

#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kKills = 200;
constexpr qsizetype kSize = 400'000;
const QString kName = QStringLiteral("a.mp3");

/// Changes the file's first byte again and again and never returns.
[[noreturn]] void rewriteForever(const QString& path)
{
    SystemFileCalls::setSyncing(false); // the death of a process takes nothing from the kernel
    for (;;) {
        FileRewrite rewrite(path, QStringLiteral("mp3"));
        const char first = rewrite.read(0, 1).at(0) == 'a' ? 'b' : 'a';
        rewrite.write(QByteArrayView(&first, 1));
        rewrite.copy(1, rewrite.sourceSize() - 1);
        rewrite.commit({{1, 1, rewrite.sourceSize() - 1}}, QStringLiteral("mp3"));
    }
}

TEST(KilledRewriteTest, leavesOneOfTheTwoFilesWhole)
{
    const FileFolder folder;
    const QByteArray rest(kSize - 1, 'x');
    const QString path = folder.write(kName, 'a' + rest).toLocalFile();
    std::minstd_rand random(1);
    int interrupted = 0;
    QByteArray seen;
    for (int kill = 0; kill < kKills; ++kill) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            rewriteForever(path);
        usleep(random() % 5000);
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        const QByteArray bytes = folder.read(kName);
        ASSERT_TRUE(bytes == 'a' + rest || bytes == 'b' + rest) << "after kill " << kill;
        seen += bytes.first(1);
        interrupted += folder.removeTemporaries();
        ASSERT_EQ(folder.names(), QStringList{kName});
    }
    // Otherwise nothing was tested.
    EXPECT_GT(interrupted, 10);
    EXPECT_TRUE(seen.contains('a') && seen.contains('b'));
}

} // namespace
