#include "platform/files/TrashFolder.h"

#include "platform/files/FileCalls.h"
#include "platform/files/MakeFolders.h"
#include "platform/files/TrashError.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr mode_t kPrivate = 0700;

using Facts = struct statx;

std::optional<Facts> factsOf(const QByteArray& path, int flags)
{
    Facts facts;
    if (FileCalls::current().facts(path, flags, &facts) != 0)
        return std::nullopt;
    return facts;
}

/// A file moves by its name alone within one mount: a bind mount has its source's device and still is another one.
bool isSameMount(const Facts& left, const Facts& right)
{
    const bool isSameDevice = left.stx_dev_major == right.stx_dev_major && left.stx_dev_minor == right.stx_dev_minor;
    const bool areMountsKnown = (left.stx_mask & right.stx_mask & STATX_MNT_ID) != 0;
    return isSameDevice && (!areMountsKnown || left.stx_mnt_id == right.stx_mnt_id);
}

QByteArray parentOf(const QByteArray& path)
{
    return path.first(std::max<qsizetype>(path.lastIndexOf('/'), 1));
}

/// Of the folder, or of the nearest one above it that exists.
std::optional<Facts> nearestFacts(QByteArray path)
{
    for (;;) {
        const auto facts = factsOf(path, 0);
        if (facts || errno != ENOENT || path.size() <= 1)
            return facts;
        path = parentOf(path);
    }
}

[[noreturn]] void throwUnavailable(int error, const QByteArray& file)
{
    const TrashError plain = TrashError::fromChange(error, file);
    const bool isTelling =
        plain.which() == TrashError::Case::outOfSpace || plain.which() == TrashError::Case::readOnlyVolume;
    throw isTelling ? plain : TrashError(TrashError::Case::unavailable, file, error);
}

/// The highest folder on the way up that is on the same mount.
QByteArray topOf(const QByteArray& folder, const Facts& own, const QByteArray& file)
{
    QByteArray top = folder;
    while (top.size() > 1) {
        const QByteArray above = parentOf(top);
        const auto facts = factsOf(above, 0);
        if (!facts)
            throwUnavailable(errno, file); // to guess would put a Trash into the middle of the user's folders
        if (!isSameMount(own, *facts))
            break;
        top = above;
    }
    return top;
}

/// Makes a folder unless it is there. \return 0 if a real folder of this user stands there now, else errno.
int makeOwn(const QByteArray& path)
{
    if (FileCalls::current().makeFolder(path, kPrivate) != 0 && errno != EEXIST)
        return errno;
    const auto facts = factsOf(path, AT_SYMLINK_NOFOLLOW);
    if (!facts)
        return errno;
    // Somebody else's folder, or a link into one, would hand the file over.
    return S_ISDIR(facts->stx_mode) && facts->stx_uid == geteuid() ? 0 : EPERM;
}

/// Makes the two folders inside a trash. \return 0 or errno.
int makeInside(const TrashFolder& trash)
{
    const int error = makeOwn(trash.files());
    return error ? error : makeOwn(trash.info());
}

/// Whether the administrator's common ".Trash" may be used: no link, and no user can remove another's folder in it.
bool isTrustworthy(const QByteArray& common)
{
    const auto facts = factsOf(common, AT_SYMLINK_NOFOLLOW);
    return facts && S_ISDIR(facts->stx_mode) && (facts->stx_mode & S_ISVTX) != 0;
}

TrashFolder onVolume(const QByteArray& topdir, const QByteArray& file)
{
    const QByteArray prefix = topdir.endsWith('/') ? topdir : topdir + '/';
    const QByteArray user = QByteArray::number(geteuid());
    if (const QByteArray common = prefix + ".Trash"; isTrustworthy(common)) {
        const TrashFolder trash{common + '/' + user, topdir};
        if (makeOwn(trash.path) == 0 && makeInside(trash) == 0)
            return trash;
    }
    const TrashFolder trash{prefix + ".Trash-" + user, topdir};
    int error = makeOwn(trash.path);
    if (!error)
        error = makeInside(trash);
    if (error)
        throwUnavailable(error, file);
    return trash;
}

} // namespace

TrashFolder TrashFolder::forFolder(const QByteArray& folder, const QByteArray& homeTrash, const QByteArray& file)
{
    const auto own = factsOf(folder, 0);
    if (!own)
        throw TrashError::fromChange(errno, file);
    const auto home = nearestFacts(homeTrash);
    if (!home)
        throwUnavailable(errno, file);
    if (!isSameMount(*own, *home))
        return onVolume(topOf(folder, *own, file), file);
    const TrashFolder trash{homeTrash, {}};
    // A link is the user's own wish here.
    int error = makeFolders(homeTrash, kPrivate);
    if (!error)
        error = makeInside(trash);
    if (error)
        throwUnavailable(error, file);
    return trash;
}

QByteArray TrashFolder::homeTrash()
{
    QByteArray data = qgetenv("XDG_DATA_HOME");
    if (!data.startsWith('/')) // a relative one counts as not set
        data = QFile::encodeName(QDir::homePath()) + "/.local/share";
    while (data.size() > 1 && data.endsWith('/'))
        data.chop(1);
    return data + "/Trash";
}
