#include "platform/files/Trash.h"

#include "platform/FileURL.h"
#include "platform/files/FileCalls.h"
#include "platform/files/MakeFolders.h"
#include "platform/files/TrashError.h"
#include "platform/files/TrashName.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include <fcntl.h>

namespace {

constexpr int kMostNumbers = 100'000; // chosen: more files of one name are a fault
constexpr mode_t kInfoMode = 0600;
constexpr mode_t kFolderMode = 0777; // less the process's mask

/// A path taken apart: the folder without links, the last name as it is.
struct Place {
    QByteArray folder;
    QByteArray name;

    QByteArray path() const { return (folder.endsWith('/') ? folder : folder + '/') + name; }
};

Place placeOf(QByteArray path)
{
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    const qsizetype slash = path.lastIndexOf('/');
    Place place;
    place.name = path.sliced(slash + 1);
    if (path.contains('\0') || place.name.isEmpty() || place.name == "." || place.name == "..")
        throw TrashError(TrashError::Case::unknown, path, EINVAL);
    const QByteArray folder = slash < 0    ? QByteArrayLiteral(".")
                              : slash == 0 ? QByteArrayLiteral("/")
                                           : path.first(slash);
    char resolved[PATH_MAX];
    if (!::realpath(folder.constData(), resolved))
        throw TrashError::fromChange(errno, path);
    place.folder = resolved;
    return place;
}

/// Whether anything stands there, a link to nothing included. Throws where that cannot be told.
bool isTaken(const QByteArray& path)
{
    struct statx facts;
    if (FileCalls::current().facts(path, AT_SYMLINK_NOFOLLOW, &facts) == 0)
        return true;
    if (errno != ENOENT && errno != ENOTDIR)
        throw TrashError::fromChange(errno, path);
    return false;
}

/// The number of what stands there; 0 if that cannot be told.
quint64 inodeOf(const QByteArray& path)
{
    struct statx facts;
    const bool isKnown = FileCalls::current().facts(path, AT_SYMLINK_NOFOLLOW, &facts) == 0;
    return isKnown ? facts.stx_ino : 0;
}

/// Renames to a name that is free. \return 0 or errno; EEXIST if it is taken.
int moveToFree(const QByteArray& from, const QByteArray& to)
{
    FileCalls& calls = FileCalls::current();
    if (calls.renameToFree(from, to) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return errno;
    // Some network and FUSE file systems cannot do both in one. What remains is a look right before it.
    struct statx facts;
    if (calls.facts(to, AT_SYMLINK_NOFOLLOW, &facts) == 0)
        return EEXIST;
    if (errno != ENOENT)
        return errno;
    return calls.rename(from, to) == 0 ? 0 : errno;
}

/// \return 0 or errno.
int writeWhole(int file, const QByteArray& text)
{
    for (qsizetype done = 0; done < text.size();) {
        const ssize_t count =
            FileCalls::current().write(file, text.constData() + done, static_cast<size_t>(text.size() - done), done);
        if (count <= 0)
            return count < 0 ? errno : EIO;
        done += count;
    }
    return FileCalls::current().sync(file) == 0 ? 0 : errno;
}

/// Makes an info file whole or not at all. \return 0 or errno; EEXIST if the name is taken.
int writeInfo(const QByteArray& path, const QByteArray& text)
{
    FileCalls& calls = FileCalls::current();
    const int file = calls.open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, kInfoMode);
    if (file < 0)
        return errno;
    int error = writeWhole(file, text);
    if (calls.close(file) != 0 && !error)
        error = errno;
    if (error)
        calls.remove(path);
    return error;
}

/// The path that the info file holds.
QByteArray toldPath(const TrashFolder& trash, const QByteArray& original)
{
    if (trash.topdir.isEmpty())
        return original;
    return original.sliced(trash.topdir.size() + (trash.topdir.endsWith('/') ? 0 : 1));
}

/// The error of a step behind those that looked for the file.
/// \param from where it stands. \param original named in it. \param folderMissing the case for a folder to move to that
/// is not there: the system has one number for that and for a missing file.
TrashError brokenMove(int error, const QByteArray& from, const QByteArray& original, TrashError::Case folderMissing)
{
    const bool isFolderMissing = (error == ENOENT || error == ENOTDIR) && isTaken(from);
    return isFolderMissing ? TrashError(folderMissing, original, error) : TrashError::fromChange(error, original);
}

TrashedItem moveInto(const TrashFolder& trash, const Place& place)
{
    const QByteArray original = place.path();
    const quint64 inode = inodeOf(original); // a rename keeps it
    const QByteArray text = TrashName::infoText(toldPath(trash, original), QDateTime::currentDateTime());
    for (int number = 1; number <= kMostNumbers; ++number) {
        const QByteArray name = TrashName::numbered(place.name, number);
        const TrashedItem item{original, trash.files() + '/' + name, trash.info() + '/' + TrashName::infoName(name),
                               inode};
        int error = writeInfo(item.infoPath, text);
        if (!error) {
            error = moveToFree(original, item.trashedPath);
            if (!error)
                return item;
            FileCalls::current().remove(item.infoPath);
        }
        if (error != EEXIST)
            throw brokenMove(error, original, original, TrashError::Case::unavailable);
    }
    throw TrashError(TrashError::Case::unknown, original, EEXIST);
}

} // namespace

QUrl TrashedItem::trashedURL() const
{
    return FileURL::fromPath(QFile::decodeName(trashedPath));
}

Trash::Trash(QByteArray homeTrash)
    : m_homeTrash(std::move(homeTrash))
{
}

TrashedItem Trash::moveToTrash(const QString& path) const
{
    return moveToTrash(QFile::encodeName(path));
}

TrashedItem Trash::moveToTrash(const QByteArray& path) const
{
    const Place place = placeOf(path);
    if (!isTaken(place.path())) // before a trash is made for nothing
        throw TrashError(TrashError::Case::noSuchFile, place.path(), ENOENT);
    return moveInto(TrashFolder::forFolder(place.folder, m_homeTrash, place.path()), place);
}

void Trash::restore(const TrashedItem& item)
{
    if (isTaken(item.originalPath))
        throw TrashError(TrashError::Case::fileExists, item.originalPath, EEXIST);
    if (!isTaken(item.trashedPath))
        throw TrashError(TrashError::Case::noSuchFile, item.originalPath, ENOENT);
    // Emptied and filled anew by others, the Trash may hold a file of the same name.
    if (item.inode != 0 && inodeOf(item.trashedPath) != item.inode)
        throw TrashError(TrashError::Case::noSuchFile, item.originalPath, ENOENT);
    const qsizetype slash = item.originalPath.lastIndexOf('/');
    if (slash > 0) {
        if (const int error = makeFolders(item.originalPath.first(slash), kFolderMode))
            throw brokenMove(error, item.trashedPath, item.originalPath, TrashError::Case::unknown);
    }
    if (const int error = moveToFree(item.trashedPath, item.originalPath))
        throw brokenMove(error, item.trashedPath, item.originalPath, TrashError::Case::unknown);
    // Should this fail, an info file without its file remains; every reader of a Trash passes over those.
    FileCalls::current().remove(item.infoPath);
}
