#pragma once

#include <QByteArray>
#include <QString>

#include <span>
#include <sys/stat.h>

/// A file that is going to be changed or looked through, open for reading. Links are followed. Failures are FileError.
/// Thread: one at a time; blocks.
class SourceFile {
public:
    /// Regular files only.
    explicit SourceFile(const QString& path);
    ~SourceFile();
    SourceFile(const SourceFile&) = delete;
    SourceFile& operator=(const SourceFile&) = delete;

    /// As given, for messages.
    const QString& path() const { return m_path; }
    /// Without links, in the form of the system.
    const QByteArray& target() const { return m_target; }
    /// Open for reading as long as this object lives, which closes it.
    int descriptor() const { return m_descriptor; }
    /// Bytes when it was opened.
    qint64 size() const { return m_size; }
    /// Exactly \p count bytes; fewer is fileReadCorruptFile. Never allocates more than the file holds.
    QByteArray read(qint64 offset, qint64 count) const;
    /// The same into given space.
    void readInto(qint64 offset, std::span<char> target) const;

    /// Whether the name still leads to this file, and it has not been written into since it was opened. A file that is
    /// gone is FileError.
    bool isUnchanged() const;

private:
    void measure();

    const QString m_path;
    QByteArray m_target;
    int m_descriptor = -1;
    qint64 m_size = 0;
    struct stat m_status = {};
};
