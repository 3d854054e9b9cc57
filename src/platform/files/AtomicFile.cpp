#include "platform/files/AtomicFile.h"

#include "platform/files/FileCalls.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

namespace AtomicFile {

namespace {

constexpr qint64 kBlock = qint64(8) << 20; // one call's share: a stop between two is soon noticed
constexpr mode_t kMode = 0600;             // whose music this is concerns no other user

FileCalls& calls()
{
    return FileCalls::current();
}

int writeAll(int file, QByteArrayView bytes)
{
    for (qsizetype at = 0; at < bytes.size();) {
        const auto count = static_cast<size_t>(std::min<qsizetype>(kBlock, bytes.size() - at));
        const ssize_t written = calls().write(file, bytes.data() + at, count, at);
        if (written < 0)
            return errno;
        if (written == 0)
            return ENOSPC; // else the loop would never end
        at += written;
    }
    return calls().sync(file) == 0 ? 0 : errno;
}

int writeBeside(const QByteArray& path, QByteArrayView bytes)
{
    const int file = calls().open(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW, kMode);
    if (file < 0)
        return errno;
    const int error = writeAll(file, bytes);
    const int closing = calls().close(file) == 0 ? 0 : errno; // network disks tell of a full one only here
    return error ? error : closing;
}

/// Makes a rename last. A folder that cannot be synced, as on some network disks, is no failure: the file is there.
void syncFolder(const QByteArray& path)
{
    const int folder = calls().open(path, O_RDONLY | O_DIRECTORY);
    if (folder < 0)
        return;
    calls().sync(folder);
    calls().close(folder);
}

} // namespace

int write(const QByteArray& path, QByteArrayView bytes)
{
    const QByteArray unfinished = path + kUnfinishedEnding;
    int error = writeBeside(unfinished, bytes);
    if (!error && calls().rename(unfinished, path) != 0)
        error = errno;
    if (error) {
        calls().remove(unfinished);
        return error;
    }
    syncFolder(path.first(std::max<qsizetype>(1, path.lastIndexOf('/'))));
    return 0;
}

std::optional<QByteArray> read(const QByteArray& path, qint64 limit)
{
    const int file = calls().open(path, O_RDONLY | O_NONBLOCK); // a pipe in its place is not waited for
    if (file < 0)
        return std::nullopt;
    struct stat facts;
    const bool isFile = calls().status(file, &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_size <= limit;
    QByteArray bytes(isFile ? facts.st_size : 0, Qt::Uninitialized);
    qsizetype at = 0;
    ssize_t count = isFile ? 1 : -1;
    while (count > 0 && at < bytes.size()) {
        count = calls().read(file, bytes.data() + at, static_cast<size_t>(bytes.size() - at), at);
        at += std::max<ssize_t>(count, 0);
    }
    calls().close(file);
    if (count < 0)
        return std::nullopt;
    bytes.truncate(at);
    return bytes;
}

} // namespace AtomicFile
