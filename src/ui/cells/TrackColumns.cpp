#include "ui/cells/TrackColumns.h"

#include "ui/text/Texts.h"

#include <numeric>

namespace {

struct Spec {
    TrackColumn column;
    int minimum; // pixels
    int stretch; // share of what is left over
    int leaves;  // 1 leaves first when it gets narrow, 0 never
};

constexpr Spec kSpecs[]{
    {TrackColumn::Cover, 92, 0, 0},        {TrackColumn::Title, 184, 5, 0},   {TrackColumn::Waveform, 136, 0, 3},
    {TrackColumn::Album, 120, 2, 1},       {TrackColumn::Genre, 120, 2, 6},   {TrackColumn::BPM, 68, 0, 0},
    {TrackColumn::Key, 76, 0, 7},          {TrackColumn::Format, 72, 0, 4},   {TrackColumn::BitRate, 92, 0, 2},
    {TrackColumn::Length, 72, 0, 5},       {TrackColumn::Status, 160, 1, 0},  {TrackColumn::Heart, 60, 0, 0},
    {TrackColumn::KeyInTag, 84, 1, 3},     {TrackColumn::FoundKey, 72, 0, 0}, {TrackColumn::KeyConfidence, 128, 0, 2},
    {TrackColumn::KeyVariants, 144, 1, 1},
};

const Spec& specOf(TrackColumn column)
{
    return *std::find_if(std::begin(kSpecs), std::end(kSpecs), [&](const Spec& spec) { return spec.column == column; });
}

QString orUnset(const QString& text)
{
    return text.isEmpty() ? Texts::localized(QStringLiteral("Не указано")) : text;
}

} // namespace

