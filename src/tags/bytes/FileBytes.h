#pragma once

#include "tags/bytes/ByteSource.h"

#include <QUrl>

#include <memory>
#include <vector>

/// A regular file, opened once and read through a window of 16 KiB, since tag readers ask for a few bytes at a time.
/// A file that shrinks meanwhile gives fewer bytes than size() says.
class FileBytes final : public ByteSource {
public:
    /// Null if there is no such file, it cannot be opened, or it is no regular file; FIFOs, devices and sockets are
    /// not even opened, because that alone may block or act.
    static std::unique_ptr<FileBytes> open(const QUrl& url, const ReadLimits& limits = ReadLimits());
    ~FileBytes() override;
    qint64 size() const override { return m_size; }

protected:
    qint64 fill(qint64 offset, std::span<std::byte> target) override;

private:
    FileBytes(int descriptor, qint64 size, const ReadLimits& limits);
    qint64 readDirectly(qint64 offset, std::span<std::byte> target);
    bool moveWindow(qint64 offset, qint64 count);

    const int m_descriptor;
    const qint64 m_size;
    std::vector<std::byte> m_window;
    qint64 m_windowOffset = 0;
    qint64 m_windowFill = 0;
};
