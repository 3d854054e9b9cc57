#include "platform/DeepWalk.h"

#include "async/Cancelled.h"
#include "platform/FileURL.h"

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr char kUUID[] = "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9";

bool isMusic(QStringView name)
{
    return name.size() > 4 && name.endsWith(QLatin1StringView(".mp3"), Qt::CaseInsensitive);
}

class DeepWalkTest : public testing::Test {
protected:
    // The paths of a test may be too long for the removal by QTemporaryDir.
    ~DeepWalkTest() override { fs::remove_all(root); }

    QTemporaryDir temporary;
    const fs::path root = fs::path(temporary.path().toStdString()) / "music";

    void SetUp() override { fs::create_directory(root); }

    fs::path make(const fs::path& relative, const std::string& bytes = "x") const
    {
        const fs::path path = root / relative;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    static QUrl url(const fs::path& path) { return FileURL::fromPath(QString::fromStdString(path.string())); }

    static DeepWalk::Result walk(const QList<QUrl>& urls) { return DeepWalk::walk(urls, isMusic, {}); }
    DeepWalk::Result walkRoot() const { return walk({url(root)}); }

    /// Sorted paths below the root.
    std::vector<std::string> relative(const QList<QUrl>& urls) const
    {
        std::vector<std::string> paths;
        for (const QUrl& each : urls)
            paths.push_back(fs::path(each.toLocalFile().toStdString()).lexically_relative(root).string());
        std::ranges::sort(paths);
        return paths;
    }
};

using Paths = std::vector<std::string>;

} // namespace

TEST_F(DeepWalkTest, EntersHiddenFoldersAndPackages)
{
    for (const char* path : {"a.mp3", "b.MP3", ".hidden.mp3", ".hidden/c.mp3", "App.app/Contents/d.mp3", "x/y/z/e.mp3",
                             "notes.txt", ".mp3", "mp3", "x/y/cover.jpg"})
        make(path);
    fs::create_directories(root / "folder.mp3");
    const DeepWalk::Result result = walkRoot();
    EXPECT_EQ(relative(result.files),
              (Paths{".hidden.mp3", ".hidden/c.mp3", "App.app/Contents/d.mp3", "a.mp3", "b.MP3", "x/y/z/e.mp3"}));
    EXPECT_EQ(result.notTaken, 0);
    EXPECT_EQ(result.unreadableFolders, 0);
    EXPECT_TRUE(result.strayTemporaries.isEmpty());
}

TEST_F(DeepWalkTest, FollowsLinksAndWalksEachFolderOnce)
{
    make("real/a.mp3");
    fs::create_directory_symlink(root, root / "real/loop");
    // Many, so that whatever order the system tells them in, some come before the folder itself and some after it.
    for (int i = 0; i < 30; ++i)
        fs::create_directory_symlink("real", root / ("again " + std::to_string(i)));
    fs::create_directory_symlink("self", root / "self");
    fs::create_symlink("real/a.mp3", root / "link.mp3");
    fs::create_symlink("nowhere.mp3", root / "broken.mp3");
    fs::create_symlink("self.mp3", root / "self.mp3");
    const fs::path outside = fs::path(temporary.path().toStdString()) / "outside";
    fs::create_directory(outside);
    std::ofstream(outside / "b.mp3") << "x";
    fs::create_directory_symlink(outside, root / "outside");
    const DeepWalk::Result result = walkRoot();
    EXPECT_EQ(relative(result.files), (Paths{"link.mp3", "outside/b.mp3", "real/a.mp3"}));
    EXPECT_EQ(result.notTaken, 2);
}

