#include "tags/vault/VaultFolder.h"

#include "platform/TemporaryName.h"
#include "platform/files/FileCalls.h"
#include "tags/writing/WriteErrors.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <numeric>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

const QString& suffix()
{
    static const QString kSuffix = QStringLiteral(".tags");
    return kSuffix;
}

FileCalls& calls()
{
    return FileCalls::current();
}

qint64 now()
{
    return std::chrono::nanoseconds(std::chrono::system_clock::now().time_since_epoch()).count();
}

/// An open file that is closed at the end.
class OpenFile {
public:
    OpenFile(const QByteArray& path, int flags, mode_t mode = 0)
        : m_descriptor(calls().open(path, flags, mode))
    {
    }
    ~OpenFile()
    {
        if (m_descriptor >= 0)
            calls().close(m_descriptor);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const { return m_descriptor; }
    bool close() { return calls().close(std::exchange(m_descriptor, -1)) == 0; }

private:
    int m_descriptor;
};

/// Some file systems keep names safe by themselves and know no such call for folders; that is no failure.
bool syncFolderAt(const QByteArray& folder)
{
    OpenFile file(folder, O_RDONLY | O_DIRECTORY);
    return file.descriptor() >= 0 &&
           (calls().sync(file.descriptor()) == 0 || errno == EINVAL || errno == ENOSYS || errno == ENOTSUP);
}

} // namespace

VaultFolder::VaultFolder(const QString& folder, qint64 limit)
    : m_folder(QDir::cleanPath(folder))
    , m_limit(limit)
{
}

QByteArray VaultFolder::folderFor(const QString& path) const
{
    const QByteArray digest = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256);
    return QFile::encodeName(m_folder) + '/' + digest.toHex();
}

QString VaultFolder::fileFor(const Key& key) const
{
    const QString name = QString::fromLatin1(key.soundDigest.toHex()) + suffix();
    return QFile::decodeName(folderFor(key.path)) + u'/' + name;
}

bool VaultFolder::holds(const QString& path) const
{
    return !QDir(QFile::decodeName(folderFor(path))).isEmpty(QDir::Files);
}

void VaultFolder::put(const Key& key, QByteArrayView bytes)
{
    const QString& path = key.path;
    if (bytes.size() > m_limit)
        throw FileError(FileError::Case::fileWriteOutOfSpace, path);
    makeFolder(path);
    const QByteArray target = QFile::encodeName(fileFor(key));
    const QByteArray inner = folderFor(path);
    const QByteArray temporary = QFile::encodeName(m_folder) + "/.velmora-" +
                                 QUuid::createUuid().toByteArray(QUuid::WithoutBraces).toUpper() + ".tmp";
    try {
        writeBeside(temporary, bytes, path);
        if (!moveInto(inner, temporary, target))
            throw FileError::fromWriting(errno, path);
    } catch (const FileError&) {
        calls().remove(temporary);
        throw;
    }
    try {
        syncFolders(inner, path);
    } catch (const FileError&) {
        removeEntry(target); // else the next look would take it for a safe one
        throw;
    }
    const std::lock_guard lock(m_mutex);
    readIndex();
    m_index[target] = {bytes.size(), now()};
    makeRoom(target);
}

/// Another instance may just have removed the folder, since its last entry had to go. \return false with errno.
bool VaultFolder::moveInto(const QByteArray& folder, const QByteArray& temporary, const QByteArray& target) const
{
    constexpr int kTries = 10; // chosen: such a race is not lost so often
    for (int attempt = 1;; ++attempt) {
        if (::mkdir(folder.constData(), S_IRWXU) != 0 && errno != EEXIST)
            return false;
        if (calls().rename(temporary, target) == 0)
            return true;
        const int error = errno;
        ::rmdir(folder.constData()); // if it is empty
        errno = error;
        if (error != ENOENT || attempt == kTries)
            return false;
    }
}

/// With the folder of its path, if that was the last one there. \return false with errno.
bool VaultFolder::removeEntry(const QByteArray& file) const
{
    const bool isGone = calls().remove(file) == 0 || errno == ENOENT;
    const int error = errno;
    const QByteArray folder = file.left(file.lastIndexOf('/'));
    if (isGone && folder != QFile::encodeName(m_folder))
        ::rmdir(folder.constData());
    errno = error;
    return isGone;
}

