#include "support/FailingFileCalls.h"
#include "support/TrashFixture.h"

#include <cerrno>
#include <filesystem>

#include <unistd.h>

namespace fs = std::filesystem;

using Case = TrashError::Case;

class TrashTest : public TrashFixture {};

TEST_F(TrashTest, FilesOfAnyNameGoAndComeBack)
{
    const QByteArray names[] = {
        "song.mp3",
        "Песня (ремикс).flac",
        "🎧 mix.wav",
        "e\xCC\x81te\xCC\x81.mp3", // decomposed
        ".hidden.mp3",
        "...",
        "100% #1 [a]&b;c=d?.mp3",
        "%41.mp3",
        "line\nbreak\r\t.mp3",
        "back\\slash\"quote'.mp3",
        " spaces .mp3 ",
        "\xCF\xE5\xF1\xED\xFF.mp3", // Windows-1251
        "\xFF\xFE",
        QByteArray(251, 'x') + ".mp3",
        QByteArrayLiteral("Ж").repeated(127) + "x",
        "name.trashinfo",
    };
    QMap<QByteArray, QByteArray> gone; // kept name to old path
    QList<TrashedItem> items;
    for (const QByteArray& name : names) {
        const QByteArray original = write("music/" + name, "music of " + name);
        const TrashedItem item = trash().moveToTrash(original);
        EXPECT_FALSE(isThere(original)) << name.constData();
        EXPECT_EQ(item.originalPath, original);
        EXPECT_EQ(contents(item.trashedPath), "music of " + name);
        gone.insert(item.trashedPath.mid(path("home/Trash/files/").size()), original);
        items.append(item);
    }
    const auto read = readByAnother(path("home/Trash"));
    EXPECT_EQ(read.keys(), gone.keys());
    for (auto info = read.begin(); info != read.end(); ++info) {
        EXPECT_EQ(info->path, gone.value(info.key()));
        EXPECT_TRUE(info->age >= 0 && info->age < 60) << info->age;
    }
    for (const TrashedItem& item : items) {
        Trash::restore(item);
        EXPECT_TRUE(isThere(item.originalPath));
    }
    EXPECT_EQ(this->names("home/Trash/files"), QByteArrayList());
    EXPECT_EQ(this->names("home/Trash/info"), QByteArrayList());
    EXPECT_EQ(this->names("music").size(), std::ssize(names));
}

TEST_F(TrashTest, TheHomeTrashIsMadeForItsUserAlone)
{
    fs::remove_all(path("home").toStdString());
    trash().moveToTrash(QString::fromUtf8(write("music/a.mp3")));
    for (const char* folder : {"home", "home/Trash", "home/Trash/files", "home/Trash/info"})
        EXPECT_EQ(modeOf(path(folder)), 0700u) << folder;
}

TEST_F(TrashTest, TheHomeTrashIsFoundThroughTheEnvironment)
{
    const QByteArray home = qgetenv("HOME");
    const QByteArray data = qgetenv("XDG_DATA_HOME");
    const bool hadData = qEnvironmentVariableIsSet("XDG_DATA_HOME");
    qputenv("HOME", "/somebody");
    const std::pair<const char*, const char*> rows[] = {
        {"/data", "/data/Trash"},
        {"/data//", "/data/Trash"},
        {"", "/somebody/.local/share/Trash"},
        {"relative", "/somebody/.local/share/Trash"},
    };
    for (const auto& [data, trash] : rows) {
        qputenv("XDG_DATA_HOME", data);
        EXPECT_EQ(TrashFolder::homeTrash(), trash) << data;
    }
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(TrashFolder::homeTrash(), "/somebody/.local/share/Trash");
    qputenv("HOME", home);
    if (hadData)
        qputenv("XDG_DATA_HOME", data);
}

