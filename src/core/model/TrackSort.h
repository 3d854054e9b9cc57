#pragma once

#include <QString>

#include <optional>

/// What a list of tracks is ordered by. Raw values are preference values: on disk, never change.
enum class TrackSortField { Original, Name, Genre, Format, BPM, Rating };
/// Which end of the order comes first.
enum class TrackSortDirection { Ascending, Descending };

/// The text that preferences keep.
QString rawValue(TrackSortField field);
QString rawValue(TrackSortDirection direction);
/// The way back from a preference; nothing for an unknown text.
std::optional<TrackSortField> trackSortFieldFromRawValue(const QString& raw);
std::optional<TrackSortDirection> trackSortDirectionFromRawValue(const QString& raw);

/// Localised title for menus, e.g. "По BPM".
QString title(TrackSortField field);
/// Symbol name of the direction's arrow.
QString icon(TrackSortDirection direction);
