#include "ui/sections/SectionFacts.h"

#include "core/library/LibraryStore.h"
#include "core/library/order/Order.h"
#include "core/library/workspace/Workspace.h"
#include "ui/text/Texts.h"

namespace {

QString totalLength(const QList<Track>& rows)
{
    double seconds = 0;
    for (const Track& track : rows)
        seconds += track.duration();
    return Texts::totalLength(seconds);
}

/// An empty list has no facts.
QString ofRows(const QList<Track>& rows, const QStringList& facts)
{
    return rows.isEmpty() ? QString() : Texts::facts(facts);
}

} // namespace

namespace SectionFacts {

QString fileCount(qint64 count)
{
    return VelmoraLocalization::plural(QStringLiteral("%n файлов"), count);
}

QString tracks(const QList<Track>& rows, const QString& more)
{
    return Texts::facts({ofRows(rows, {Texts::trackCount(rows.size()), totalLength(rows)}), more});
}

QString playlist(LibraryStore& library, const QList<Track>& rows)
{
    const qint64 folders = library.order().playlistFolderSections().size();
    return ofRows(rows, {Texts::trackCount(rows.size()),
                         VelmoraLocalization::plural(QStringLiteral("%n папок"), folders), totalLength(rows)});
}

QString files(LibraryStore&, const QList<Track>& rows)
{
    return ofRows(rows, {fileCount(rows.size()), totalLength(rows)});
}

QString duplicates(LibraryStore& library, const QList<Track>& rows)
{
    const qint64 roots = library.workspace().duplicateSearchRoots().size();
    if (roots == 0)
        return files(library, rows);
    return Texts::facts(
        {VelmoraLocalization::plural(QStringLiteral("%n мест для поиска"), roots), fileCount(rows.size())});
}

} // namespace SectionFacts
