#include "tags/writing/FileRewrite.h"

#include "platform/TemporaryName.h"
#include "support/FailingFileCalls.h"
#include "support/TagBytes.h"
#include "support/Thrown.h"
#include "support/WrittenFiles.h"
#include "tags/writing/WriteErrors.h"

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

using TagBytes::noise;

const QString kName = QStringLiteral("a.bin");
const QString kFormat = QStringLiteral("bin");

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

/// An access list of version 2. Source: linux/posix_acl_xattr.h. \param rights of the owner, user 1234, the group, the
/// mask and the others, as digits.
QByteArray accessList(const char* rights)
{
    const char* const entries[] = {"01000%100ffffffff", "02000%100d2040000", "04000%100ffffffff", "10000%100ffffffff",
                                   "20000%100ffffffff"};
    QByteArray hex = "02000000";
    for (const char* entry : entries)
        hex += QByteArray(entry).replace("%1", QByteArray(1, *rights++));
    return QByteArray::fromHex(hex);
}

class FileRewriteTest : public testing::Test {
protected:
    struct stat status() const { return statusOf(path); }
    /// The file holds these bytes and nothing is beside it.
    void expectAlone(const QByteArray& bytes) const
    {
        EXPECT_TRUE(folder.read(kName) == bytes);
        EXPECT_EQ(folder.names(), QStringList{kName});
    }
    QString errorOfReplacing() const
    {
        return errorOf([this] { replaceHead(path); });
    }

    const FileFolder folder;
    const QByteArray bytes = noise(100);
    const QString path = folder.write(kName, bytes).toLocalFile();
    const QByteArray nativePath = QFile::encodeName(path);
};

TEST_F(FileRewriteTest, leavesAloneWhatSomebodyElseChangedMeanwhile)
{
    const std::tuple<const char*, std::function<void()>, const char*> cases[] = {
        {"written into",
         [&] {
             QFile file(path);
             ASSERT_TRUE(file.open(QIODevice::Append));
             file.write("more");
         },
         "rewriteFailed bin"},
        {"replaced",
         [&] {
             folder.write(QStringLiteral("other"), "another file");
             ASSERT_TRUE(QFile::remove(path) && QFile::rename(folder.path(QStringLiteral("other")), path));
         },
         "rewriteFailed bin"},
        {"removed", [&] { ASSERT_TRUE(QFile::remove(path)); }, "fileNoSuchFile"},
    };
    for (const auto& [name, meanwhile, error] : cases) {
        SCOPED_TRACE(name);
        folder.write(kName, bytes);
        const auto change = [&] {
            FileRewrite rewrite(path, kFormat);
            rewrite.copy(0, rewrite.sourceSize());
            meanwhile();
            rewrite.commit({}, kFormat);
        };
        EXPECT_EQ(errorOf(change), QLatin1StringView(error));
        EXPECT_EQ(folder.names(), QFile::exists(path) ? QStringList{kName} : QStringList()) << "and no new file";
        EXPECT_NE(folder.read(kName), bytes) << "what the other one wrote stands";
    }
}

TEST_F(FileRewriteTest, writesEverySizeWholeHoweverLittleACallMoves)
{
    constexpr qsizetype kBlock = 1024 * 1024;
    const std::tuple<qsizetype, size_t, QByteArray, int> cases[] = {
        {10, FailingFileCalls::kNoLimit, "", 0},
        {11, 1, "", 0},
        {5000, 7, "", 0},
        {5000, 7, "copyRange", ENOSYS},
        {2 * kBlock + 11, FailingFileCalls::kNoLimit, "", 0},
        {2 * kBlock + 10, FailingFileCalls::kNoLimit, "copyRange", EXDEV},
        {2 * kBlock + 9, 300000, "copyRange", EINVAL},
    };
    for (const auto& [size, transferLimit, failingName, error] : cases) {
        SCOPED_TRACE(size);
        folder.write(kName, noise(size));
        FailingFileCalls calls;
        calls.transferLimit = transferLimit;
        calls.failingName = failingName;
        calls.error = error;
        replaceHead(path);
        expectAlone(withNewHead(noise(size)));
    }
}