namespace TrackColumns {

const std::vector<TrackColumn>& playlist()
{
    static const std::vector<TrackColumn> kColumns = [] {
        std::vector<TrackColumn> columns = full();
        columns.insert(std::ranges::find(columns, TrackColumn::Album), TrackColumn::Waveform);
        return columns;
    }();
    return kColumns;
}

const std::vector<TrackColumn>& full()
{
    static const std::vector<TrackColumn> kColumns{
        TrackColumn::Cover, TrackColumn::Title,  TrackColumn::Album,   TrackColumn::Genre,  TrackColumn::BPM,
        TrackColumn::Key,   TrackColumn::Format, TrackColumn::BitRate, TrackColumn::Length, TrackColumn::Heart};
    return kColumns;
}

const std::vector<TrackColumn>& brief()
{
    static const std::vector<TrackColumn> kColumns{TrackColumn::Cover,   TrackColumn::Title, TrackColumn::Genre,
                                                   TrackColumn::BPM,     TrackColumn::Key,   TrackColumn::Format,
                                                   TrackColumn::BitRate, TrackColumn::Length};
    return kColumns;
}

const std::vector<TrackColumn>& conversion()
{
    static const std::vector<TrackColumn> kColumns{TrackColumn::Cover, TrackColumn::Title, TrackColumn::Format,
                                                   TrackColumn::Status};
    return kColumns;
}

const std::vector<TrackColumn>& keys()
{
    static const std::vector<TrackColumn> kColumns{TrackColumn::Cover,         TrackColumn::Title,
                                                   TrackColumn::KeyInTag,      TrackColumn::FoundKey,
                                                   TrackColumn::KeyConfidence, TrackColumn::KeyVariants};
    return kColumns;
}

const std::vector<TrackColumn>& covers()
{
    static const std::vector<TrackColumn> kColumns{TrackColumn::Title};
    return kColumns;
}

QString heading(TrackColumn column)
{
    switch (column) {
    case TrackColumn::Cover:
    case TrackColumn::Heart:
        return {};
    case TrackColumn::Title:
        return Texts::localized(QStringLiteral("Трек"));
    case TrackColumn::Waveform:
        return Texts::localized(QStringLiteral("Волна"));
    case TrackColumn::Album:
        return Texts::localized(QStringLiteral("Альбом"));
    case TrackColumn::Genre:
        return Texts::localized(QStringLiteral("Жанр"));
    case TrackColumn::BPM:
        return Texts::localized(QStringLiteral("BPM"));
    case TrackColumn::Key:
        return Texts::localized(QStringLiteral("Ключ"));
    case TrackColumn::Format:
        return Texts::localized(QStringLiteral("Формат"));
    case TrackColumn::BitRate:
        return Texts::localized(QStringLiteral("Битрейт"));
    case TrackColumn::Length:
        return Texts::localized(QStringLiteral("Время"));
    case TrackColumn::Status:
        return Texts::localized(QStringLiteral("Состояние"));
    case TrackColumn::KeyInTag:
        return Texts::localized(QStringLiteral("В теге"));
    case TrackColumn::FoundKey:
        return Texts::localized(QStringLiteral("Код"));
    case TrackColumn::KeyConfidence:
        return Texts::localized(QStringLiteral("Уверенность"));
    case TrackColumn::KeyVariants:
        return Texts::localized(QStringLiteral("Варианты"));
    }
    Q_UNREACHABLE();
}

QString spokenHeading(TrackColumn column)
{
    if (column == TrackColumn::Cover)
        return Texts::localized(QStringLiteral("Обложка"));
    if (column == TrackColumn::Heart)
        return Texts::localized(QStringLiteral("Избранное"));
    return heading(column);
}

bool isNumeric(TrackColumn column)
{
    return column == TrackColumn::BPM || column == TrackColumn::BitRate || column == TrackColumn::Length;
}

std::optional<TrackSortField> sortField(TrackColumn column)
{
    switch (column) {
    case TrackColumn::Title:
        return TrackSortField::Name;
    case TrackColumn::Genre:
        return TrackSortField::Genre;
    case TrackColumn::BPM:
        return TrackSortField::BPM;
    case TrackColumn::Format:
        return TrackSortField::Format;
    default:
        return std::nullopt;
    }
}

QString text(TrackColumn column, const Track& track)
{
    switch (column) {
    case TrackColumn::Title:
        return track.displayTitle();
    case TrackColumn::Album:
        return track.tags().album;
    case TrackColumn::Genre:
        return track.tags().genre;
    case TrackColumn::BPM:
        return track.tags().bpm.trimmed();
    case TrackColumn::Key:
        return track.tags().musicalKey.trimmed();
    case TrackColumn::Format:
        return track.format();
    case TrackColumn::BitRate:
        return track.bitRate() > 0 ? track.bitRateText() : QString();
    case TrackColumn::Length:
        return track.duration() > 0 ? Texts::length(track.duration()) : QString();
    case TrackColumn::Cover:
    case TrackColumn::Waveform:
    case TrackColumn::Status:
    case TrackColumn::Heart:
    case TrackColumn::KeyInTag:
    case TrackColumn::FoundKey:
    case TrackColumn::KeyConfidence:
    case TrackColumn::KeyVariants:
        return {};
    }
    Q_UNREACHABLE();
}

QString spokenText(TrackColumn column, const Track& track)
{
    if (column == TrackColumn::Title)
        return Texts::spoken(track);
    if (column == TrackColumn::Cover)
        return Texts::localized(track.artworkData().isNull() ? QStringLiteral("Без обложки")
                                                             : QStringLiteral("Есть обложка"));
    if (column == TrackColumn::Heart)
        return Texts::localized(track.isFavorite() ? QStringLiteral("В избранном") : QStringLiteral("Не в избранном"));
    if (column == TrackColumn::Waveform) // a picture that says nothing in words
        return heading(column);
    return orUnset(text(column, track));
}

std::vector<int> widths(const std::vector<TrackColumn>& columns, int available)
{
    std::vector<int> result;
    for (TrackColumn column : columns)
        result.push_back(specOf(column).minimum);
    int used = std::accumulate(result.begin(), result.end(), 0);
    for (int turn = 1; used > available && turn <= static_cast<int>(std::size(kSpecs)); ++turn) {
        for (size_t i = 0; i < columns.size(); ++i) {
            if (specOf(columns[i]).leaves == turn)
                used -= std::exchange(result[i], 0);
        }
    }
    int shares = 0;
    for (size_t i = 0; i < columns.size(); ++i)
        shares += result[i] > 0 ? specOf(columns[i]).stretch : 0;
    int left = std::max(0, available - used);
    for (size_t i = 0; i < columns.size() && shares > 0; ++i) {
        const int stretch = result[i] > 0 ? specOf(columns[i]).stretch : 0;
        const int extra = left * stretch / shares; // the last one takes what rounding left
        result[i] += extra;
        left -= extra;
        shares -= stretch;
    }
    return result;
}

} // namespace TrackColumns
