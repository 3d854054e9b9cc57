#include "tags/bytes/FileBytes.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Chosen: a call costs about as much as copying this much, and what stands between pictures is smaller.
constexpr qint64 kWindowSize = 16 * 1024;
/// Chosen: between pieces the time is looked at, and a slow disk gives this much within a second.
constexpr std::size_t kPieceSize = 1024 * 1024;

} // namespace

std::unique_ptr<FileBytes> FileBytes::open(const QUrl& url, const ReadLimits& limits)
{
    const QByteArray path = QFile::encodeName(url.toLocalFile());
    struct stat status = {};
    if (path.isEmpty() || ::stat(path.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return nullptr;
    // The name may mean something else by now: O_NONBLOCK keeps a FIFO from holding us, and the kind is asked again.
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return nullptr;
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return nullptr;
    }
    return std::unique_ptr<FileBytes>(new FileBytes(descriptor, status.st_size, limits));
}

FileBytes::FileBytes(int descriptor, qint64 size, const ReadLimits& limits)
    : ByteSource(limits)
    , m_descriptor(descriptor)
    , m_size(size)
{
}

FileBytes::~FileBytes()
{
    ::close(m_descriptor);
}

qint64 FileBytes::readDirectly(qint64 offset, std::span<std::byte> target)
{
    std::size_t done = 0;
    while (done < target.size()) {
        if (isExpired()) {
            markCutShort();
            break;
        }
        const Clock::time_point begin = Clock::now();
        const ssize_t count = ::pread(m_descriptor, target.data() + done, std::min(target.size() - done, kPieceSize),
                                      offset + static_cast<qint64>(done));
        addWaiting(Clock::now() - begin);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            markCutShort();
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<qint64>(done);
}

bool FileBytes::moveWindow(qint64 offset, qint64 count)
{
    // Readers that walk backwards find most of the window in front of them, the others find it beginning there. A
    // quarter stays ahead for those that look forward from each place.
    const bool isBackwards = offset < m_windowOffset && offset + count >= m_windowOffset - kWindowSize;
    const qint64 begin = isBackwards ? std::max<qint64>(0, offset + count - kWindowSize / 4 * 3) : offset;
    const qint64 length = std::min(kWindowSize, m_size - begin);
    m_window.resize(static_cast<std::size_t>(std::min(kWindowSize, m_size)));
    m_windowOffset = begin;
    m_windowFill = readDirectly(begin, std::span(m_window).first(static_cast<std::size_t>(length)));
    return m_windowFill > 0;
}

qint64 FileBytes::fill(qint64 offset, std::span<std::byte> target)
{
    const auto count = static_cast<qint64>(target.size());
    const auto isInWindow = [&](qint64 wanted) {
        return offset >= m_windowOffset && offset + wanted <= m_windowOffset + m_windowFill;
    };
    if (!isInWindow(count)) {
        if (count >= kWindowSize / 2)
            return readDirectly(offset, target);
        if (!moveWindow(offset, count) || !isInWindow(1))
            return 0;
    }
    const qint64 available = std::min(count, m_windowOffset + m_windowFill - offset);
    std::memcpy(target.data(), m_window.data() + (offset - m_windowOffset), static_cast<std::size_t>(available));
    return available;
}