TEST_F(TrashTest, TakenNamesGetANumber)
{
    for (const char* folder : {"home/Trash", "home/Trash/files", "home/Trash/info"})
        makeFolder(folder, 0700);
    write("home/Trash/info/a 2.mp3.trashinfo", "an info file without its file");
    write("home/Trash/files/a 4.mp3", "a file without its info file");
    link("home/Trash/files/a 5.mp3", "nowhere");
    makeFolder("home/Trash/files/a 6.mp3");
    QByteArrayList kept;
    for (int i = 0; i < 4; ++i)
        kept.append(trash().moveToTrash(write("music/a.mp3", QByteArray::number(i))).trashedPath);
    const QByteArrayList expected{path("home/Trash/files/a.mp3"), path("home/Trash/files/a 3.mp3"),
                                  path("home/Trash/files/a 7.mp3"), path("home/Trash/files/a 8.mp3")};
    EXPECT_EQ(kept, expected);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(contents(kept.at(i)), QByteArray::number(i));
    EXPECT_EQ(contents(path("home/Trash/files/a 4.mp3")), QByteArray("a file without its info file"));
    EXPECT_EQ(contents(path("home/Trash/info/a 2.mp3.trashinfo")), QByteArray("an info file without its file"));
    EXPECT_EQ(names("home/Trash/info").size(), 5) << "a number that was tried leaves nothing behind";
}

TEST_F(TrashTest, FoldersAndLinksMoveThemselves)
{
    write("music/album/deep/a.mp3");
    write("other/target.mp3");
    link("music/file link", path("other/target.mp3"));
    link("music/folder link", path("other"));
    link("music/broken link", "nowhere");
    link("way in", path("music"));
    const std::tuple<QByteArray, QByteArray, bool> rows[] = {
        {"music/album/", "music/album", false},
        {"music/file link", "music/file link", true},
        {"music/folder link//", "music/folder link", true},
        {"way in/broken link", "music/broken link", true},
    };
    for (const auto& [given, stood, isLink] : rows) {
        const TrashedItem item = trash().moveToTrash(path(given));
        EXPECT_EQ(item.originalPath, path(stood));
        EXPECT_FALSE(isThere(path(stood))) << given.constData();
        EXPECT_EQ(fs::is_symlink(item.trashedPath.toStdString()), isLink) << given.constData();
        EXPECT_TRUE(isThere(path("other/target.mp3")));
        Trash::restore(item);
        EXPECT_TRUE(isThere(path(stood))) << given.constData();
    }
    EXPECT_TRUE(isThere(path("music/album/deep/a.mp3")));
}

TEST_F(TrashTest, WhatCannotGoMakesNoTrash)
{
    write("music/a.mp3");
    const std::pair<QByteArray, Case> rows[] = {
        {path("music/missing.mp3"), Case::noSuchFile},
        {path("nowhere/a.mp3"), Case::noSuchFile},
        {path("music/a.mp3/b.mp3"), Case::noSuchFile},
        {path("music/."), Case::unknown},
        {path("music/.."), Case::unknown},
        {"/", Case::unknown},
        {"", Case::unknown},
        {path("music/a.mp3") + QByteArray(1, '\0'), Case::unknown},
    };
    for (const auto& [given, error] : rows)
        EXPECT_EQ(errorOf([&] { trash().moveToTrash(given); }), error) << given.constData();
    EXPECT_EQ(names("home"), QByteArrayList());
    EXPECT_EQ(names("music"), QByteArrayList{"a.mp3"});
    EXPECT_EQ(errorOf([&] { trash().moveToTrash(path("home")); }), Case::unknown) << "the Trash into itself";
    EXPECT_EQ(names("home/Trash/info"), QByteArrayList());
}

