#include "support/FailingFileCalls.h"

#include <algorithm>
#include <cerrno>

bool FailingFileCalls::passes(const char* name)
{
    const int step = stepCount();
    m_names.append(name);
    const bool hasEnded = stopStep != kNever && step >= stopStep;
    if (!hasEnded && step != failingStep && failingName != name)
        return true;
    errno = error;
    return false;
}

int FailingFileCalls::open(const QByteArray& path, int flags, mode_t mode)
{
    return passes("open") ? SystemFileCalls::open(path, flags, mode) : -1;
}

int FailingFileCalls::close(int file)
{
    // The descriptor goes in any case: it does so at the end of a process and after a failure as well.
    const bool isPassed = passes("close");
    const int error = errno;
    const int result = SystemFileCalls::close(file);
    errno = error;
    return isPassed ? result : -1;
}

ssize_t FailingFileCalls::read(int file, void* target, size_t count, off_t offset)
{
    return passes("read") ? SystemFileCalls::read(file, target, std::min(count, transferLimit), offset) : -1;
}

ssize_t FailingFileCalls::write(int file, const void* source, size_t count, off_t offset)
{
    return passes("write") ? SystemFileCalls::write(file, source, std::min(count, transferLimit), offset) : -1;
}

ssize_t FailingFileCalls::copyRange(int from, off_t fromOffset, int to, off_t toOffset, size_t count)
{
    const size_t limited = std::min(count, transferLimit);
    return passes("copyRange") ? SystemFileCalls::copyRange(from, fromOffset, to, toOffset, limited) : -1;
}

int FailingFileCalls::status(int file, struct stat* target)
{
    return passes("status") ? SystemFileCalls::status(file, target) : -1;
}

int FailingFileCalls::changeMode(int file, mode_t mode)
{
    return passes("changeMode") ? SystemFileCalls::changeMode(file, mode) : -1;
}

int FailingFileCalls::changeOwner(int file, uid_t user, gid_t group)
{
    return passes("changeOwner") ? SystemFileCalls::changeOwner(file, user, group) : -1;
}

ssize_t FailingFileCalls::listAttributes(int file, char* names, size_t size)
{
    return passes("listAttributes") ? SystemFileCalls::listAttributes(file, names, size) : -1;
}

ssize_t FailingFileCalls::readAttribute(int file, const char* name, void* value, size_t size)
{
    return passes("readAttribute") ? SystemFileCalls::readAttribute(file, name, value, size) : -1;
}

int FailingFileCalls::writeAttribute(int file, const char* name, const void* value, size_t size)
{
    return passes("writeAttribute") ? SystemFileCalls::writeAttribute(file, name, value, size) : -1;
}

int FailingFileCalls::removeAttribute(int file, const char* name)
{
    return passes("removeAttribute") ? SystemFileCalls::removeAttribute(file, name) : -1;
}

int FailingFileCalls::inodeFlags(int file, int* flags)
{
    return passes("inodeFlags") ? SystemFileCalls::inodeFlags(file, flags) : -1;
}

int FailingFileCalls::setInodeFlags(int file, int flags)
{
    return passes("setInodeFlags") ? SystemFileCalls::setInodeFlags(file, flags) : -1;
}

int FailingFileCalls::sync(int file)
{
    return passes("sync") ? SystemFileCalls::sync(file) : -1;
}

int FailingFileCalls::rename(const QByteArray& from, const QByteArray& to)
{
    return passes("rename") ? SystemFileCalls::rename(from, to) : -1;
}

int FailingFileCalls::renameToFree(const QByteArray& from, const QByteArray& to)
{
    return passes("renameToFree") ? SystemFileCalls::renameToFree(from, to) : -1;
}

int FailingFileCalls::facts(const QByteArray& path, int flags, struct statx* target)
{
    if (!passes("facts") || SystemFileCalls::facts(path, flags, target) != 0)
        return -1;
    if (!otherVolume.isEmpty() && (path + '/').startsWith(otherVolume + '/'))
        ++target->stx_dev_minor;
    return 0;
}

int FailingFileCalls::makeFolder(const QByteArray& path, mode_t mode)
{
    return passes("makeFolder") ? SystemFileCalls::makeFolder(path, mode) : -1;
}

int FailingFileCalls::remove(const QByteArray& path)
{
    return passes("remove") ? SystemFileCalls::remove(path) : -1;
}
