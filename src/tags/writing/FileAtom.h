#pragma once

#include "tags/writing/RewriteSource.h"

/// An atom of the top level of an M4A file.
struct FileAtom {
    /// Four bytes.
    QByteArray type;
    qint64 offset = 0;
    qint64 headerSize = 0;
    qint64 size = 0;

    /// In bytes from the file's begin, as all of these.
    qint64 bodyOffset() const { return offset + headerSize; }
    qint64 bodySize() const { return size - headerSize; }
    qint64 end() const { return offset + size; }

    /// The atom that begins at \p offset. Errors: RewriteSource::failCorrupt() for one that does not fit the file.
    static FileAtom at(const RewriteSource& source, qint64 offset);
};
