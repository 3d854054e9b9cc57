#pragma once

#include "tags/bytes/ByteSource.h"

#include <QString>

#include <functional>

/// The old file as the writers' planners see it: what is read is there, or the file is broken.
class RewriteSource {
public:
    /// \param path only for errors.
    RewriteSource(ByteSource& bytes, const QString& path);

    qint64 size() const { return m_size; }
    /// Exactly \p count bytes; fewer is FileError (fileReadCorruptFile). Never allocates more than the file holds.
    QByteArray read(qint64 offset, qint64 count) const;
    /// The stretch as the tag formats' readers take it; it lies within the file.
    ByteRange range(qint64 offset, qint64 length) const { return {&m_bytes, offset, offset + length}; }
    /// Whether \p needle occurs within the stretch, which is read in pieces. An empty one occurs nowhere.
    bool contains(const QByteArray& needle, qint64 offset, qint64 length) const;
    /// Throws FileError (fileReadCorruptFile) unless a stretch that begins at \p offset and has \p length bytes lies
    /// before \p end.
    void requireWithin(qint64 end, qint64 offset, qint64 length) const;
    /// Throws FileError (fileReadCorruptFile) with the path.
    [[noreturn]] void failCorrupt() const;
    /// As given, for errors.
    const QString& path() const { return m_path; }

private:
    ByteSource& m_bytes;
    const qint64 m_size;
    const QString m_path;
};

/// What another object reads from a file as a source of bytes, without any limit: a file that is changed is read to
/// its end.
class SourceBytes final : public ByteSource {
public:
    /// Gives exactly the bytes that are asked for, or throws.
    using Read = std::function<QByteArray(qint64 offset, qint64 count)>;

    /// \param size bytes of the file. \param read kept, with what it captures, as long as this object.
    SourceBytes(qint64 size, Read read);
    qint64 size() const override { return m_size; }

protected:
    qint64 fill(qint64 offset, std::span<std::byte> target) override;

private:
    const qint64 m_size;
    const Read m_read;
};
