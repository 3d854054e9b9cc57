#include "support/FailingFileCalls.h"
#include "support/TrashFixture.h"

#include <cerrno>
#include <filesystem>
#include <thread>

#include <unistd.h>

namespace fs = std::filesystem;

using Case = TrashError::Case;

class TrashStepsTest : public TrashFixture {
protected:
    /// How many of the files in the music folder, the volume and the trashes hold the music. 1 is right.
    int copies() const
    {
        int count = 0;
        for (const auto& entry : fs::recursive_directory_iterator(path("").toStdString())) {
            if (entry.is_regular_file() && contents(QByteArray::fromStdString(entry.path().string())) == "music")
                ++count;
        }
        return count;
    }

    /// Breaks a change at each of its steps. \param prepare stands before each of them. \param expect gets whether the
    /// process ended there and whether the change threw.
    void breakEverywhere(const QByteArray& volume, const std::function<void()>& prepare,
                         const std::function<void()>& change, const std::function<void(bool, bool)>& expect)
    {
        const auto prepareAnew = [&] {
            for (const char* folder : {"music", "volume", "home"}) {
                fs::remove_all(path(folder).toStdString());
                makeFolder(folder);
            }
            prepare();
        };
        const auto throws = [&] { return errorOf(change).has_value(); };
        const auto check = [&](int, bool ends, bool hasThrown) {
            EXPECT_EQ(copies(), 1);
            expect(ends, hasThrown);
        };
        prepareAnew();
        const QByteArrayList calls = callsOf(throws, volume);
        EXPECT_GE(calls.size(), 5); // otherwise nothing is broken
        breakAtEveryCall(calls, prepareAnew, throws, check, volume);
    }
};

TEST_F(TrashStepsTest, AMoveThatBreaksLeavesTheFileInOneOfTheTwoPlaces)
{
    const std::tuple<QByteArray, QByteArray, QByteArray> rows[] = {
        {"music", {}, "home/Trash/info"},
        {"volume", path("volume"), "volume/.Trash-" + QByteArray::number(geteuid()) + "/info"},
    };
    for (const auto& [folder, volume, info] : rows) {
        const QByteArray file = folder + "/a.mp3";
        const auto prepare = [&] { write(file); };
        const auto change = [&] { trash().moveToTrash(path(file)); };
        breakEverywhere(volume, prepare, change, [&](bool ends, bool hasThrown) {
            EXPECT_TRUE(ends || isThere(path(file)) == hasThrown);
            EXPECT_TRUE(ends || names(info).size() == (hasThrown ? 0 : 1));
            if (!isThere(path(file))) {
                EXPECT_EQ(readByAnother(path(info.chopped(5))).size(), 1) << "a kept file has its whole info file";
            }
        });
    }
}

TEST_F(TrashStepsTest, ARestoreThatBreaksLeavesTheFileInOneOfTheTwoPlaces)
{
    TrashedItem item;
    const auto prepare = [&] {
        item = trash().moveToTrash(write("music/album/a.mp3"));
        fs::remove_all(path("music").toStdString());
    };
    const auto change = [&] { Trash::restore(item); };
    breakEverywhere({}, prepare, change, [&](bool, bool hasThrown) {
        EXPECT_EQ(isThere(item.trashedPath), hasThrown);
        EXPECT_TRUE(!hasThrown || isThere(item.infoPath)) << "what is still in the Trash can still be restored";
    });
}

TEST_F(TrashStepsTest, FailuresSayWhatTheyAre)
{
    const std::tuple<const char*, int, Case> rows[] = {
        {"makeFolder", EACCES, Case::unavailable},   {"makeFolder", EROFS, Case::readOnlyVolume},
        {"makeFolder", ENOSPC, Case::outOfSpace},    {"write", ENOSPC, Case::outOfSpace},
        {"write", EDQUOT, Case::outOfSpace},         {"sync", EIO, Case::unknown},
        {"close", ENOSPC, Case::outOfSpace},         {"renameToFree", EACCES, Case::noPermission},
        {"renameToFree", EPERM, Case::noPermission}, {"renameToFree", EROFS, Case::readOnlyVolume},
        {"open", ENOENT, Case::unavailable},         {"renameToFree", EXDEV, Case::unavailable},
        {"renameToFree", ENOENT, Case::unavailable}, {"renameToFree", EBUSY, Case::unknown},
    };
    const QByteArray file = write("music/a.mp3");
    for (const auto& [call, error, expected] : rows) {
        fs::remove_all(path("home/Trash").toStdString());
        FailingFileCalls calls;
        calls.failingName = call;
        calls.error = error;
        EXPECT_EQ(errorOf([&] { trash().moveToTrash(file); }), expected) << call << ' ' << error;
        EXPECT_EQ(names("home/Trash/info"), QByteArrayList()) << call << ' ' << error;
        EXPECT_EQ(contents(file), QByteArray("music"));
    }
}

TEST_F(TrashStepsTest, FilesThatChangeBetweenTwoStepsAreSafe)
{
    const QByteArray file = write("music/a.mp3");
    const TrashedItem item = trash().moveToTrash(file);
    const std::pair<int, Case> rows[] = {{EEXIST, Case::fileExists}, {ENOTDIR, Case::unknown}};
    for (const auto& [error, expected] : rows) {
        FailingFileCalls calls;
        calls.failingName = "renameToFree";
        calls.error = error;
        EXPECT_EQ(errorOf([&] { Trash::restore(item); }), expected);
        EXPECT_TRUE(isThere(item.trashedPath) && isThere(item.infoPath));
    }
}

TEST_F(TrashStepsTest, ShortWritesMakeAWholeInfoFile)
{
    FailingFileCalls calls;
    calls.transferLimit = 7;
    trash().moveToTrash(write("music/a.mp3"));
    EXPECT_EQ(readByAnother(path("home/Trash")).value("a.mp3").path, path("music/a.mp3"));
}

TEST_F(TrashStepsTest, ManyAtOnceNeverMeetInOneName)
{
    constexpr int kThreads = 4;
    constexpr int kEach = 50;
    for (int i = 0; i < kThreads * kEach; ++i)
        write("music/" + QByteArray::number(i) + "/a.mp3", QByteArray::number(i));
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([this, thread] {
            for (int i = 0; i < kEach; ++i)
                trash().moveToTrash(path("music/" + QByteArray::number(thread * kEach + i) + "/a.mp3"));
        });
    }
    threads.clear();
    const auto read = readByAnother(path("home/Trash"));
    ASSERT_EQ(read.size(), kThreads * kEach);
    for (auto info = read.begin(); info != read.end(); ++info) {
        const auto bytes = contents(path("home/Trash/files/" + info.key()));
        EXPECT_EQ(info->path, path("music/" + bytes.value_or("none") + "/a.mp3")) << "each info file tells of its file";
    }
}
