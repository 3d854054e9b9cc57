#include "core/library/kinds/WorkKinds.h"

#include "support/Machine.h"

#include <gtest/gtest.h>

namespace {

/// "no", or how many at once, at which pace and priority.
QString cell(const WorkKind& kind, const Circumstances& now, qsizetype queued)
{
    const Allowance allowance = kind.allow(now, queued);
    if (allowance.atOnce == 0)
        return QStringLiteral("no");
    return QStringLiteral("%1%2%3").arg(
        QString::number(allowance.atOnce), allowance.pace == Pace::Gentle ? QStringLiteral(" gently") : QString(),
        allowance.priority == async::Priority::Utility ? QStringLiteral(", before others") : QString());
}

QString rule(const char* name, const WorkKind& kind)
{
    const auto milliseconds = [](async::Duration duration) {
        return QString::number(std::chrono::duration_cast<std::chrono::milliseconds>(duration).count());
    };
    return QStringLiteral("| %1 | %2 | %3 | %4 | %5 | %6 | %7 | %8 | %9 |\n")
        .arg(QString::fromLatin1(name), cell(kind, {}, 1), cell(kind, {}, 2), cell(kind, {.isPlaying = true}, 1),
             cell(kind, {.isScrolling = true}, 1), cell(kind, {.isReadingTags = true}, 1),
             cell(kind, {.isConstrained = true}, 1),
             QStringLiteral("%1 / %2").arg(milliseconds(kind.restAtPlaying), milliseconds(kind.restAfterPlaying)),
             kind.exclusive == 0 ? QStringLiteral("-") : QString::number(kind.exclusive));
}

TEST(WorkKinds, TheDocumentShowsTheRules)
{
    QString table;
    int rank = 0;
    for (const auto& [name, kind] : WorkKinds::all()) {
        EXPECT_GT(kind->rank, rank);
        rank = kind->rank;
        table += rule(name, *kind);
    }
    const QString document = QString::fromUtf8(readFile(QStringLiteral(VELMORA_SOURCE_DIR "/docs/work.md")));
    EXPECT_TRUE(document.contains(table)) << "it should read\n" << qPrintable(table);
}

} // namespace
