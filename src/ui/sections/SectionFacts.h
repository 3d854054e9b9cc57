#pragma once

#include "core/model/Track.h"

class LibraryStore;

/// Lines of counts and total lengths for the headers of sections, in the language of the interface. Thread: main.
namespace SectionFacts {

/// Tracks and their length; \p more behind, whether there are any or not.
QString tracks(const QList<Track>& rows, const QString& more = {});
/// Tracks, folders and the length.
QString playlist(LibraryStore& library, const QList<Track>& rows);
/// Files and their length.
QString files(LibraryStore& library, const QList<Track>& rows);
/// Places to look through and files.
QString duplicates(LibraryStore& library, const QList<Track>& rows);
/// "12 файлов", localised.
QString fileCount(qint64 count);

} // namespace SectionFacts