TEST_F(FileRewriteTest, isDurableBeforeTheSwapAndAfterIt)
{
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

TEST_F(FileRewriteTest, leavesTheOldOrTheNewFileAtEveryStep)
{
    expectWholeAtEveryStep(kName, noise(3000), [](const QUrl& url) { replaceHead(url.toLocalFile()); });
}

TEST_F(FileRewriteTest, refusesSoundThatDiffers)
{
    const QByteArray large = noise(3'000'000);
    const std::tuple<const char*, qint64, SoundSpan, bool> cases[] = {
        {"before the sound", 99, {100, 100, 2'900'000 - 100}, false},
        {"its first byte", 100, {100, 100, 2'900'000 - 100}, true},
        {"in a later block", 2'500'000, {100, 100, 2'900'000 - 100}, true},
        {"its last byte", 2'899'999, {100, 100, 2'900'000 - 100}, true},
        {"behind the sound", 2'900'000, {100, 100, 2'900'000 - 100}, false},
        {"another place", 0, {100, 101, 1000}, true},
        {"longer than the new file", 0, {100, 100, 2'999'901}, true},
    };
    for (const auto& [what, patchAt, span, isRefused] : cases) {
        folder.write(kName, large);
        QByteArray patched = large;
        patched[patchAt] = static_cast<char>(~large.at(patchAt));
        const QString error = errorOf([&] {
            FileRewrite rewrite(path, kFormat);
            rewrite.copy(0, large.size());
            rewrite.patch(patchAt, patched.sliced(patchAt, 1));
            rewrite.commit({{0, 0, 0}, span}, kFormat);
        });
        EXPECT_EQ(error, isRefused ? QStringLiteral("rewriteFailed bin") : QString()) << what;
        expectAlone(isRefused ? large : patched);
    }
}

TEST_F(FileRewriteTest, saysWhyASourceCannotBeRead)
{
    ASSERT_EQ(mkfifo(QFile::encodeName(folder.path(QStringLiteral("fifo"))).constData(), 0600), 0);
    ASSERT_EQ(symlink("nowhere", QFile::encodeName(folder.path(QStringLiteral("broken"))).constData()), 0);
    const auto open = [&](const QString& name) { return errorOf([&] { FileRewrite(folder.path(name), kFormat); }); };
    for (const QString& name : {QStringLiteral("none.bin"), QStringLiteral("broken"), QStringLiteral("a.bin/b")})
        EXPECT_EQ(open(name), QStringLiteral("fileNoSuchFile")) << name.toStdString();
    EXPECT_EQ(open(QStringLiteral(".")), kCorrupt);
    EXPECT_EQ(open(QStringLiteral("fifo")), kCorrupt);

    constexpr qint64 kHuge = std::numeric_limits<qint64>::max();
    for (const auto& [offset, count] :
         {std::pair<qint64, qint64>{0, 101}, {100, 1}, {101, 0}, {-1, 2}, {5, kHuge}, {0, -1}}) {
        FileRewrite rewrite(path, kFormat);
        EXPECT_EQ(errorOf([&] { rewrite.read(offset, count); }), kCorrupt) << offset;
        EXPECT_EQ(errorOf([&] { rewrite.copy(offset, count); }), kCorrupt) << offset;
    }
    FileRewrite rewrite(path, kFormat);
    ASSERT_EQ(truncate(nativePath.constData(), 30), 0);
    EXPECT_EQ(errorOf([&] { rewrite.copy(0, bytes.size()); }), kCorrupt) << "it shrinks meanwhile";
}

TEST_F(FileRewriteTest, namesTheFailuresOfWriting)
{
    const std::pair<int, const char*> cases[] = {
        {EACCES, "fileWriteNoPermission"}, {EPERM, "fileWriteNoPermission"}, {EROFS, "fileWriteVolumeReadOnly"},
        {ENOSPC, "fileWriteOutOfSpace"},   {EDQUOT, "fileWriteOutOfSpace"},  {EMFILE, "fileWriteUnknown"},
    };
    for (const auto& [error, name] : cases) {
        FailingFileCalls calls;
        calls.error = error;
        calls.failingStep = 3; // the source's open and status, the new file's open, then its first bytes
        EXPECT_EQ(errorOfReplacing(), QLatin1StringView(name));
        EXPECT_EQ(calls.names().at(3), "write");
        expectAlone(bytes);
    }
    for (const int error : {EACCES, EROFS, ENOSPC, EMFILE}) {
        FailingFileCalls calls;
        calls.error = error;
        calls.failingStep = 2; // the new file cannot be made
        const auto failure = thrown<FileError>([&] { replaceHead(path); });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->which(), FileError::Case::fileWriteUnknown);
        EXPECT_EQ(failure->message(), FileError::fromWriting(error, path).message());
    }
}

TEST_F(FileRewriteTest, keepsModeAndAttributesAndMakesTheFileWritable)
{
    const std::pair<mode_t, mode_t> modes[] = {{0640, 0640}, {0444, 0644}, {0400, 0600}, {0755, 0755}};
    const bool hasAttributes = setAttribute(path, "user.label", "red") && setAttribute(path, "user.empty", "");
    for (const auto& [before, after] : modes) {
        folder.write(kName, bytes);
        ASSERT_EQ(chmod(nativePath.constData(), before), 0);
        replaceHead(path);
        EXPECT_EQ(status().st_mode & 07777, after);
        EXPECT_EQ(folder.read(kName), withNewHead(bytes));
        if (hasAttributes) {
            EXPECT_EQ(attribute(path, "user.label"), "red");
            EXPECT_FALSE(attribute(path, "user.empty").isNull());
        }
    }
}

TEST_F(FileRewriteTest, keepsAccessLists)
{
    if (!setAttribute(path, "system.posix_acl_access", accessList("64040")))
        GTEST_SKIP() << "no access lists here";
    replaceHead(path);
    EXPECT_EQ(attribute(path, "system.posix_acl_access").toHex(), accessList("64040").toHex());
    EXPECT_EQ(status().st_mode & 07777, 0640u);
}