/// Each new folder is made durable in the one above it.
void VaultFolder::makeFolder(const QString& path) const
{
    std::vector<QByteArray> missing;
    struct stat status = {};
    for (QByteArray folder = QFile::encodeName(m_folder); folder.size() > 1; folder.truncate(folder.lastIndexOf('/'))) {
        if (::stat(folder.constData(), &status) == 0)
            break;
        missing.push_back(folder);
    }
    for (auto folder = missing.rbegin(); folder != missing.rend(); ++folder) {
        const bool isThere = ::mkdir(folder->constData(), S_IRWXU) == 0 || errno == EEXIST;
        if (!isThere || !syncFolderAt(folder->left(folder->lastIndexOf('/') + 1)))
            throw FileError::fromWriting(errno, path);
    }
}

void VaultFolder::writeBeside(const QByteArray& temporary, QByteArrayView bytes, const QString& path) const
{
    OpenFile file(temporary, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (file.descriptor() < 0)
        throw FileError::fromWriting(errno, path);
    for (qint64 offset = 0; offset < bytes.size();) {
        const ssize_t count =
            calls().write(file.descriptor(), bytes.data() + offset, static_cast<size_t>(bytes.size() - offset), offset);
        if (count == 0)
            errno = EIO;
        if (count <= 0)
            throw FileError::fromWriting(errno, path);
        offset += count;
    }
    if (calls().sync(file.descriptor()) != 0 || !file.close())
        throw FileError::fromWriting(errno, path);
}

void VaultFolder::syncFolders(const QByteArray& inner, const QString& path) const
{
    if (!syncFolderAt(inner) || !syncFolderAt(QFile::encodeName(m_folder)))
        throw FileError::fromWriting(errno, path);
}

std::optional<VaultFolder::Found> VaultFolder::read(const Key& key, qint64 count) const
{
    const QString& path = key.path;
    OpenFile file(QFile::encodeName(fileFor(key)), O_RDONLY | O_NONBLOCK);
    if (file.descriptor() < 0 && errno == ENOENT)
        return std::nullopt;
    struct stat status = {};
    if (file.descriptor() < 0 || calls().status(file.descriptor(), &status) != 0)
        throw FileError::fromReading(errno, path);
    if (!S_ISREG(status.st_mode))
        throw FileError(FileError::Case::fileReadCorruptFile, path);
    Found found{QByteArray(std::min<qint64>(count, status.st_size), Qt::Uninitialized), status.st_size};
    for (qint64 offset = 0; offset < found.bytes.size();) {
        const ssize_t more = calls().read(file.descriptor(), found.bytes.data() + offset,
                                          static_cast<size_t>(found.bytes.size() - offset), offset);
        if (more < 0)
            throw FileError::fromReading(errno, path);
        if (more == 0)
            throw FileError(FileError::Case::fileReadCorruptFile, path);
        offset += more;
    }
    return found;
}

/// Once; and again before entries go, since another instance may have put some there. What a stop has left of entries
/// that never came to their place goes after an hour.
void VaultFolder::readIndex()
{
    if (m_isIndexed)
        return;
    constexpr qint64 kLeftOver = std::chrono::nanoseconds(std::chrono::hours(1)).count();
    constexpr qint64 kNanoseconds = 1'000'000'000;
    const std::map<QByteArray, Known> before = std::exchange(m_index, {});
    const QDir::Filters filters = QDir::Files | QDir::Hidden | QDir::NoSymLinks;
    QDirIterator entries(m_folder, filters, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QByteArray file = QFile::encodeName(entries.next());
        struct stat status = {};
        if (::lstat(file.constData(), &status) != 0)
            continue;
        const auto known = before.find(file);
        // The file system's clock is coarser than ours, and the order of two entries may hang on that.
        const qint64 knownTime = known == before.end() ? 0 : known->second.time;
        const qint64 time = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec;
        if (entries.fileName().endsWith(suffix()))
            m_index[file] = {status.st_size, std::max(time, knownTime)};
        else if (TemporaryName::matches(file.sliced(file.lastIndexOf('/') + 1)) && now() - time > kLeftOver)
            calls().remove(file);
    }
    m_isIndexed = true;
}

void VaultFolder::makeRoom(const QByteArray& made)
{
    const auto total = [this] {
        return std::accumulate(m_index.begin(), m_index.end(), qint64(0),
                               [](qint64 sum, const auto& entry) { return sum + entry.second.size; });
    };
    if (total() <= m_limit)
        return;
    m_isIndexed = false;
    readIndex();
    std::vector<std::pair<qint64, QByteArray>> oldest;
    for (const auto& [file, known] : m_index)
        oldest.emplace_back(known.time, file);
    std::ranges::sort(oldest);
    qint64 size = total();
    for (const auto& [time, file] : oldest) {
        if (size <= m_limit)
            break;
        if (file == made || !removeEntry(file))
            continue;
        size -= m_index[file].size;
        m_index.erase(file);
    }
}
