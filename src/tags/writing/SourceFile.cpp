#include "tags/writing/SourceFile.h"

#include "platform/files/FileCalls.h"
#include "tags/writing/WriteErrors.h"

#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include <fcntl.h>

namespace {

QByteArray withoutLinks(const QString& path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(QFile::encodeName(path).constData(), nullptr),
                                                               &std::free);
    if (!resolved)
        throw FileError::fromReading(errno, path);
    return QByteArray(resolved.get());
}

} // namespace

SourceFile::SourceFile(const QString& path)
    : m_path(path)
    , m_target(withoutLinks(path))
    // Without waiting: a FIFO would block until somebody writes.
    , m_descriptor(FileCalls::current().open(m_target, O_RDONLY | O_NONBLOCK))
{
    if (m_descriptor < 0)
        throw FileError::fromReading(errno, path);
    try {
        measure();
    } catch (...) {
        FileCalls::current().close(m_descriptor);
        throw;
    }
}

SourceFile::~SourceFile()
{
    FileCalls::current().close(m_descriptor);
}

void SourceFile::measure()
{
    if (FileCalls::current().status(m_descriptor, &m_status) != 0)
        throw FileError::fromReading(errno, m_path);
    if (!S_ISREG(m_status.st_mode))
        throw FileError(FileError::Case::fileReadCorruptFile, m_path);
    m_size = m_status.st_size;
}

bool SourceFile::isUnchanged() const
{
    FileCalls& calls = FileCalls::current();
    const int present = calls.open(m_target, O_RDONLY | O_NONBLOCK);
    if (present < 0)
        throw FileError::fromReading(errno, m_path);
    struct stat status = {};
    const bool isKnown = calls.status(present, &status) == 0;
    int error = errno;
    const bool isClosed = calls.close(present) == 0;
    if (isKnown)
        error = errno;
    if (!isKnown || !isClosed)
        throw FileError::fromReading(error, m_path);
    return status.st_dev == m_status.st_dev && status.st_ino == m_status.st_ino && status.st_size == m_status.st_size &&
           status.st_mtim.tv_sec == m_status.st_mtim.tv_sec && status.st_mtim.tv_nsec == m_status.st_mtim.tv_nsec;
}

QByteArray SourceFile::read(qint64 offset, qint64 count) const
{
    if (offset < 0 || count < 0 || offset > m_size || count > m_size - offset)
        throw FileError(FileError::Case::fileReadCorruptFile, m_path);
    QByteArray bytes(count, Qt::Uninitialized);
    readInto(offset, {bytes.data(), static_cast<size_t>(count)});
    return bytes;
}

void SourceFile::readInto(qint64 offset, std::span<char> target) const
{
    while (!target.empty()) {
        const ssize_t count = FileCalls::current().read(m_descriptor, target.data(), target.size(), offset);
        if (count < 0)
            throw FileError::fromReading(errno, m_path);
        if (count == 0)
            throw FileError(FileError::Case::fileReadCorruptFile, m_path);
        target = target.subspan(static_cast<size_t>(count));
        offset += count;
    }
}