TEST_F(DeepWalkTest, NeverOpensWhatIsNoRegularFile)
{
    make("a.mp3");
    const fs::path fifo = root / "fifo.mp3";
    const fs::path companionFifo = root / "._fifo.mp3";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(companionFifo.c_str(), 0600), 0);
    ASSERT_EQ(mkfifo((root / "fifo.txt").c_str(), 0600), 0);
    fs::create_symlink("fifo.mp3", root / "link to fifo.mp3");
    fs::create_symlink("/dev/null", root / "device.mp3");
    const int socketFile = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    const fs::path socketPath = root / "s.mp3";
    ASSERT_LT(socketPath.string().size(), sizeof address.sun_path);
    strcpy(address.sun_path, socketPath.c_str());
    ASSERT_EQ(bind(socketFile, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);

    const DeepWalk::Result result = walkRoot();
    EXPECT_EQ(relative(result.files), Paths{"a.mp3"});
    EXPECT_EQ(result.notTaken, 5);
    const DeepWalk::Result given = walk({url(fifo), url(socketPath), url(companionFifo)});
    EXPECT_TRUE(given.files.isEmpty());
    EXPECT_EQ(given.notTaken, 3);
    close(socketFile);
}

TEST_F(DeepWalkTest, CountsUnreadableFolders)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "nothing is unreadable for root";
    make("open/a.mp3");
    make("closed/b.mp3");
    const fs::path transit = make("transit/c.mp3");
    fs::permissions(root / "closed", fs::perms::none);
    fs::permissions(root / "transit", fs::perms::owner_exec);
    const DeepWalk::Result result = walkRoot();
    const DeepWalk::Result given = walk({url(transit), url(root / "closed/b.mp3")});
    fs::permissions(root / "closed", fs::perms::owner_all);
    fs::permissions(root / "transit", fs::perms::owner_all);
    EXPECT_EQ(relative(result.files), Paths{"open/a.mp3"});
    EXPECT_EQ(result.unreadableFolders, 2);
    EXPECT_EQ(relative(given.files), (Paths{"closed/b.mp3", "transit/c.mp3"}));
}

TEST_F(DeepWalkTest, CountsNamesThatAreNotUtf8)
{
    for (const char* path : {"\xEF\xBB\xBFgood \xD0\xB9.mp3", "decomposed \xD0\xB8\xCC\x86.mp3", "100% #1?.mp3",
                             "line\nend\\.mp3", "\xE4\xF6\xFC.mp3", "\xE4\xF6\xFC.txt", "x.mp3\xFF", "\xFF/inside.mp3",
                             "\xFF/deeper/inside.mp3", "\xFF/inside.txt"})
        make(path);
    const DeepWalk::Result result = walkRoot();
    EXPECT_EQ(relative(result.files), (Paths{"100% #1?.mp3", "decomposed \xD0\xB8\xCC\x86.mp3", "line\nend\\.mp3",
                                             "\xEF\xBB\xBFgood \xD0\xB9.mp3"}));
    EXPECT_EQ(result.notTaken, 3);
    for (const QUrl& file : result.files)
        EXPECT_TRUE(fs::exists(file.toLocalFile().toStdString())) << qPrintable(file.toString());
}

