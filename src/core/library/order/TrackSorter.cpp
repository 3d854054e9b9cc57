#include "core/library/order/TrackSorter.h"

#include "core/library/order/LazySortKey.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>

namespace TrackSorter {

namespace {

/// The value of digits with at most one point among them; nothing for anything else.
std::optional<double> strictNumber(QStringView piece)
{
    QVarLengthArray<char, 32> digits;
    int points = 0;
    for (const QChar unit : piece) {
        const bool isPoint = unit == u'.' || unit == u',';
        points += isPoint ? 1 : 0;
        if (points > 1 || (!isPoint && (unit < u'0' || unit > u'9')))
            return std::nullopt;
        digits.append(isPoint ? '.' : char(unit.unicode()));
    }
    if (digits.size() == points)
        return std::nullopt;
    double value = 0;
    const auto [end, error] = std::from_chars(digits.cbegin(), digits.cend(), value, std::chars_format::fixed);
    if (error != std::errc::result_out_of_range)
        return value;
    const auto isWhole = std::any_of(digits.cbegin(), std::find(digits.cbegin(), digits.cend(), '.'),
                                     [](char digit) { return digit != '0'; });
    return isWhole ? std::numeric_limits<double>::infinity() : 0.0;
}

bool isPartOfNumber(char32_t letter)
{
    return letter == U'.' || letter == U',' || QChar::isNumber(letter);
}

/// The letter at a place and its length in units.
std::pair<char32_t, qsizetype> letterAt(QStringView text, qsizetype place)
{
    const QChar unit = text[place];
    if (unit.isHighSurrogate() && place + 1 < text.size() && text[place + 1].isLowSurrogate())
        return {QChar::surrogateToUcs4(unit, text[place + 1]), 2};
    return {unit.unicode(), 1};
}

/// One sort: the rows with what they are compared by.
class Sort {
public:
    Sort(std::span<const Track> tracks, TrackSortField field, TrackSortDirection direction, const Inputs& inputs)
        : m_field(field)
        , m_sign(direction == TrackSortDirection::Ascending ? 1 : -1)
    {
        m_rows.reserve(tracks.size());
        for (const Track& track : tracks)
            m_rows.push_back(row(track, inputs));
    }

    std::vector<int> order()
    {
        std::vector<int> order(m_rows.size());
        std::iota(order.begin(), order.end(), 0);
        std::ranges::stable_sort(
            order, [this](int left, int right) { return place(m_rows[size_t(left)], m_rows[size_t(right)]) < 0; });
        return order;
    }

private:
    struct Row {
        LazySortKey text; ///< genre or format
        LazySortKey name;
        std::optional<double> tempo;
        const TrackPopularitySortValue* popularity = nullptr;
    };

    Row row(const Track& track, const Inputs& inputs) const
    {
        QString text;
        if (m_field == TrackSortField::Genre)
            text = track.tags().genre.trimmed();
        else if (m_field == TrackSortField::Format)
            text = track.format();
        const bool usesName = m_field != TrackSortField::Rating;
        Row row{{text, &Collation::standardSortKey},
                {usesName ? track.displayTitle() : QString(), &Collation::standardSortKey},
                {},
                nullptr};
        if (m_field == TrackSortField::BPM || m_field == TrackSortField::Rating)
            row.tempo = bpmValue(track, inputs.estimatedBPMByTrackID);
        if (m_field == TrackSortField::Rating) {
            const auto known = inputs.popularityByTrackID.constFind(track.id());
            row.popularity = known == inputs.popularityByTrackID.constEnd() ? nullptr : &*known;
        }
        return row;
    }

    // All of these: negative if left comes first in the present direction, positive if right does.

