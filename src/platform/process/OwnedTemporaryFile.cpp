#include "platform/process/OwnedTemporaryFile.h"

#include <QDirIterator>
#include <QFile>
#include <QUuid>

#include <ctime>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace {

bool isOld(const struct stat& status, std::chrono::seconds age)
{
    return std::time(nullptr) - status.st_mtime > age.count();
}

/// Whether \p path still names the file that was opened.
bool isSameFile(const QByteArray& path, const struct stat& opened)
{
    struct stat present = {};
    return lstat(path.constData(), &present) == 0 && present.st_dev == opened.st_dev && present.st_ino == opened.st_ino;
}

bool removeIfStale(const QByteArray& path, std::chrono::seconds age)
{
    // Neither follows a link nor waits for the other end of a pipe that somebody left under this name.
    const Descriptor file(open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0)
        return false;
    if (!S_ISREG(status.st_mode) || status.st_uid != geteuid() || !isOld(status, age))
        return false;
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return false;
    return isSameFile(path, status) && unlink(path.constData()) == 0;
}

} // namespace

bool OwnedTemporaryFile::Naming::matches(const QString& fileName) const
{
    if (!fileName.startsWith(prefix) || !fileName.endsWith(suffix))
        return false;
    const QString middle = fileName.sliced(prefix.size()).chopped(qMin(suffix.size(), fileName.size() - prefix.size()));
    const QUuid uuid(middle);
    return !uuid.isNull() && uuid.toString(QUuid::WithoutBraces).toUpper() == middle;
}

OwnedTemporaryFile::OwnedTemporaryFile(const QString& folder, const Naming& naming)
    : m_path(folder + u'/' + naming.prefix + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() +
             naming.suffix)
    , m_lock(Descriptor::checked(
          open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)))
{
    // On a file system without locks the age alone protects the file.
    flock(m_lock.get(), LOCK_EX | LOCK_NB);
}

OwnedTemporaryFile::~OwnedTemporaryFile()
{
    unlink(QFile::encodeName(m_path).constData());
}

int OwnedTemporaryFile::removeStale(const QString& folder, const Naming& naming, std::chrono::seconds age)
{
    int count = 0;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden | QDir::System);
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (naming.matches(entries.fileName()) && removeIfStale(QFile::encodeName(path), age))
            ++count;
    }
    return count;
}