TEST_F(DeepWalkTest, GoesBeyondTheLongestPath)
{
    const std::string component(200, 'd');
    // As many levels as a process may not have open at once, the last ones beyond the longest path of a call.
    rlimit limits;
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limits), 0);
    const rlimit few{.rlim_cur = 20, .rlim_max = limits.rlim_max};
    int folder = open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    size_t length = root.string().size();
    int taken = 0;
    int notTaken = 0;
    for (int level = 0; level < 60; ++level) {
        const int file = openat(folder, "a.mp3", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        ASSERT_GE(file, 0);
        close(file);
        ++(length + 6 <= 4095 ? taken : notTaken);
        ASSERT_EQ(mkdirat(folder, component.c_str(), 0700), 0);
        const int next = openat(folder, component.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_GE(next, 0);
        close(folder);
        folder = next;
        length += 1 + component.size();
    }
    close(folder);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    const DeepWalk::Result result = walkRoot();
    setrlimit(RLIMIT_NOFILE, &limits);
    ASSERT_GT(notTaken, 30);
    EXPECT_EQ(result.files.size(), taken);
    EXPECT_EQ(result.notTaken, notTaken);
    EXPECT_EQ(result.unreadableFolders, 0);
    for (const QUrl& file : result.files)
        EXPECT_EQ(access(file.toLocalFile().toUtf8().constData(), R_OK), 0);
}

TEST_F(DeepWalkTest, LeavesCompanionFilesOut)
{
    const std::string magic("\x00\x05\x16\x07", 4);
    const fs::path companion = make("._a.mp3", magic + "rest");
    make("a.mp3", magic); // named like music, so it is taken for music
    make("._song.mp3", "ID3\x03");
    make("._short.mp3", magic.substr(0, 3));
    make("._notes.txt", magic);
    const DeepWalk::Result result = walkRoot();
    EXPECT_EQ(relative(result.files), (Paths{"._short.mp3", "._song.mp3", "a.mp3"}));
    EXPECT_EQ(result.notTaken, 0) << "nobody misses them";
    EXPECT_TRUE(walk({url(companion)}).files.isEmpty());
}

TEST_F(DeepWalkTest, SetsStrayTemporariesApart)
{
    const std::string uuid(kUUID);
    const std::tuple<std::string, int, bool, bool> rows[] = {
        {".velmora-" + uuid + ".mp3", 61, false, true},
        {"old/.velmora-" + uuid + ".flac", 600, false, true},
        {"young/.velmora-" + uuid + ".mp3", 59, false, false},
        {"ahead/.velmora-" + uuid + ".mp3", -10, false, false},
        {"lower/.velmora-0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9.mp3", 61, false, true},
        {".velmora-mix.mp3", 61, true, false},
        {".velmora-" + uuid + "0.mp3", 61, true, false},
        {".velmora-" + uuid.substr(1) + "g.mp3", 61, true, false},
        {"velmora-" + uuid + ".mp3", 61, true, false},
    };
    Paths files;
    Paths strays;
    QList<QUrl> given;
    for (const auto& [name, ageInMinutes, isFile, isStray] : rows) {
        const fs::path path = make(name);
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::minutes(ageInMinutes));
        given.append(url(path));
        if (isFile)
            files.push_back(name);
        if (isStray)
            strays.push_back(name);
    }
    std::ranges::sort(files);
    std::ranges::sort(strays);
    given.append(url(root / (".velmora-00000000-0000-0000-0000-000000000000.mp3"))); // gone
    for (const DeepWalk::Result& result : {walkRoot(), walk(given)}) {
        EXPECT_EQ(relative(result.files), files);
        EXPECT_EQ(relative(result.strayTemporaries), strays);
        EXPECT_EQ(result.notTaken, 0);
    }
}

TEST_F(DeepWalkTest, KeepsGivenFilesInTheirOrder)
{
    const fs::path a = make("a.mp3");
    make("folder/b.mp3");
    const fs::path gone = root / "gone/never.mp3";
    fs::create_symlink("a.mp3", root / "link.mp3");
    const DeepWalk::Result result =
        walk({url(gone), url(a), url(root / "folder"), url(root / "x/../a.mp3"), url(root / "gone.txt"),
              url(root / "link.mp3"), url(root / "folder"), url(root / "a.mp3/below.mp3")});
    const QList<QUrl> expected{
        url(gone), url(a), url(root / "folder/b.mp3"), url(a), url(root / "link.mp3"), url(root / "a.mp3/below.mp3")};
    EXPECT_EQ(result.files, expected);
    EXPECT_EQ(result.notTaken, 0);
}

TEST_F(DeepWalkTest, WhatVanishesMeanwhileIsNotThere)
{
    for (int i = 0; i < 20; ++i)
        make("folder" + std::to_string(i) + "/a.mp3");
    int asked = 0;
    const DeepWalk::Result result = DeepWalk::walk({url(root)},
                                                   [&](QStringView name) {
                                                       if (++asked == 1)
                                                           fs::remove_all(root);
                                                       return isMusic(name);
                                                   },
                                                   {});
    EXPECT_EQ(result.files.size(), 1);
    EXPECT_EQ(result.unreadableFolders, 0);
}

TEST_F(DeepWalkTest, StopsAtTheNextEntry)
{
    for (int i = 0; i < 10; ++i)
        make(std::to_string(i) + ".mp3");
    std::stop_source stop;
    int asked = 0;
    const auto countAndStop = [&](QStringView) {
        if (++asked == 3)
            stop.request_stop();
        return true;
    };
    EXPECT_THROW(DeepWalk::walk({url(root)}, countAndStop, stop.get_token()), async::Cancelled);
    EXPECT_EQ(asked, 3);
}
