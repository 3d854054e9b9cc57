#include "platform/files/FileAttributes.h"

#include "platform/files/FileCalls.h"

#include <QByteArrayList>

#include <cerrno>
#include <system_error>

#include <linux/fs.h>

namespace FileAttributes {

namespace {

constexpr mode_t kPermissionBits = 07777;

[[noreturn]] void fail()
{
    throw std::system_error(errno, std::generic_category());
}

void check(int result)
{
    if (result < 0)
        fail();
}

struct stat statusOf(int file)
{
    struct stat status = {};
    check(FileCalls::current().status(file, &status));
    return status;
}

/// A name list or a value, whose size has to be asked for first.
template <typename Call>
QByteArray sized(Call call)
{
    for (;;) {
        const ssize_t size = call(nullptr, 0);
        if (size < 0)
            fail();
        QByteArray bytes(size, Qt::Uninitialized);
        if (size == 0)
            return bytes;
        const ssize_t filled = call(bytes.data(), static_cast<size_t>(size));
        if (filled >= 0)
            return bytes.first(filled);
        if (errno != ERANGE) // otherwise it has grown in between
            fail();
    }
}

QByteArrayList attributeNames(int file)
{
    try {
        const QByteArray names = sized(
            [file](char* target, size_t size) { return FileCalls::current().listAttributes(file, target, size); });
        QByteArrayList list = names.split('\0');
        list.removeAll(QByteArray());
        return list;
    } catch (const std::system_error& error) {
        if (error.code().value() == ENOTSUP)
            return {};
        throw;
    }
}

/// The system keeps some for itself: labels that a policy sets on the new file anyway.
bool isOfTheSystem(const QByteArray& name)
{
    return name.startsWith("security.") || name.startsWith("trusted.");
}

void copyAttribute(int from, int to, const QByteArray& name)
{
    FileCalls& calls = FileCalls::current();
    const QByteArray value =
        sized([&](char* target, size_t size) { return calls.readAttribute(from, name.constData(), target, size); });
    const int result = calls.writeAttribute(to, name.constData(), value.constData(), size_t(value.size()));
    if (result == 0 || errno == ENOTSUP)
        return;
    if (isOfTheSystem(name) && (errno == EPERM || errno == EACCES))
        return;
    fail();
}

/// What the folder has given to a new file, such as its default access list, goes: the old one had none of it.
void removeOthers(int file, const QByteArrayList& wanted)
{
    for (const QByteArray& name : attributeNames(file)) {
        if (wanted.contains(name) || isOfTheSystem(name))
            continue;
        if (FileCalls::current().removeAttribute(file, name.constData()) != 0 && errno != ENOTSUP)
            fail();
    }
}

/// Not every user may, not every file system can, and not every container knows the owner.
bool cannotChangeOwner(int error)
{
    return error == EPERM || error == ENOTSUP || error == ENOSYS || error == EINVAL;
}

void copyOwner(const struct stat& source, int to)
{
    FileCalls& calls = FileCalls::current();
    if (calls.changeOwner(to, source.st_uid, source.st_gid) == 0)
        return;
    if (!cannotChangeOwner(errno))
        fail();
    // Not the user, but perhaps one of the own groups.
    if (calls.changeOwner(to, uid_t(-1), source.st_gid) != 0 && !cannotChangeOwner(errno))
        fail();
}

void copyMode(const struct stat& source, int to)
{
    const struct stat target = statusOf(to);
    mode_t mode = source.st_mode & kPermissionBits;
    if (target.st_uid != source.st_uid) // a program of one user must not become one of another
        mode &= ~mode_t(S_ISUID);
    if (target.st_gid != source.st_gid)
        mode &= ~mode_t(S_ISGID);
    // File systems without modes give the same one to every file, and may refuse even that.
    if ((target.st_mode & kPermissionBits) != mode)
        check(FileCalls::current().changeMode(to, mode));
}

bool knowsNoFlags(int error)
{
    return error == ENOTTY || error == ENOSYS || error == ENOTSUP || error == EINVAL;
}

} // namespace

void copy(int from, int to)
{
    const struct stat source = statusOf(from);
    copyOwner(source, to);
    const QByteArrayList names = attributeNames(from);
    for (const QByteArray& name : names)
        copyAttribute(from, to, name);
    removeOthers(to, names);
    // Last: a change of the owner takes bits off, and an access list sets them.
    copyMode(source, to);
}

void makeWritable(int file)
{
    FileCalls& calls = FileCalls::current();
    int flags = 0;
    if (calls.inodeFlags(file, &flags) != 0) {
        if (!knowsNoFlags(errno))
            fail();
    } else if (flags & (FS_IMMUTABLE_FL | FS_APPEND_FL)) {
        check(calls.setInodeFlags(file, flags & ~(FS_IMMUTABLE_FL | FS_APPEND_FL)));
    }
    const mode_t mode = statusOf(file).st_mode;
    if (!(mode & S_IWUSR))
        check(calls.changeMode(file, (mode & kPermissionBits) | S_IWUSR));
}

} // namespace FileAttributes
