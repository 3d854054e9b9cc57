// The program is killed while it saves, again and again: the next start shows the last save that had returned, or a
// newer one.

#include "core/library/session/SessionCoding.h"
#include "core/library/session/WorkspaceSessionStorage.h"

#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <random>

namespace {

constexpr int kRounds = 200;
constexpr int kLimitMilliseconds = 20'000;

/// The number in the last whole line.
int lastNumber(const QByteArray& output)
{
    const qsizetype end = output.lastIndexOf('\n');
    if (end < 0)
        return 0;
    const qsizetype begin = end == 0 ? -1 : output.lastIndexOf('\n', end - 1);
    return output.mid(begin + 1, end - begin - 1).toInt();
}

} // namespace

TEST(SessionKill, TheLastCompletedSaveIsThere)
{
    const QTemporaryDir folder;
    std::mt19937 random(20'261'121);
    for (int round = 0; round < kRounds; ++round) {
        QProcess writer;
        writer.start(QStringLiteral(VELMORA_SESSION_WRITER), {folder.path(), QString::number(round)});
        ASSERT_TRUE(writer.waitForReadyRead(kLimitMilliseconds));
        writer.waitForFinished(static_cast<int>(random() % 40));
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished(kLimitMilliseconds));
        const int completed = lastNumber(writer.readAllStandardOutput());

        WorkspaceSessionStorage storage(folder.path(), {.skipInTests = false});
        const std::optional<QByteArray> bytes = storage.readSession();
        ASSERT_TRUE(bytes);
        const std::optional<SessionRecord> session = SessionCoding::decode(*bytes);
        ASSERT_TRUE(session) << "round " << round;
        ASSERT_FALSE(session->tracks.isEmpty()) << "round " << round;
        EXPECT_GT(completed, 0);
        EXPECT_GE(session->tracks[0].tags().title.toInt(), completed) << "round " << round;
        for (const auto& checkpoint : storage.archives())
            EXPECT_TRUE(SessionCoding::counts(storage.readCheckpoint(checkpoint.path).value_or(QByteArray())))
                << "round " << round << ": a copy is whole or not there";
    }
}
