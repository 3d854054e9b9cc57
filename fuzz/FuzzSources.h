#pragma once

#include "tags/writing/RewriteSource.h"

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
