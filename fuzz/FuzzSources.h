#pragma once

#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <cstdlib>

/// What holds for every input; a breach is a finding.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// Calls \p use with the bytes as a file to be rewritten.
template <typename Use>
auto withSource(const QByteArray& bytes, const Use& use)
{
    SourceBytes source(bytes.size(), [&](qint64 offset, qint64 count) { return bytes.mid(offset, count); });
    return use(RewriteSource(source, {}));
}

/// \return whether \p work comes to its end; not where a writer or a reader refuses the file.
template <typename Work>
bool isTaken(const Work& work)
{
    try {
        work();
        return true;
    } catch (const FileError&) {
    } catch (const WriteError&) {
    }
    return false;
}