TEST_F(FileRewriteTest, takesNoAccessListFromTheFolder)
{
    ASSERT_EQ(chmod(nativePath.constData(), 0640), 0);
    // Everybody may do everything with what is made here.
    if (!setAttribute(QFileInfo(path).path(), "system.posix_acl_default", accessList("77777")))
        GTEST_SKIP() << "no access lists here";
    replaceHead(path);
    EXPECT_EQ(attribute(path, "system.posix_acl_access").toHex(), "");
    EXPECT_EQ(status().st_mode & 07777, 0640u);
}

TEST_F(FileRewriteTest, keepsTheOwnerAndTakesTheImmutableFlagOff)
{
    if (chown(nativePath.constData(), 1234, 2345) != 0)
        GTEST_SKIP() << "needs the rights of root";
    const int file = open(nativePath.constData(), O_RDONLY);
    int flags = 0;
    if (ioctl(file, FS_IOC_GETFLAGS, &flags) == 0) {
        flags |= FS_IMMUTABLE_FL;
        ioctl(file, FS_IOC_SETFLAGS, &flags);
    }
    close(file);
    replaceHead(path);
    EXPECT_EQ(status().st_uid, 1234u);
    EXPECT_EQ(status().st_gid, 2345u);
    EXPECT_EQ(folder.read(kName), withNewHead(bytes));
}

TEST_F(FileRewriteTest, goesOnWhereTheOwnerOrAnAttributeIsNotAllowed)
{
    const std::pair<const char*, int> cases[] = {
        {"changeOwner", EPERM}, {"listAttributes", ENOTSUP}, {"writeAttribute", ENOTSUP}, {"inodeFlags", ENOTTY}};
    for (const auto& [name, error] : cases) {
        folder.write(kName, bytes);
        setAttribute(path, "user.label", "red");
        FailingFileCalls calls;
        calls.failingName = name;
        calls.error = error;
        replaceHead(path);
        EXPECT_EQ(folder.read(kName), withNewHead(bytes)) << name;
    }
}

TEST_F(FileRewriteTest, changesWhatALinkLeadsToAndSplitsHardLinks)
{
    const FileFolder elsewhere;
    const QString link = elsewhere.path(QStringLiteral("link.bin"));
    const QString twin = folder.path(QStringLiteral("twin.bin"));
    ASSERT_EQ(symlink(nativePath.constData(), QFile::encodeName(link).constData()), 0);
    ASSERT_EQ(::link(nativePath.constData(), QFile::encodeName(twin).constData()), 0);
    {
        FileRewrite rewrite(link, kFormat);
        rewrite.write("x");
        EXPECT_EQ(folder.names().size(), 3) << "the new file stands beside the target";
    }
    EXPECT_EQ(folder.names().size(), 2);
    replaceHead(link);
    EXPECT_TRUE(S_ISLNK(statusOf(link).st_mode));
    EXPECT_EQ(folder.read(kName), withNewHead(bytes));
    EXPECT_EQ(folder.read(QStringLiteral("twin.bin")), bytes);
}

TEST_F(FileRewriteTest, takesNamesOfAllKinds)
{
    // The last is a name in decomposed form.
    for (const QStringView name : {u"\U0001F3A7 mix.bin", u"\nнота'\"%20#?.bin", u"e\u0301.bin"}) {
        const FileFolder own;
        replaceHead(own.write(name.toString(), bytes).toLocalFile());
        EXPECT_EQ(own.names(), QStringList{name.toString()});
        EXPECT_EQ(own.read(name.toString()), withNewHead(bytes));
    }
}

TEST_F(FileRewriteTest, namesTheNewFileSoThatItIsKnownAndHidden)
{
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
    EXPECT_EQ(folder.read(kName), bytes);
}

TEST_F(FileRewriteTest, survivesALimitOfTheFilesSize)
{
    folder.write(kName, noise(300'000));
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit limit{200'000, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    const QString error = errorOfReplacing();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(error, QStringLiteral("fileWriteOutOfSpace"));
    expectAlone(noise(300'000));
}

TEST_F(FileRewriteTest, survivesAFullDisk)
{
    const QByteArray mountPoint = QFile::encodeName(QFileInfo(path).path());
    if (mount("none", mountPoint.constData(), "tmpfs", 0, "size=512k") != 0)
        GTEST_SKIP() << "needs the rights of root";
    folder.write(kName, noise(300'000));
    EXPECT_EQ(errorOfReplacing(), QStringLiteral("fileWriteOutOfSpace"));
    expectAlone(noise(300'000));
    EXPECT_EQ(umount(mountPoint.constData()), 0);
}

TEST_F(FileRewriteTest, leavesAFolderWithoutRightsAsItWas)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "root may write everywhere";
    const QByteArray parent = QFile::encodeName(QFileInfo(path).path());
    ASSERT_EQ(chmod(parent.constData(), 0500), 0);
    EXPECT_EQ(errorOfReplacing(), QStringLiteral("fileWriteUnknown"));
    EXPECT_EQ(folder.read(kName), bytes);
    ASSERT_EQ(chmod(parent.constData(), 0700), 0);
}

} // namespace
