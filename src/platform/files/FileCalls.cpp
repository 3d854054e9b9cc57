#include "platform/files/FileCalls.h"

#include <atomic>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

std::atomic<FileCalls*> installedCalls{nullptr};
std::atomic<bool> isSyncing{true};

/// Repeats a call that a signal interrupted.
template <typename Call>
auto repeated(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace

FileCalls& FileCalls::current()
{
    static SystemFileCalls system;
    FileCalls* const installed = installedCalls.load(std::memory_order_acquire);
    return installed ? *installed : system;
}

void FileCalls::install(FileCalls* calls)
{
    installedCalls.store(calls, std::memory_order_release);
}

void SystemFileCalls::setSyncing(bool isOn)
{
    isSyncing.store(isOn, std::memory_order_relaxed);
}

int SystemFileCalls::open(const QByteArray& path, int flags, mode_t mode)
{
    return repeated([&] { return ::open(path.constData(), flags | O_CLOEXEC, mode); });
}

int SystemFileCalls::close(int file)
{
    return ::close(file); // never repeated: the descriptor is gone even after EINTR
}

ssize_t SystemFileCalls::read(int file, void* target, size_t count, off_t offset)
{
    return repeated([&] { return ::pread(file, target, count, offset); });
}

ssize_t SystemFileCalls::write(int file, const void* source, size_t count, off_t offset)
{
    return repeated([&] { return ::pwrite(file, source, count, offset); });
}

ssize_t SystemFileCalls::copyRange(int from, off_t fromOffset, int to, off_t toOffset, size_t count)
{
    return repeated([&] { return ::copy_file_range(from, &fromOffset, to, &toOffset, count, 0); });
}

int SystemFileCalls::status(int file, struct stat* target)
{
    return ::fstat(file, target);
}

int SystemFileCalls::changeMode(int file, mode_t mode)
{
    return ::fchmod(file, mode);
}

int SystemFileCalls::changeOwner(int file, uid_t user, gid_t group)
{
    return ::fchown(file, user, group);
}

ssize_t SystemFileCalls::listAttributes(int file, char* names, size_t size)
{
    return ::flistxattr(file, names, size);
}

ssize_t SystemFileCalls::readAttribute(int file, const char* name, void* value, size_t size)
{
    return ::fgetxattr(file, name, value, size);
}

int SystemFileCalls::writeAttribute(int file, const char* name, const void* value, size_t size)
{
    return ::fsetxattr(file, name, value, size, 0);
}

int SystemFileCalls::removeAttribute(int file, const char* name)
{
    return ::fremovexattr(file, name);
}

int SystemFileCalls::inodeFlags(int file, int* flags)
{
    return ::ioctl(file, FS_IOC_GETFLAGS, flags);
}

int SystemFileCalls::setInodeFlags(int file, int flags)
{
    return ::ioctl(file, FS_IOC_SETFLAGS, &flags);
}

int SystemFileCalls::sync(int file)
{
    return isSyncing.load(std::memory_order_relaxed) ? repeated([&] { return ::fsync(file); }) : 0;
}

int SystemFileCalls::rename(const QByteArray& from, const QByteArray& to)
{
    return ::rename(from.constData(), to.constData());
}

int SystemFileCalls::renameToFree(const QByteArray& from, const QByteArray& to)
{
    return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE);
}

int SystemFileCalls::facts(const QByteArray& path, int flags, struct statx* target)
{
    return ::statx(AT_FDCWD, path.constData(), flags | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_MNT_ID, target);
}

int SystemFileCalls::makeFolder(const QByteArray& path, mode_t mode)
{
    return ::mkdir(path.constData(), mode);
}

int SystemFileCalls::remove(const QByteArray& path)
{
    return ::unlink(path.constData());
}
