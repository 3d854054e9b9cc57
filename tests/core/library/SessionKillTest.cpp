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

/// A save that had returned before the end came.
struct Save {
    int operation = 0;
    int rows = 0;
};

/// What the whole lines tell.
QList<Save> saves(const QByteArray& output)
{
    QList<Save> saves;
    for (const QByteArray& line : output.first(output.lastIndexOf('\n') + 1).split('\n')) {
        const QList<QByteArray> numbers = line.split(' ');
        if (numbers.size() == 2)
            saves.append({numbers[0].toInt(), numbers[1].toInt()});
    }
    return saves;
}

/// The last save that the next one, right behind it, cut rows from.
std::optional<Save> lastCut(const QList<Save>& saves)
{
    for (qsizetype i = saves.size() - 1; i > 0; --i) {
        if (saves[i].operation == saves[i - 1].operation + 1 && saves[i].rows < saves[i - 1].rows)
            return saves[i - 1];
    }
    return std::nullopt;
}

/// The operation that a session shows.
int shownOperation(const SessionRecord& session)
{
    return session.tracks.isEmpty() ? 0 : session.tracks.first().tags().title.toInt();
}

/// Whether a state is kept as a copy, or was until newer copies took all places.
bool isKept(const Save& save, const QList<int>& copies)
{
    return copies.contains(save.operation) ||
           (copies.size() >= WorkspaceSessionStorage::Options{}.maximumCheckpoints &&
            std::ranges::all_of(copies, [&](int operation) { return operation > save.operation; }));
}

} // namespace

TEST(SessionKill, TheLastCompletedSaveIsThere)
{
    const QTemporaryDir folder;
    std::mt19937 random(20'261'121);
    int cuts = 0;
    for (int round = 0; round < kRounds; ++round) {
        QProcess writer;
        writer.start(QStringLiteral(VELMORA_SESSION_WRITER), {folder.path(), QString::number(round)});
        ASSERT_TRUE(writer.waitForReadyRead(kLimitMilliseconds));
        writer.waitForFinished(static_cast<int>(random() % (round % 10 == 0 ? 600 : 40)));
        writer.kill();
        const bool hasEnded = writer.state() == QProcess::NotRunning; // a quick machine writes all before the end
        ASSERT_TRUE(hasEnded || writer.waitForFinished(kLimitMilliseconds));
        const QList<Save> completed = saves(writer.readAllStandardOutput());
        ASSERT_FALSE(completed.isEmpty());

        WorkspaceSessionStorage storage(folder.path(), {.skipInTests = false});
        const std::optional<QByteArray> bytes = storage.readSession();
        ASSERT_TRUE(bytes);
        const std::optional<SessionRecord> session = SessionCoding::decode(*bytes);
        ASSERT_TRUE(session) << "round " << round;
        ASSERT_FALSE(session->tracks.isEmpty()) << "round " << round;
        EXPECT_GE(shownOperation(*session), completed.last().operation) << "round " << round;
        QList<int> copies;
        for (const auto& checkpoint : storage.archives()) {
            const auto copy = SessionCoding::decode(storage.readCheckpoint(checkpoint.path).value_or(QByteArray()));
            ASSERT_TRUE(copy) << "round " << round << ": a copy is whole or not there";
            copies.append(shownOperation(*copy));
        }
        if (const std::optional<Save> cut = lastCut(completed)) {
            EXPECT_TRUE(isKept(*cut, copies)) << "round " << round << ": what was cut is in a copy";
            ++cuts;
        }
    }
    EXPECT_GT(cuts, kRounds / 10);
}
