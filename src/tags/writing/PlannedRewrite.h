#pragma once

#include "platform/FileURL.h"
#include "tags/writing/FileRewrite.h"
#include "tags/writing/RewritePlan.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/SourceFile.h"

/// Planners put to work on a file.
namespace PlannedRewrite {

/// Plans the new file, writes it and swaps it in. Throws what the planner throws, FileError and WriteError; the
/// source is untouched then. \param makePlan from the source to a RewritePlan.
/// \param format that a difference of the sound is told with
template <typename MakePlan>
void rewrite(const QString& path, const QString& format, const MakePlan& makePlan)
{
    FileRewrite rewrite(path, FileURL::pathExtension(FileURL::fromPath(path)));
    SourceBytes bytes(rewrite.sourceSize(), [&](qint64 offset, qint64 count) { return rewrite.read(offset, count); });
    const RewritePlan plan = makePlan(RewriteSource(bytes, path));
    plan.writeTo(rewrite);
    rewrite.commit(plan.sound(), format);
}

/// Gives what \p find makes of the file as a RewriteSource. Throws FileError and what \p find throws.
template <typename Find>
auto look(const QString& path, const Find& find)
{
    const SourceFile file(path);
    SourceBytes bytes(file.size(), [&](qint64 offset, qint64 count) { return file.read(offset, count); });
    return find(RewriteSource(bytes, path));
}

} // namespace PlannedRewrite
