#include "support/FailingFileCalls.h"
#include "support/TrashFixture.h"

#include <filesystem>

#include <sys/mount.h>
#include <unistd.h>

namespace fs = std::filesystem;

using Case = TrashError::Case;

namespace {

/// Mounts something while it lives.
class Mount {
public:
    Mount(const char* source, const QByteArray& target, const char* type, unsigned long flags, const char* data)
        : m_target(target)
        , m_isMounted(mount(source, target.constData(), type, flags, data) == 0)
    {
    }
    ~Mount()
    {
        if (m_isMounted)
            umount2(m_target.constData(), MNT_DETACH);
    }
    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;

    bool isMounted() const { return m_isMounted; }

private:
    QByteArray m_target;
    bool m_isMounted;
};

} // namespace

class TrashVolumesTest : public TrashFixture {
protected:
    const QByteArray user = QByteArray::number(geteuid());
    const QByteArray own = "volume/.Trash-" + user;
    const QByteArray shared = "volume/.Trash/" + user;

    /// Moves a file of the volume and expects it in a trash there; the way back as well.
    void expectIn(const QByteArray& folder, const char* what)
    {
        const QByteArray original = write("volume/album/Песня 1%.mp3");
        const TrashedItem item = trash().moveToTrash(original);
        EXPECT_EQ(item.trashedPath, path(folder + "/files/Песня 1%.mp3")) << what;
        EXPECT_FALSE(isThere(original)) << what;
        EXPECT_EQ(modeOf(path(folder)), 0700u) << what;
        const auto read = readByAnother(path(folder));
        EXPECT_EQ(read.value("Песня 1%.mp3").path, QByteArray("album/Песня 1%.mp3")) << what << ": from the top";
        Trash::restore(item);
        EXPECT_EQ(contents(original), QByteArray("music")) << what;
        EXPECT_EQ(names("home"), QByteArrayList()) << what;
    }

    void expectNone(Case error, const char* what)
    {
        const QByteArray original = write("volume/album/a.mp3");
        EXPECT_EQ(errorOf([&] { trash().moveToTrash(original); }), error) << what;
        EXPECT_EQ(contents(original), QByteArray("music")) << what;
        EXPECT_EQ(names("home"), QByteArrayList()) << what << ": nothing goes to another volume";
    }
};

TEST_F(TrashVolumesTest, TheCommonTrashIsUsedIfItIsSafe)
{
    FailingFileCalls calls;
    calls.otherVolume = path("volume");
    const struct {
        const char* what;
        std::function<void()> prepare;
        QByteArray expected; ///< empty for an error
    } rows[] = {
        {"nothing there", [] {}, own},
        {"sticky", [&] { makeFolder("volume/.Trash", 01777); }, shared},
        {"own folder in it", [&] { makeFolder("volume/.Trash", 01777), makeFolder(shared, 0700); }, shared},
        {"not sticky", [&] { makeFolder("volume/.Trash", 0777); }, own},
        {"a link", [&] { makeFolder("volume/real", 01777), link("volume/.Trash", "real"); }, own},
        {"a file", [&] { write("volume/.Trash"); }, own},
        {"own folder in it is a link",
         [&] {
             makeFolder("volume/.Trash", 01777);
             makeFolder("volume/trap");
             link(shared, path("volume/trap"));
         },
         own},
        {"its inside is a link",
         [&] {
             makeFolder("volume/.Trash", 01777);
             makeFolder(shared, 0700);
             makeFolder("volume/trap");
             link(shared + "/files", path("volume/trap"));
         },
         own},
        {"own one is a link", [&] { makeFolder("volume/trap"), link(own, "trap"); }, {}},
        {"own one is a link to nothing", [&] { link(own, "nowhere"); }, {}},
        {"own one is a file", [&] { write(own); }, {}},
        {"its info is a file", [&] { makeFolder(own, 0700), write(own + "/info"); }, {}},
    };
    for (const auto& row : rows) {
        fs::remove_all(path("volume").toStdString());
        makeFolder("volume");
        row.prepare();
        if (row.expected.isEmpty())
            expectNone(Case::unavailable, row.what);
        else
            expectIn(row.expected, row.what);
        EXPECT_EQ(names("volume/trap"), QByteArrayList()) << row.what;
    }
}

TEST_F(TrashVolumesTest, AFolderOfSomebodyElseIsRefused)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder away";
    FailingFileCalls calls;
    calls.otherVolume = path("volume");
    makeFolder(own, 0777);
    ASSERT_EQ(chown(path(own).constData(), 12345, 12345), 0);
    expectNone(Case::unavailable, "somebody else's");
}

TEST_F(TrashVolumesTest, RealVolumesHaveTheirOwn)
{
    const Mount memory("tmpfs", path("volume"), "tmpfs", 0, "size=1m,mode=0755");
    if (!memory.isMounted())
        GTEST_SKIP() << "nothing can be mounted here";
    expectIn(own, "another file system");
    const TrashedItem home = trash().moveToTrash(write("music/a.mp3"));
    EXPECT_EQ(home.trashedPath, path("home/Trash/files/a.mp3"));
}

TEST_F(TrashVolumesTest, ABindMountHasItsOwnTooThoughItsDeviceIsTheSame)
{
    makeFolder("real");
    const Mount bind(path("real").constData(), path("volume"), nullptr, MS_BIND, nullptr);
    if (!bind.isMounted())
        GTEST_SKIP() << "nothing can be mounted here";
    expectIn(own, "bind mount");
}

TEST_F(TrashVolumesTest, FullAndReadOnlyVolumesKeepTheirFiles)
{
    const Mount memory("tmpfs", path("volume"), "tmpfs", 0, "nr_inodes=4,mode=0755");
    if (!memory.isMounted())
        GTEST_SKIP() << "nothing can be mounted here";
    expectNone(Case::outOfSpace, "full");
    ASSERT_EQ(mount(nullptr, path("volume").constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(errorOf([&] { trash().moveToTrash(path("volume/album/a.mp3")); }), Case::readOnlyVolume);
    EXPECT_TRUE(isThere(path("volume/album/a.mp3")));
}
