#include "platform/files/FileCalls.h"
#include "support/TrashFixture.h"

#include <csignal>
#include <filesystem>
#include <random>

#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

class KilledTrashTest : public TrashFixture {
protected:
    /// Moves the file to the Trash and back again and again and never returns.
    [[noreturn]] void moveForever() const
    {
        SystemFileCalls::setSyncing(false); // the death of a process takes nothing from the kernel
        for (;;)
            Trash::restore(trash().moveToTrash(path("music/a.mp3")));
    }
};

TEST_F(KilledTrashTest, TheFileIsAlwaysInOneOfTheTwoPlaces)
{
    constexpr int kKills = 200;
    const QByteArray bytes(10'000, 'x');
    const QByteArray file = write("music/a.mp3", bytes);
    std::minstd_rand random(1);
    int inTrash = 0;
    int orphans = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            moveForever();
        usleep(random() % 3000);
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        const QByteArrayList kept = names("home/Trash/files");
        ASSERT_EQ(kept.size() + names("music").size(), 1) << "after kill " << kill;
        if (!kept.isEmpty()) {
            ++inTrash;
            const QByteArray info = path("home/Trash/info/" + kept.first() + ".trashinfo");
            const QByteArray text = contents(info).value_or(QByteArray());
            ASSERT_TRUE(text.contains("\nPath=" + file + "\nDeletionDate=") && text.endsWith('\n'))
                << "after kill " << kill;
            Trash::restore({file, path("home/Trash/files/" + kept.first()), info});
        }
        ASSERT_EQ(contents(file), bytes) << "after kill " << kill;
        for (const QByteArray& name : names("home/Trash/info")) {
            ++orphans;
            fs::remove(path("home/Trash/info/" + name).toStdString());
        }
    }
    // Otherwise nothing was tested.
    EXPECT_GT(inTrash, 5);
    EXPECT_LT(inTrash, kKills - 5);
    EXPECT_GT(orphans, 0);
}