    int place(Row& left, Row& right) const
    {
        switch (m_field) {
        case TrackSortField::Original:
            return 0;
        case TrackSortField::Name:
            return byName(left, right);
        case TrackSortField::Genre:
            if (left.text.isEmpty() != right.text.isEmpty())
                return left.text.isEmpty() ? 1 : -1;
            [[fallthrough]];
        case TrackSortField::Format:
            if (const int order = LazySortKey::compare(left.text, right.text))
                return m_sign * order;
            return byName(left, right);
        case TrackSortField::BPM:
            if (const int order = byTempo(left, right))
                return order;
            return byName(left, right);
        case TrackSortField::Rating:
            return byRating(left, right);
        }
        Q_UNREACHABLE();
    }

    int byName(Row& left, Row& right) const { return m_sign * LazySortKey::compare(left.name, right.name); }

    int byTempo(const Row& left, const Row& right) const
    {
        if (left.tempo.has_value() != right.tempo.has_value())
            return left.tempo ? -1 : 1;
        return directed(left.tempo.value_or(0), right.tempo.value_or(0));
    }

    int byRating(const Row& left, const Row& right) const
    {
        if (!left.popularity != !right.popularity)
            return left.popularity ? -1 : 1;
        if (left.popularity) {
            if (const int order = byPopularity(*left.popularity, *right.popularity))
                return order;
        }
        return byTempo(left, right);
    }

    int byPopularity(const TrackPopularitySortValue& left, const TrackPopularitySortValue& right) const
    {
        if (left.poolTier.has_value() != right.poolTier.has_value())
            return left.poolTier ? -1 : 1;
        if (left.poolTier)
            return directed(*left.poolTier, *right.poolTier);
        if (const int order = directed(left.tier, right.tier))
            return order;
        if (const int order = directed(int(left.isDirectSignal), int(right.isDirectSignal)))
            return order;
        return directed(rankValue(right), rankValue(left)); // the lower rank is the greater value
    }

    static qint64 rankValue(const TrackPopularitySortValue& value)
    {
        return value.bestChartRank ? qint64(*value.bestChartRank) : std::numeric_limits<qint64>::max();
    }

    template <typename Value>
    int directed(Value left, Value right) const
    {
        return left == right ? 0 : m_sign * (left < right ? -1 : 1);
    }

    TrackSortField m_field;
    int m_sign;
    std::vector<Row> m_rows;
};

} // namespace

std::optional<double> bpmNumber(const QString& text)
{
    const QStringView view(text);
    qsizetype begin = 0; // of the present piece
    for (qsizetype place = 0; place < view.size();) {
        const auto [letter, length] = letterAt(view, place);
        if (!isPartOfNumber(letter)) {
            if (const std::optional<double> value = strictNumber(view.sliced(begin, place - begin)))
                return value;
            begin = place + length;
        }
        place += length;
    }
    return strictNumber(view.sliced(begin));
}

std::optional<double> bpmValue(const Track& track, const EstimatedBPMByTrackID& estimatedBPMByTrackID)
{
    const auto estimate = estimatedBPMByTrackID.constFind(track.id());
    return bpmNumber(estimate == estimatedBPMByTrackID.constEnd() ? track.tags().bpm : *estimate);
}

std::vector<int> order(std::span<const Track> tracks, TrackSortField field, TrackSortDirection direction,
                       const Inputs& inputs)
{
    if (field != TrackSortField::Original && tracks.size() > 1)
        return Sort(tracks, field, direction, inputs).order();
    std::vector<int> same(tracks.size());
    std::iota(same.begin(), same.end(), 0);
    return same;
}

QList<Track> sorted(const QList<Track>& tracks, TrackSortField field, TrackSortDirection direction,
                    const EstimatedBPMByTrackID& estimatedBPMByTrackID,
                    const TrackPopularitySortValues& popularityByTrackID)
{
    if (field == TrackSortField::Original || tracks.size() < 2)
        return tracks;
    QList<Track> result;
    result.reserve(tracks.size());
    for (const int row : order(tracks, field, direction, {estimatedBPMByTrackID, popularityByTrackID}))
        result.append(tracks[row]);
    return result;
}

} // namespace TrackSorter
