#include "tags/writing/FileRewrite.h"

#include "platform/TemporaryName.h"
#include "support/FailingFileCalls.h"
#include "support/WriterFolder.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <csignal>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

const QString kName = QStringLiteral("a.bin");
const QString kFormat = QStringLiteral("bin");

/// Bytes in which no block is like another.
QByteArray noise(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

/// A new head in front of the sound that follows the old head of 10 bytes.
void replaceHead(const QString& path)
{
    FileRewrite rewrite(path, kFormat);
    rewrite.write("head of the new file");
    const SoundSpan sound{10, rewrite.written(), rewrite.sourceSize() - 10};
    rewrite.copy(10, sound.length);
    rewrite.patch(0, "HEAD");
    rewrite.commit({sound}, kFormat);
}

QByteArray withNewHead(const QByteArray& bytes)
{
    return "HEAD of the new file" + bytes.sliced(10);
}

struct stat statusOf(const QString& path)
{
    struct stat status = {};
    EXPECT_EQ(lstat(QFile::encodeName(path).constData(), &status), 0);
    return status;
}

QByteArray attribute(const QString& path, const char* name)
{
    char value[256];
    const ssize_t size = getxattr(QFile::encodeName(path).constData(), name, value, sizeof(value));
    return size < 0 ? QByteArray() : QByteArray(value, size);
}

bool setAttribute(const QString& path, const char* name, const QByteArray& value)
{
    return setxattr(QFile::encodeName(path).constData(), name, value.constData(), size_t(value.size()), 0) == 0;
}

TEST(FileRewrite, LeavesAloneWhatSomebodyElseChangedMeanwhile)
{
    struct Case {
        const char* name;
        std::function<void(const WriterFolder&)> meanwhile;
        const char* error;
    };
    const Case cases[] = {
        {"written into",
         [](const WriterFolder& folder) {
             QFile file(folder.path(kName));
             ASSERT_TRUE(file.open(QIODevice::Append));
             file.write("more");
         },
         "rewriteFailed bin"},
        {"replaced",
         [](const WriterFolder& folder) {
             folder.write(QStringLiteral("other"), "another file");
             ASSERT_TRUE(QFile::remove(folder.path(kName)));
             ASSERT_TRUE(QFile::rename(folder.path(QStringLiteral("other")), folder.path(kName)));
         },
         "rewriteFailed bin"},
        {"removed", [](const WriterFolder& folder) { ASSERT_TRUE(QFile::remove(folder.path(kName))); },
         "fileNoSuchFile"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const WriterFolder folder;
        const QString path = folder.write(kName, noise(5000));
        QStringList present;
        EXPECT_EQ(errorOf([&] {
                      FileRewrite rewrite(path, kFormat);
                      rewrite.copy(0, rewrite.sourceSize());
                      test.meanwhile(folder);
                      present = folder.names();
                      rewrite.commit({}, kFormat);
                  }),
                  QLatin1StringView(test.error));
        present.removeIf([](const QString& name) { return name != kName; });
        EXPECT_EQ(folder.names(), present) << "neither a new file nor a lost one";
        if (present.contains(kName)) {
            EXPECT_NE(folder.read(kName), noise(5000)) << "what the other one wrote stands";
        }
    }
}

TEST(FileRewriteTest, writesEverySizeWholeHoweverLittleACallMoves)
{
    constexpr qsizetype kBlock = 1024 * 1024;
    const struct {
        qsizetype size;
        size_t transferLimit;
        QByteArray failingName;
        int error;
    } cases[] = {
        {10, FailingFileCalls::kNoLimit, "", 0},
        {11, 1, "", 0},
        {5000, 7, "", 0},
        {5000, 7, "copyRange", ENOSYS},
        {2 * kBlock + 11, FailingFileCalls::kNoLimit, "", 0},
        {2 * kBlock + 10, FailingFileCalls::kNoLimit, "copyRange", EXDEV},
        {2 * kBlock + 9, 300000, "copyRange", EINVAL},
    };
    for (const auto& c : cases) {
        const WriterFolder folder;
        const QByteArray bytes = noise(c.size);
        const QString path = folder.write(kName, bytes);
        FailingFileCalls calls;
        calls.transferLimit = c.transferLimit;
        calls.failingName = c.failingName;
        calls.error = c.error;
        replaceHead(path);
        EXPECT_TRUE(folder.read(kName) == withNewHead(bytes)) << c.size;
        EXPECT_EQ(folder.names(), QStringList{kName});
    }
}

TEST(FileRewriteTest, isDurableBeforeTheSwapAndAfterIt)
{
    const WriterFolder folder;
    const QString path = folder.write(kName, noise(100));
    FailingFileCalls calls;
    replaceHead(path);
    const QByteArrayList steps = calls.names();
    const qsizetype swap = steps.indexOf("rename");
    const qsizetype sync = steps.indexOf("sync");
    ASSERT_GE(sync, 0);
    EXPECT_LT(steps.lastIndexOf("write"), sync);
    EXPECT_LT(steps.indexOf("changeMode"), sync);
    EXPECT_LT(sync, swap);
    EXPECT_GT(steps.lastIndexOf("sync"), swap);
    EXPECT_LT(steps.indexOf("close"), swap);
}

TEST(FileRewriteTest, leavesTheOldOrTheNewFileAtEveryStep)
{
    expectWholeAtEveryStep(kName, noise(3000), &replaceHead);
}

TEST(FileRewriteTest, refusesSoundThatDiffers)
{
    const QByteArray bytes = noise(3'000'000);
    const struct {
        const char* what;
        qint64 patchAt;
        SoundSpan span;
        bool isRefused;
    } cases[] = {
        {"before the sound", 99, {100, 100, 2'900'000 - 100}, false},
        {"its first byte", 100, {100, 100, 2'900'000 - 100}, true},
        {"in a later block", 2'500'000, {100, 100, 2'900'000 - 100}, true},
        {"its last byte", 2'899'999, {100, 100, 2'900'000 - 100}, true},
        {"behind the sound", 2'900'000, {100, 100, 2'900'000 - 100}, false},
        {"another place", 0, {100, 101, 1000}, true},
        {"longer than the new file", 0, {100, 100, 2'999'901}, true},
    };
    for (const auto& c : cases) {
        const WriterFolder folder;
        const QString path = folder.write(kName, bytes);
        const QString error = errorOf([&] {
            FileRewrite rewrite(path, kFormat);
            rewrite.copy(0, bytes.size());
            const char other = static_cast<char>(~bytes.at(c.patchAt));
            rewrite.patch(c.patchAt, QByteArrayView(&other, 1));
            rewrite.commit({{0, 0, 0}, c.span}, kFormat);
        });
        EXPECT_EQ(error, c.isRefused ? QStringLiteral("rewriteFailed bin") : QString()) << c.what;
        EXPECT_EQ(folder.read(kName) == bytes, c.isRefused) << c.what;
        EXPECT_EQ(folder.names(), QStringList{kName}) << c.what;
    }
}

TEST(FileRewriteTest, saysWhyASourceCannotBeRead)
{
    const WriterFolder folder;
    const QString path = folder.write(kName, "0123456789");
    ASSERT_EQ(mkfifo(QFile::encodeName(folder.path(QStringLiteral("fifo"))).constData(), 0600), 0);
    ASSERT_EQ(symlink("nowhere", QFile::encodeName(folder.path(QStringLiteral("broken"))).constData()), 0);
    const auto open = [&](const QString& name) { return errorOf([&] { FileRewrite(folder.path(name), kFormat); }); };
    EXPECT_EQ(open(QStringLiteral("none.bin")), QStringLiteral("fileNoSuchFile"));
    EXPECT_EQ(open(QStringLiteral("broken")), QStringLiteral("fileNoSuchFile"));
    EXPECT_EQ(open(QStringLiteral("a.bin/b")), QStringLiteral("fileNoSuchFile"));
    EXPECT_EQ(open(QStringLiteral(".")), QStringLiteral("fileReadCorruptFile"));
    EXPECT_EQ(open(QStringLiteral("fifo")), QStringLiteral("fileReadCorruptFile"));

    constexpr qint64 kHuge = std::numeric_limits<qint64>::max();
    for (const auto& [offset, count] :
         {std::pair<qint64, qint64>{0, 11}, {10, 1}, {11, 0}, {-1, 2}, {5, kHuge}, {0, -1}}) {
        FileRewrite rewrite(path, kFormat);
        EXPECT_EQ(errorOf([&] { rewrite.read(offset, count); }), QStringLiteral("fileReadCorruptFile")) << offset;
        EXPECT_EQ(errorOf([&] { rewrite.copy(offset, count); }), QStringLiteral("fileReadCorruptFile")) << offset;
    }
}

TEST(FileRewriteTest, noticesASourceThatShrinksMeanwhile)
{
    const WriterFolder folder;
    const QString path = folder.write(kName, noise(5000));
    FileRewrite rewrite(path, kFormat);
    ASSERT_EQ(truncate(QFile::encodeName(path).constData(), 3000), 0);
    EXPECT_EQ(errorOf([&] { rewrite.copy(0, 5000); }), QStringLiteral("fileReadCorruptFile"));
}

TEST(FileRewriteTest, namesTheFailuresOfWriting)
{
    const std::pair<int, const char*> cases[] = {
        {EACCES, "fileWriteNoPermission"}, {EPERM, "fileWriteNoPermission"}, {EROFS, "fileWriteVolumeReadOnly"},
        {ENOSPC, "fileWriteOutOfSpace"},   {EDQUOT, "fileWriteOutOfSpace"},  {EMFILE, "fileWriteUnknown"},
    };
    for (const auto& [error, name] : cases) {
        const WriterFolder folder;
        const QByteArray bytes = noise(100);
        const QString path = folder.write(kName, bytes);
        FailingFileCalls calls;
        calls.error = error;
        calls.failingStep = 3; // the source's open and status, the new file's open, then its first bytes
        EXPECT_EQ(errorOf([&] { replaceHead(path); }), QLatin1StringView(name));
        EXPECT_EQ(folder.names(), QStringList{kName});
        EXPECT_EQ(calls.names().at(3), "write");
    }
}

TEST(FileRewriteTest, saysWhyANewFileCannotBeMade)
{
    for (const int error : {EACCES, EROFS, ENOSPC, EMFILE}) {
        const WriterFolder folder;
        const QString path = folder.write(kName, noise(100));
        FailingFileCalls calls;
        calls.error = error;
        calls.failingStep = 2;
        try {
            replaceHead(path);
            ADD_FAILURE() << "nothing thrown";
        } catch (const FileError& thrown) {
            EXPECT_EQ(thrown.which(), FileError::Case::fileWriteUnknown);
            EXPECT_EQ(thrown.message(), FileError::fromWriting(error, path).message());
        }
    }
}

TEST(FileRewriteTest, keepsModeAndAttributesAndMakesTheFileWritable)
{
    const std::pair<mode_t, mode_t> modes[] = {{0640, 0640}, {0444, 0644}, {0400, 0600}, {0755, 0755}};
    for (const auto& [before, after] : modes) {
        const WriterFolder folder;
        const QByteArray bytes = noise(100);
        const QString path = folder.write(kName, bytes);
        const bool hasAttributes = setAttribute(path, "user.label", "red") && setAttribute(path, "user.empty", "");
        ASSERT_EQ(chmod(QFile::encodeName(path).constData(), before), 0);
        replaceHead(path);
        EXPECT_EQ(statusOf(path).st_mode & 07777, after);
        EXPECT_EQ(folder.read(kName), withNewHead(bytes));
        if (hasAttributes) {
            EXPECT_EQ(attribute(path, "user.label"), "red");
            EXPECT_FALSE(attribute(path, "user.empty").isNull());
        }
    }
}

TEST(FileRewriteTest, keepsAccessLists)
{
    // Version 2; owner rw, user 1234 r, group -, mask r, others -. Source: linux/posix_acl_xattr.h.
    const QByteArray list = QByteArray::fromHex("02000000"
                                                "01000600ffffffff"
                                                "02000400d2040000"
                                                "04000000ffffffff"
                                                "10000400ffffffff"
                                                "20000000ffffffff");
    const WriterFolder folder;
    const QString path = folder.write(kName, noise(100));
    if (!setAttribute(path, "system.posix_acl_access", list))
        GTEST_SKIP() << "no access lists here";
    replaceHead(path);
    EXPECT_EQ(attribute(path, "system.posix_acl_access").toHex(), list.toHex());
    EXPECT_EQ(statusOf(path).st_mode & 07777, 0640u);
}

TEST(FileRewriteTest, takesNoAccessListFromTheFolder)
{
    // Everybody may do everything with what is made here.
    const QByteArray list = QByteArray::fromHex("02000000"
                                                "01000700ffffffff"
                                                "02000700d2040000"
                                                "04000700ffffffff"
                                                "10000700ffffffff"
                                                "20000700ffffffff");
    const WriterFolder folder;
    const QString path = folder.write(kName, noise(100));
    ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0640), 0);
    if (!setAttribute(QFileInfo(path).path(), "system.posix_acl_default", list))
        GTEST_SKIP() << "no access lists here";
    replaceHead(path);
    EXPECT_EQ(attribute(path, "system.posix_acl_access").toHex(), "");
    EXPECT_EQ(statusOf(path).st_mode & 07777, 0640u);
}

