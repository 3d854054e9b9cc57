#pragma once

#include "tags/writing/ChunkForm.h"
#include "tags/writing/RewriteSource.h"

#include <algorithm>

/// Sound that an empty "data" chunk hides: recorders write its size at the end, and one that crashed never came to it.
/// What follows is taken for chunks then, and a new one behind it would be played.
class LostSound {
public:
    /// Told every chunk in order. FileError (fileReadCorruptFile) where sound begins.
    void rejectAt(const FileChunk& chunk, const RewriteSource& source)
    {
        const bool isPrintable = std::ranges::all_of(chunk.id, [](char c) { return c >= ' ' && c <= '~'; });
        if (m_isBehindEmptyData && !isPrintable)
            source.failCorrupt();
        m_isBehindEmptyData = chunk.id == "data" && chunk.bodySize == 0;
    }

private:
    bool m_isBehindEmptyData = false;
};
