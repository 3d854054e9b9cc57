#pragma once

#include "core/model/Track.h"

#include <QHash>

class LibraryStore;

/// The converter's jobs as rows of a list. Thread: main.
namespace ConversionRows {

/// One track per job, under the job's own id, with what the file's name tells. \param before what it gave last.
QList<Track> rows(LibraryStore& library, const QList<Track>& before);
/// The states of the jobs in words, localised, by row.
QHash<TrackID, QString> statusTexts(const LibraryStore& library);

} // namespace ConversionRows
