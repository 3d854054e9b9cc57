#pragma once

#include "tags/keeping/KeepEdits.h"
#include "tags/writing/TrailerParts.h"

#include <vector>

class RewritePlan;
class RewriteSource;

/// The ID3v1 and APEv2 tags behind the sound of MPEG and FLAC files, found wherever the reader would find one: in any
/// number and order, with blocks of Lyrics3 between them.
class TrailingTags {
public:
    /// \param soundOffset nothing before it is looked at. FileError (fileReadCorruptFile) for a tag that begins there.
    TrailingTags(const RewriteSource& source, qint64 soundOffset);

    /// Where the first of them begins.
    qint64 begin() const { return m_begin; }

    using Part = TrailerPart;
    /// In the order of the file.
    const std::vector<Part>& parts() const { return m_parts; }

    /// Adds all of them: the new texts in ID3v1, APEv2 without the chosen fields, the rest as it is. FileError
    /// (fileReadCorruptFile) for a broken tag, (fileWriteOutOfSpace) for one that is too large to be held.
    void addEdited(RewritePlan& plan, const KeepEdits& edits) const;

private:
    QByteArray editedApe(const Part& part, const KeepEdits& edits) const;

    const RewriteSource& m_source;
    std::vector<Part> m_parts;
    qint64 m_begin = 0;
};
