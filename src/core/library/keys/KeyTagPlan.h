#pragma once

#include "core/library/tagwriting/TagSaver.h"
#include "core/library/workspace/TrackList.h"
#include "core/model/MusicalKey.h"

#include <QHash>
#include <QSet>
#include <QUrl>

#include <optional>

/// How determined keys come into files and rows: pure functions of the lists.
namespace KeyTagPlan {

/// The Camelot codes to be written, by file.
using Codes = QHash<QUrl, QString>;

/// What is to be written: the codes, and the rows through which their files are reached.
struct Plan {
    Codes codes;
    QList<TagSaver::Item> items; ///< one per file
};

/// What is written for those of the rows that have a result. \param rows of the key section. \param tracks the main
/// list, whose rows a save may have to fill in.
Plan make(const TrackList& rows, const TrackList& tracks, const QHash<TrackID, MusicalKeyAnalysis>& analyses,
          const QSet<TrackID>& ids);

/// One file's save with a key. \param row of the file, as it was. \param tracks the main list, as above.
TagSaver::Item itemOf(const Track& row, const TrackList& tracks, const QString& code);

/// The rows of a list with the codes of their files; nothing if none changes. Rows of the side lists that were not read
/// yet are left out: their read brings all tags.
std::optional<QList<Track>> withCodes(const TrackList& rows, const Codes& codes, Track::MetadataDestination list);

/// The keys that rows had by file, and which of them were edits that their files did not hold.
struct Former {
    Codes keys;
    QSet<QUrl> edited;
};

/// The keys of the rows that withCodes() would change, as they are before it.
Former present(const TrackList& rows, const Codes& codes);

/// The rows of a list with their former keys, where they still have the codes; nothing if none changes. \param files
/// whose write failed.
std::optional<QList<Track>> takenBack(const TrackList& rows, const Codes& codes, const Former& former,
                                      const QSet<QUrl>& files);

/// The rows that withCodes() would change in the main list.
QSet<TrackID> differing(const TrackList& tracks, const Codes& codes);

} // namespace KeyTagPlan
