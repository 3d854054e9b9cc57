#pragma once

#include "core/library/order/PlaylistBase.h"
#include "core/library/session/FilePresence.h"
#include "core/library/session/SessionRecord.h"
#include "core/library/workspace/TrackList.h"
#include "core/model/ConversionItem.h"
#include "platform/Localization.h"

#include <functional>
#include <optional>

class WorkspaceSessionStorage;

/// The part of a restore that runs beside the main thread: from the files to values that only have to be put in place.
namespace WorkspaceLoad {

/// What a section's selection was.
struct SectionSelection {
    QSet<TrackID> ids;
    std::optional<TrackID> focusedID;
};

/// A session that is ready to be shown.
struct Result {
    SessionRecord session; ///< without entries whose files are gone, all maps reduced to the tracks there are
    bool isPendingRestore = false;
    int leftOut = 0; ///< files of the session that are gone, each counted once

    // Made here because making them from 100,000 rows takes the main thread too long.
    TrackList tracks; ///< session.tracks with their places
    PlaylistBase playlist;
    AppLanguage language = AppLanguage::Russian; ///< of the order of `playlist`
    QList<QUrl> waveformURLs;                    ///< of the first three lists
    QList<ConversionItem> conversionItems;
    QHash<QString, SectionSelection> selections; ///< by raw value of the section
};

/// Where the present files are asked for; empty for the file system.
using Presence = std::function<std::vector<bool>(const QList<QUrl>& urls)>;

/// Reads the pending session, else the session file, else the bytes of older versions, leaves out what is gone, and
/// prepares the lists. A session that leaves something out stays in a checkpoint that is kept for ever, and one that a
/// pending one takes the place of in an ordinary one. Nothing where nothing can be read. Thread: a worker; blocks.
std::optional<Result> load(WorkspaceSessionStorage& storage, const QByteArray& legacyBytes,
                           const Presence& presence = {});

/// Keeps the session file in a checkpoint before something else takes its place. Nothing for one without tracks or that
/// cannot be read. Thread: a worker; blocks.
void keepReplaced(WorkspaceSessionStorage& storage);
/// Takes out entries whose files are gone. \return how many different files those were.
int dropMissing(SessionRecord& record, const Presence& presence);
/// Brings the tempo tables into line with the tracks and with the files as they are now.
void reconcileTempo(SessionRecord& record);
/// The remembered selections, reduced to the rows that each section has.
QHash<QString, SectionSelection> selectionsOf(const SessionRecord& record);

} // namespace WorkspaceLoad
