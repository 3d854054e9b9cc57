#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/Track.h"

#include <QHash>

class LibraryStore;
enum class TrackColumn;
struct FolderRun;

/// What a section shows, asked of the store. Thread: main.
namespace SectionRows {

/// The columns of the section's list.
const std::vector<TrackColumn>& columns(LibraryTab tab);
/// The rows in display order. The converter's jobs appear as tracks under the job's id. \param before what rows() gave
/// last, whose values are used again.
QList<Track> rows(LibraryStore& library, LibraryTab tab, const QList<Track>& before);
/// The folder headers between the rows: the playlist's folders, nothing elsewhere.
QList<FolderRun> folders(LibraryStore& library, LibraryTab tab);
/// What stands in the converter's column Status, by row.
QHash<TrackID, QString> statusTexts(const LibraryStore& library);
/// The line under the title: counts and total length.
QString facts(LibraryStore& library, LibraryTab tab, const QList<Track>& rows);
/// Rows of a section, for the sidebar.
qsizetype count(LibraryStore& library, LibraryTab tab);
/// Whether the section's selection is the workspace's. The converter and the duplicates keep their own.
bool sharesSelection(LibraryTab tab);
/// Whether the rows are tracks of the main list, which tags may be assigned to.
bool holdsLibraryTracks(LibraryTab tab);
/// What the command is called that takes rows out of the section, localised; empty where there is none.
QString removalText(LibraryTab tab);

} // namespace SectionRows
