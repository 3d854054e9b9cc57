#pragma once

#include <QString>

#include <optional>

/// What a list of tracks is ordered by. Raw values are preference values: on disk, never change.
enum class TrackSortField { Original, Name, Genre, Format, BPM, Rating };
enum class TrackSortDirection { Ascending, Descending };

QString rawValue(TrackSortField field);
QString rawValue(TrackSortDirection direction);
std::optional<TrackSortField> trackSortFieldFromRawValue(const QString& raw);
std::optional<TrackSortDirection> trackSortDirectionFromRawValue(const QString& raw);

/// Localised title for menus, e.g. "По BPM".
QString title(TrackSortField field);
/// Symbol name of the direction's arrow.
QString icon(TrackSortDirection direction);
