#include "tags/keeping/Id3v2Editor.h"
#include "tags/keeping/KeepingPlanners.h"
#include "tags/keeping/TrailingTags.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace KeepingPlanners {

namespace {

/// Another container under a wrong name has tags of its own, which a reader would go on to show.
void rejectOtherContainer(const RewriteSource& source, qint64 soundOffset)
{
    const QByteArray head = source.read(soundOffset, std::min<qint64>(8, source.size() - soundOffset));
    static constexpr const char* kMarks[] = {"fLaC", "RIFF", "RF64", "FORM", "OggS"};
    const bool isOther = std::ranges::any_of(kMarks, [&](const char* mark) { return head.startsWith(mark); });
    if (isOther || head.mid(4) == "ftyp")
        throw WriteError(WriteError::Case::unsupportedFormat, QStringLiteral("mp3"));
}

} // namespace

RewritePlan planMp3(const RewriteSource& source, const KeepEdits& edits)
{
    const Id3v2Editor::Edited front =
        Id3v2Editor::edited(source.range(0, source.size()), edits, News::Add, source.path());
    rejectOtherContainer(source, front.oldSize);
    RewritePlan plan;
    plan.add(front.oldSize > 0 ? front.tags : Id3v2Editor::newTag(edits, source.path()));
    const TrailingTags trailing(source, front.oldSize);
    plan.keep(front.oldSize, trailing.begin() - front.oldSize);
    plan.markSound(front.oldSize, trailing.begin() - front.oldSize);
    trailing.addEdited(plan, edits);
    return plan;
}

} // namespace KeepingPlanners
