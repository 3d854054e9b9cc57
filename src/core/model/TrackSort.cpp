#include "core/model/TrackSort.h"

#include "platform/Localization.h"

#include <array>

namespace {

struct FieldRow {
    TrackSortField field;
    QLatin1StringView raw;
    QString title;
};

const std::array<FieldRow, 6>& fieldTable()
{
    static const std::array<FieldRow, 6> kTable{{
        {TrackSortField::Original, QLatin1StringView("original"), QStringLiteral("По умолчанию")},
        {TrackSortField::Name, QLatin1StringView("name"), QStringLiteral("По имени")},
        {TrackSortField::Genre, QLatin1StringView("genre"), QStringLiteral("По жанру")},
        {TrackSortField::Format, QLatin1StringView("format"), QStringLiteral("По типу")},
        {TrackSortField::BPM, QLatin1StringView("bpm"), QStringLiteral("По BPM")},
        {TrackSortField::Rating, QLatin1StringView("rating"), QStringLiteral("По рейтингу")},
    }};
    return kTable;
}

const FieldRow& rowOf(TrackSortField field)
{
    return fieldTable()[static_cast<size_t>(field)];
}

} // namespace

QString rawValue(TrackSortField field)
{
    return rowOf(field).raw;
}

QString rawValue(TrackSortDirection direction)
{
    return direction == TrackSortDirection::Ascending ? QStringLiteral("ascending") : QStringLiteral("descending");
}

std::optional<TrackSortField> trackSortFieldFromRawValue(const QString& raw)
{
    for (const FieldRow& row : fieldTable()) {
        if (row.raw == raw)
            return row.field;
    }
    return std::nullopt;
}

std::optional<TrackSortDirection> trackSortDirectionFromRawValue(const QString& raw)
{
    for (TrackSortDirection direction : {TrackSortDirection::Ascending, TrackSortDirection::Descending}) {
        if (rawValue(direction) == raw)
            return direction;
    }
    return std::nullopt;
}

QString title(TrackSortField field)
{
    return VelmoraLocalization::string(rowOf(field).title);
}

QString icon(TrackSortDirection direction)
{
    return direction == TrackSortDirection::Ascending ? QStringLiteral("arrow.up") : QStringLiteral("arrow.down");
}