TEST(FileRewriteTest, keepsTheOwnerAndTakesTheImmutableFlagOff)
{
    const WriterFolder folder;
    const QByteArray bytes = noise(100);
    const QString path = folder.write(kName, bytes);
    const QByteArray name = QFile::encodeName(path);
    if (chown(name.constData(), 1234, 2345) != 0)
        GTEST_SKIP() << "needs the rights of root";
    const int file = open(name.constData(), O_RDONLY);
    int flags = 0;
    if (ioctl(file, FS_IOC_GETFLAGS, &flags) == 0) {
        flags |= FS_IMMUTABLE_FL;
        ioctl(file, FS_IOC_SETFLAGS, &flags);
    }
    close(file);
    replaceHead(path);
    EXPECT_EQ(statusOf(path).st_uid, 1234u);
    EXPECT_EQ(statusOf(path).st_gid, 2345u);
    EXPECT_EQ(folder.read(kName), withNewHead(bytes));
}

TEST(FileRewriteTest, goesOnWhereTheOwnerOrAnAttributeIsNotAllowed)
{
    const std::pair<const char*, int> cases[] = {
        {"changeOwner", EPERM}, {"listAttributes", ENOTSUP}, {"writeAttribute", ENOTSUP}, {"inodeFlags", ENOTTY}};
    for (const auto& [name, error] : cases) {
        const WriterFolder folder;
        const QByteArray bytes = noise(100);
        const QString path = folder.write(kName, bytes);
        setAttribute(path, "user.label", "red");
        FailingFileCalls calls;
        calls.failingName = name;
        calls.error = error;
        replaceHead(path);
        EXPECT_EQ(folder.read(kName), withNewHead(bytes)) << name;
    }
}

