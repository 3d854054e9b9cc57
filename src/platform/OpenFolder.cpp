#include "platform/OpenFolder.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

/// Opens a folder in steps that the system takes, each relative to the one before. \return -1 on failure, errno set.
int openInSteps(const QByteArray& path)
{
    int folder = -1;
    qsizetype begin = 0;
    while (begin < path.size()) {
        qsizetype end = path.size();
        if (end - begin >= PATH_MAX) {
            end = path.lastIndexOf('/', begin + PATH_MAX - 1);
            if (end <= begin) {
                errno = ENAMETOOLONG;
                end = -1;
            }
        }
        const int next =
            end < 0 ? -1
                    : openat(folder < 0 ? AT_FDCWD : folder, path.sliced(begin, end - begin).constData(), kFolderFlags);
        const int error = errno;
        if (folder >= 0)
            close(folder);
        if (next < 0) {
            errno = error;
            return -1;
        }
        folder = next;
        begin = end + 1; // the slash would make the rest absolute
    }
    return folder;
}

} // namespace

OpenFolder::OpenFolder(const QByteArray& path)
{
    const int folder = path.size() < PATH_MAX ? open(path.constData(), kFolderFlags) : openInSteps(path);
    struct stat facts;
    if (folder >= 0 && fstat(folder, &facts) == 0) {
        m_identity = {facts.st_dev, facts.st_ino};
        m_stream = fdopendir(folder);
    }
    if (m_stream)
        return;
    m_error = errno;
    if (folder >= 0)
        close(folder);
}

OpenFolder::~OpenFolder()
{
    if (m_stream)
        closedir(m_stream);
}

OpenFolder::OpenFolder(OpenFolder&& other) noexcept
    : m_stream(std::exchange(other.m_stream, nullptr))
    , m_error(other.m_error)
    , m_identity(other.m_identity)
{
}

OpenFolder& OpenFolder::operator=(OpenFolder&& other) noexcept
{
    std::swap(m_stream, other.m_stream);
    m_error = other.m_error;
    m_identity = other.m_identity;
    return *this;
}

const dirent* OpenFolder::next()
{
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(m_stream);
        if (!entry) {
            m_error = errno;
            return nullptr;
        }
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            return entry;
    }
}

namespace FileAt {

std::optional<struct stat> facts(int folder, const char* name)
{
    struct stat result;
    if (fstatat(folder, name, &result, 0) != 0)
        return std::nullopt;
    return result;
}

QByteArray head(int folder, const char* name, qsizetype size)
{
    // Not blocking, in case that the name stands for a FIFO by now.
    const int file = openat(folder, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0)
        return {};
    QByteArray bytes(size, '\0');
    struct stat opened;
    const bool isRegular = fstat(file, &opened) == 0 && S_ISREG(opened.st_mode);
    const ssize_t count = isRegular ? read(file, bytes.data(), static_cast<size_t>(size)) : 0;
    close(file);
    bytes.truncate(count > 0 ? count : 0);
    return bytes;
}

} // namespace FileAt
