#include "platform/process/ChildProcess.h"
#include "platform/process/Descriptor.h"
#include "support/Machine.h"
#include "support/Thrown.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>

namespace {

ChildProcess::Launch shell(const QString& script)
{
    return {.executable = QStringLiteral("/bin/sh"), .arguments = {QStringLiteral("-c"), script}};
}

int statusOf(ChildProcess& child)
{
    return comesTrue([&] { return !child.isRunning(); }) ? child.exitStatus().value_or(-1) : -1;
}

/// Fields of /proc/PID/stat behind the program's name; empty when there is no such process, not even a zombie.
QList<QByteArray> processFields(qint64 id)
{
    const QByteArray text = readFile(QStringLiteral("/proc/%1/stat").arg(id));
    return text.isEmpty() ? QList<QByteArray>() : text.mid(text.lastIndexOf(')') + 2).split(' ');
}

/// Zombies count as gone: whose parent is gone too, waits for the system to collect it.
bool isGone(qint64 id)
{
    const QList<QByteArray> fields = processFields(id);
    return fields.isEmpty() || fields.first() == "Z";
}

struct Pipe {
    Pipe()
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category());
        out = Descriptor(ends[0]);
        in = Descriptor(ends[1]);
    }
    /// Everything until the last writer is gone.
    QByteArray readAll()
    {
        in.close();
        QByteArray all;
        char part[256];
        for (ssize_t count = 0; (count = read(out.get(), part, sizeof part)) > 0;)
            all.append(part, count);
        return all;
    }
    Descriptor out;
    Descriptor in;
};

QByteArray outputOf(ChildProcess::Launch launch)
{
    Pipe pipe;
    launch.standardOutput = pipe.in.get();
    ChildProcess child(launch);
    return pipe.readAll().trimmed();
}

} // namespace

TEST(ChildProcess, TellsHowItEnded)
{
    const std::pair<const char*, int> cases[] = {
        {"exit 0", 0},
        {"exit 3", 3},
        {"kill -KILL $$", 128 + SIGKILL},
        {"kill -TERM $$", 128 + SIGTERM},
    };
    for (const auto& [script, status] : cases) {
        ChildProcess child(shell(QString::fromLatin1(script)));
        EXPECT_EQ(statusOf(child), status) << script;
        EXPECT_TRUE(processFields(child.processID()).isEmpty()) << "a zombie is left of: " << script;
        child.kill(); // no longer anybody's number: must not reach another process
    }
}

TEST(ChildProcess, SaysWhyItCannotStart)
{
    QTemporaryDir folder;
    const QString plain = writeFile(folder.filePath(QStringLiteral("plain")));
    const std::pair<QString, int> cases[] = {
        {folder.filePath(QStringLiteral("missing")), ENOENT}, {plain, EACCES}, {folder.path(), EACCES}};
    for (const auto& [path, code] : cases) {
        const auto start = [&executable = path] { ChildProcess({.executable = executable, .arguments = {}}); };
        const auto error = thrown<std::system_error>(start);
        ASSERT_TRUE(error) << "started " << qPrintable(path);
        EXPECT_EQ(error->code().value(), code) << qPrintable(path);
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child that never ran its program is left";
}

TEST(ChildProcess, GivesItsChildOnlyWhatWasAskedFor)
{
    // Without the flag that closes it in children, as some libraries open theirs.
    const Descriptor leaky(open("/dev/null", O_RDONLY));
    ChildProcess::Launch lowered = shell(QStringLiteral("exec cut -d' ' -f19 /proc/self/stat"));
    lowered.niceness = 7;
    EXPECT_EQ(outputOf(lowered), "7");
    const ChildProcess sleeper(shell(QStringLiteral("exec sleep 60")));
    const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(sleeper.processID()));
    const QStringList standardOnes{QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")};
    EXPECT_TRUE(comesTrue([&] { return descriptors.entryList(QDir::Files | QDir::System) == standardOnes; }));
    EXPECT_EQ(outputOf(shell(QStringLiteral("readlink /proc/$$/fd/0 /proc/$$/fd/2"))), "/dev/null\n/dev/null");
    ChildProcess::Launch spaced = shell(QStringLiteral("printf '<%s>' \"$@\""));
    spaced.arguments << QStringLiteral("name") << QStringLiteral("a  b") << QString() << QStringLiteral("ж'\"$x");
    EXPECT_EQ(outputOf(spaced), "<a  b><><ж'\"$x>");

    Pipe input;
    ASSERT_EQ(write(input.in.get(), "spoken\n", 7), 7);
    input.in.close();
    ChildProcess::Launch reader = shell(QStringLiteral("cat"));
    reader.standardInput = input.out.get();
    EXPECT_EQ(outputOf(reader), "spoken");
}

TEST(ChildProcess, IsStoppedFromAThreadThatBlocksSignals)
{
    std::thread([] {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, nullptr);
        ChildProcess child(shell(QStringLiteral("exec sleep 60")));
        EXPECT_TRUE(child.isRunning());
        child.terminate();
        EXPECT_EQ(statusOf(child), 128 + SIGTERM);
    }).join();
}

TEST(ChildProcess, TakesItsOwnChildrenWithIt)
{
    // A wrapper script that starts the real program, and ends first or is destroyed.
    for (const char* end : {"", "; wait"}) {
        Pipe pipe;
        ChildProcess::Launch launch =
            shell(QStringLiteral("sleep 60 >/dev/null & echo $!; exec >/dev/null") + QLatin1StringView(end));
        launch.standardOutput = pipe.in.get();
        qint64 grandchild = 0;
        {
            ChildProcess child(launch);
            grandchild = pipe.readAll().trimmed().toLongLong();
            ASSERT_GT(grandchild, 0);
            if (*end == '\0') {
                EXPECT_EQ(statusOf(child), 0);
            }
        }
        EXPECT_TRUE(comesTrue([&] { return isGone(grandchild); })) << end;
    }
}

TEST(ChildProcess, DestroyedWhileItRunsLeavesNothing)
{
    qint64 id = 0;
    {
        ChildProcess child(shell(QStringLiteral("trap '' TERM; while :; do sleep 1; done")));
        id = child.processID();
        ASSERT_TRUE(child.isRunning());
    }
    EXPECT_TRUE(processFields(id).isEmpty());
}

TEST(ChildProcess, DoesNotOutliveAProgramThatIsKilled)
{
    Pipe pipe;
    const pid_t program = fork();
    if (program == 0) {
        std::thread([&pipe] {
            const ChildProcess child(shell(QStringLiteral("trap '' TERM HUP; while :; do sleep 1; done")));
            const qint64 id = child.processID();
            [[maybe_unused]] const ssize_t written = write(pipe.in.get(), &id, sizeof id);
            pause();
        }).join();
        _exit(1);
    }
    qint64 id = 0;
    ASSERT_EQ(read(pipe.out.get(), &id, sizeof id), ssize_t(sizeof id));
    EXPECT_FALSE(isGone(id));
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    EXPECT_TRUE(comesTrue([id] { return isGone(id); }));
}