TEST(FileRewriteTest, changesWhatALinkLeadsToAndSplitsHardLinks)
{
    const WriterFolder target;
    const WriterFolder folder;
    const QByteArray bytes = noise(100);
    const QByteArray path = QFile::encodeName(target.write(kName, bytes));
    const QString link = folder.path(QStringLiteral("link.bin"));
    const QString twin = target.path(QStringLiteral("twin.bin"));
    ASSERT_EQ(symlink(path.constData(), QFile::encodeName(link).constData()), 0);
    ASSERT_EQ(::link(path.constData(), QFile::encodeName(twin).constData()), 0);
    {
        FileRewrite rewrite(link, kFormat);
        rewrite.write("x");
        EXPECT_EQ(target.names().size(), 3) << "the new file stands beside the target";
    }
    EXPECT_EQ(target.names().size(), 2);
    replaceHead(link);
    EXPECT_TRUE(S_ISLNK(statusOf(link).st_mode));
    EXPECT_EQ(target.read(kName), withNewHead(bytes));
    EXPECT_EQ(target.read(QStringLiteral("twin.bin")), bytes);
}

TEST(FileRewriteTest, takesNamesOfAllKinds)
{
    // The last is a name in decomposed form.
    for (const QStringView name : {u"\U0001F3A7 mix.bin", u"\nнота'\"%20#?.bin", u"e\u0301.bin"}) {
        const WriterFolder folder;
        const QByteArray bytes = noise(100);
        const QString path = folder.write(name.toString(), bytes);
        replaceHead(path);
        EXPECT_EQ(folder.names(), QStringList{name.toString()});
        EXPECT_EQ(folder.read(name.toString()), withNewHead(bytes));
    }
}

