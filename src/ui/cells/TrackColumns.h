#pragma once

#include "core/model/Track.h"
#include "core/model/TrackSort.h"

#include <QString>

#include <optional>
#include <vector>

/// What a list of tracks can show, left to right.
enum class TrackColumn {
    Cover,
    Title,
    Waveform,
    Album,
    Genre,
    BPM,
    Key,
    Format,
    BitRate,
    Length,
    Status,
    Heart,
    KeyInTag,
    FoundKey,
    KeyConfidence,
    KeyVariants
};

namespace TrackColumns {

/// The columns of the playlist.
const std::vector<TrackColumn>& playlist();
/// The same without the waveform, of Favorites.
const std::vector<TrackColumn>& full();
/// The fewer ones of sections that keep a list of files.
const std::vector<TrackColumn>& brief();
/// The converter's: brief with the state of each job.
const std::vector<TrackColumn>& conversion();
/// The key section's: what the tag says and what was heard.
const std::vector<TrackColumn>& keys();
/// The grid of covers shows a cell per track.
const std::vector<TrackColumn>& covers();

/// Localised heading in small words; empty where a column needs none.
QString heading(TrackColumn column);
/// What a screen reader calls the column.
QString spokenHeading(TrackColumn column);
/// Whether its texts stand at the right, figures under figures.
bool isNumeric(TrackColumn column);
/// What a click on the heading sorts by; nothing for most columns.
std::optional<TrackSortField> sortField(TrackColumn column);
/// The text of a cell; empty where nothing is known or the cell is a picture.
QString text(TrackColumn column, const Track& track);
/// What a screen reader says of a cell; never empty.
QString spokenText(TrackColumn column, const Track& track);

/// The widths of columns that share \p available pixels: 0 for those that had to go. The album goes first; title,
/// tempo and heart never go. What is left over goes to the wordy columns.
/// \return as many as columns, in their order
std::vector<int> widths(const std::vector<TrackColumn>& columns, int available);

} // namespace TrackColumns