TEST_F(TrashTest, RestoringNeverOverwrites)
{
    // Without and with a file system that can rename to a free name alone.
    for (const char* failing : {"", "renameToFree"}) {
        FailingFileCalls calls;
        calls.failingName = failing;
        calls.error = EINVAL;
        const TrashedItem item = trash().moveToTrash(write("music/a.mp3", "old"));
        const TrashedItem second = trash().moveToTrash(write("music/a.mp3", "second"));
        EXPECT_NE(item.trashedPath, second.trashedPath);
        write("music/a.mp3", "new");
        EXPECT_EQ(errorOf([&] { Trash::restore(item); }), Case::fileExists);
        EXPECT_EQ(contents(path("music/a.mp3")), QByteArray("new"));
        EXPECT_EQ(contents(item.trashedPath), QByteArray("old"));
        EXPECT_TRUE(isThere(item.infoPath));

        fs::remove(path("music/a.mp3").toStdString());
        link("music/a.mp3", "nowhere");
        EXPECT_EQ(errorOf([&] { Trash::restore(item); }), Case::fileExists) << "a link to nothing is somebody's too";
        fs::remove(path("music/a.mp3").toStdString());
        Trash::restore(item);
        EXPECT_EQ(contents(path("music/a.mp3")), QByteArray("old"));
        EXPECT_FALSE(isThere(item.infoPath));

        fs::remove(path("music/a.mp3").toStdString());
        fs::remove(second.trashedPath.toStdString());
        EXPECT_EQ(errorOf([&] { Trash::restore(second); }), Case::noSuchFile) << "the Trash was emptied";
        EXPECT_FALSE(isThere(path("music/a.mp3")));
        fs::remove(second.infoPath.toStdString());
    }
}

TEST_F(TrashTest, AStrangerOfTheSameNameIsNotRestored)
{
    const TrashedItem item = trash().moveToTrash(write("music/a.mp3", "mine"));
    fs::rename(item.trashedPath.toStdString(), path("kept elsewhere").toStdString()); // its number stays in use
    fs::remove(item.infoPath.toStdString());
    const TrashedItem stranger = trash().moveToTrash(write("other/a.mp3", "somebody else's"));
    ASSERT_EQ(stranger.trashedPath, item.trashedPath);
    EXPECT_EQ(errorOf([&] { Trash::restore(item); }), Case::noSuchFile);
    EXPECT_EQ(contents(stranger.trashedPath), QByteArray("somebody else's"));
    EXPECT_TRUE(isThere(stranger.infoPath));
}

TEST_F(TrashTest, RestoringMakesALostFolderAgain)
{
    const TrashedItem item = trash().moveToTrash(write("music/artist/album/a.mp3"));
    fs::remove_all(path("music").toStdString());
    Trash::restore(item);
    EXPECT_EQ(contents(path("music/artist/album/a.mp3")), QByteArray("music"));

    const TrashedItem blocked = trash().moveToTrash(path("music/artist/album/a.mp3"));
    fs::remove_all(path("music/artist").toStdString());
    write("music/artist", "a file now");
    EXPECT_EQ(errorOf([&] { Trash::restore(blocked); }), Case::unknown) << "the file itself is not missing";
    EXPECT_TRUE(isThere(blocked.trashedPath) && isThere(blocked.infoPath));
}

TEST_F(TrashTest, AFolderWithoutWritePermissionKeepsItsFiles)
{
    constexpr uid_t kNobody = 65534;
    const bool wasRoot = geteuid() == 0;
    const QByteArray file = write("music/a.mp3");
    if (wasRoot) { // whom no permission stops
        for (const auto& entry : fs::recursive_directory_iterator(path("").toStdString()))
            ASSERT_EQ(lchown(entry.path().c_str(), kNobody, kNobody), 0);
        ASSERT_EQ(chown(path("").constData(), kNobody, kNobody), 0);
        ASSERT_EQ(seteuid(kNobody), 0);
    }
    makeFolder("music", 0555);
    EXPECT_EQ(errorOf([&] { trash().moveToTrash(file); }), Case::noPermission);
    EXPECT_EQ(contents(file), QByteArray("music"));
    EXPECT_EQ(names("home/Trash/info"), QByteArrayList());
    makeFolder("music", 0755);
    makeFolder("home/Trash/info", 0500);
    EXPECT_EQ(errorOf([&] { trash().moveToTrash(file); }), Case::noPermission);
    EXPECT_EQ(contents(file), QByteArray("music"));
    makeFolder("home/Trash/info", 0700);
    if (wasRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
}