TEST(FileRewriteTest, namesTheNewFileSoThatItIsKnownAndHidden)
{
    const WriterFolder folder;
    const QString path = folder.write(kName, "0123456789");
    {
        FileRewrite rewrite(path, QStringLiteral("Mp3"), FileRewrite::OnFailure::Keep);
        EXPECT_EQ(folder.names(), QStringList{kName}) << "nothing is made before the first write";
        rewrite.write("new");
    }
    ASSERT_EQ(folder.names().size(), 2);
    const QString name = folder.names().first();
    EXPECT_TRUE(TemporaryName::matches(name.toUtf8()));
    EXPECT_TRUE(name.endsWith(QStringLiteral(".Mp3")));
    EXPECT_EQ(name.sliced(9, 36), name.sliced(9, 36).toUpper());
    EXPECT_EQ(statusOf(folder.path(name)).st_mode & 07777, 0600u);
    EXPECT_EQ(folder.read(kName), "0123456789");
}

TEST(FileRewriteTest, survivesALimitOfTheFilesSize)
{
    const WriterFolder folder;
    const QByteArray bytes = noise(300'000);
    const QString path = folder.write(kName, bytes);
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit limit{200'000, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    const QString error = errorOf([&] { replaceHead(path); });
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(error, QStringLiteral("fileWriteOutOfSpace"));
    EXPECT_TRUE(folder.read(kName) == bytes);
    EXPECT_EQ(folder.names(), QStringList{kName});
}

TEST(FileRewriteTest, survivesAFullDisk)
{
    const WriterFolder folder;
    const QByteArray mountPoint = QFile::encodeName(QFileInfo(folder.path(kName)).path());
    if (mount("none", mountPoint.constData(), "tmpfs", 0, "size=512k") != 0)
        GTEST_SKIP() << "needs the rights of root";
    const QByteArray bytes = noise(300'000);
    const QString path = folder.write(kName, bytes);
    EXPECT_EQ(errorOf([&] { replaceHead(path); }), QStringLiteral("fileWriteOutOfSpace"));
    EXPECT_TRUE(folder.read(kName) == bytes);
    EXPECT_EQ(folder.names(), QStringList{kName});
    EXPECT_EQ(umount(mountPoint.constData()), 0);
}

TEST(FileRewriteTest, leavesAFolderWithoutRightsAsItWas)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "root may write everywhere";
    const WriterFolder folder;
    const QByteArray bytes = noise(100);
    const QString path = folder.write(kName, bytes);
    const QByteArray parent = QFile::encodeName(QFileInfo(path).path());
    ASSERT_EQ(chmod(parent.constData(), 0500), 0);
    EXPECT_EQ(errorOf([&] { replaceHead(path); }), QStringLiteral("fileWriteUnknown"));
    EXPECT_EQ(folder.read(kName), bytes);
    ASSERT_EQ(chmod(parent.constData(), 0700), 0);
}

} // namespace
