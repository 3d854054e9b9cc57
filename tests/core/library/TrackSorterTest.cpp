#include "support/SortRows.h"

#include "core/library/order/TrackSorter.h"
#include "platform/Collation.h"
#include "platform/Localization.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Field = TrackSortField;
using Direction = TrackSortDirection;
using Popularity = TrackPopularitySortValue;

struct Rows {
    QList<Track> tracks;
    TrackPopularitySortValues popularity;
    EstimatedBPMByTrackID estimates;
};

Rows rows(const std::vector<SortRow>& told)
{
    Rows rows;
    for (const SortRow& row : told) {
        rows.tracks.append(SortRows::track(row));
        if (row.popularity)
            rows.popularity.insert(rows.tracks.last().id(), *row.popularity);
    }
    return rows;
}

QString order(const Rows& rows, Field field, Direction direction)
{
    return SortRows::titles(TrackSorter::sorted(rows.tracks, field, direction, rows.estimates, rows.popularity));
}

// The order by its definition: a comparison that knows the direction only where something comes last in both, and a
// sort by insertion.

int sign(int value)
{
    return (value > 0) - (value < 0);
}

std::optional<double> plainTempo(const Rows& rows, const Track& track)
{
    QString text = rows.estimates.value(track.id(), track.tags().bpm);
    text.replace(u',', u'.');
    static const QRegularExpression kOthers(QStringLiteral("[^\\p{N}.]+"));
    static const QRegularExpression kNumber(QStringLiteral("\\A(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)\\z"));
    for (const QString& piece : text.split(kOthers, Qt::SkipEmptyParts)) {
        if (kNumber.match(piece).hasMatch())
            return (u'0' + piece + (piece.contains(u'.') ? QStringLiteral("0") : QString())).toDouble();
    }
    return std::nullopt;
}

class PlainOrder {
public:
    PlainOrder(const Rows& rows, Field field, Direction direction)
        : m_rows(rows)
        , m_field(field)
        , m_forward(direction == Direction::Ascending ? -1 : 1)
    {
    }

    QList<Track> sorted() const
    {
        QList<Track> result;
        for (const Track& track : m_rows.tracks) {
            qsizetype place = result.size();
            while (place > 0 && compare(track, result[place - 1]) == m_forward)
                --place;
            result.insert(place, track);
        }
        return result;
    }

private:
    int leftLast() const { return -m_forward; }
    int rightLast() const { return m_forward; }

    int compare(const Track& l, const Track& r) const
    {
        const int names = sign(Collation::standardCompare(l.displayTitle(), r.displayTitle()));
        if (m_field == Field::Name)
            return names;
        if (m_field == Field::Format) {
            const int formats = sign(Collation::standardCompare(l.format(), r.format()));
            return formats != 0 ? formats : names;
        }
        if (m_field == Field::Genre) {
            const QString left = l.tags().genre.trimmed();
            const QString right = r.tags().genre.trimmed();
            if (left.isEmpty() && !right.isEmpty())
                return leftLast();
            if (!left.isEmpty() && right.isEmpty())
                return rightLast();
            const int genres = sign(Collation::standardCompare(left, right));
            return genres != 0 ? genres : names;
        }
        if (m_field == Field::Rating)
            return rating(l, r);
        const int tempos = tempo(l, r);
        return tempos != 0 ? tempos : names;
    }

    int tempo(const Track& l, const Track& r) const
    {
        const auto left = plainTempo(m_rows, l);
        const auto right = plainTempo(m_rows, r);
        if (!left && !right)
            return 0;
        if (!left)
            return leftLast();
        if (!right)
            return rightLast();
        return *left == *right ? 0 : *left < *right ? -1 : 1;
    }

    int rating(const Track& l, const Track& r) const
    {
        const bool hasLeft = m_rows.popularity.contains(l.id());
        const bool hasRight = m_rows.popularity.contains(r.id());
        if (!hasLeft && !hasRight)
            return tempo(l, r);
        if (!hasLeft)
            return leftLast();
        if (!hasRight)
            return rightLast();
        const Popularity left = m_rows.popularity[l.id()];
        const Popularity right = m_rows.popularity[r.id()];
        if (left.poolTier && !right.poolTier)
            return rightLast();
        if (!left.poolTier && right.poolTier)
            return leftLast();
        if (left.poolTier)
            return *left.poolTier == *right.poolTier ? tempo(l, r) : *left.poolTier > *right.poolTier ? 1 : -1;
        if (left == right)
            return tempo(l, r);
        if (left.tier != right.tier)
            return left.tier > right.tier ? 1 : -1;
        if (left.isDirectSignal != right.isDirectSignal)
            return left.isDirectSignal ? 1 : -1;
        if (!right.bestChartRank)
            return 1;
        return left.bestChartRank.value_or(std::numeric_limits<int>::max()) < *right.bestChartRank ? 1 : -1;
    }

    const Rows& m_rows;
    Field m_field;
    int m_forward;
};

class TrackSorterTest : public testing::Test {
protected:
    TrackSorterTest() { VelmoraLocalization::setLanguage(AppLanguage::Russian); }
};

} // namespace

TEST_F(TrackSorterTest, TheNumberInATempoText)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const QList<QPair<QString, std::optional<double>>> cases{
        {QStringLiteral("128"), 128},
        {QStringLiteral("128,5"), 128.5},
        {QStringLiteral("128.5 BPM"), 128.5},
        {QStringLiteral("ca. 128"), 128},
        {QStringLiteral("~"), std::nullopt},
        {QString(), std::nullopt},
        {QStringLiteral("128."), 128},
        {QStringLiteral(",5"), 0.5},
        {QStringLiteral("."), std::nullopt},
        {QStringLiteral("1.2.3 and 90"), 90},
        {QStringLiteral("-128"), 128},
        {QStringLiteral("1e3"), 1},
        {QStringLiteral("128/64"), 128},
        {QStringLiteral("½ 100"), 100},
        {QStringLiteral("128½"), std::nullopt}, // one piece, and no number
        {QStringLiteral("١٢٨"), std::nullopt},
        {QStringLiteral("𝟏𝟐𝟖x99"), 99}, // digits beyond the basic plane are numbers too
        {QStringLiteral("1𝟐8"), std::nullopt},
        {QStringLiteral("😀77"), 77},
        {QString(400, u'9'), infinity},
        {QStringLiteral("0.") + QString(400, u'0') + u'1', 0},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(TrackSorter::bpmNumber(text), expected) << qPrintable(text.left(40));
}

TEST_F(TrackSorterTest, AnEstimateStandsBeforeTheTag)
{
    const Track track = SortRows::track({.bpm = "100"});
    EXPECT_EQ(TrackSorter::bpmValue(track, {}), 100);
    EXPECT_EQ(TrackSorter::bpmValue(track, {{track.id(), QStringLiteral("124,5")}}), 124.5);
    EXPECT_EQ(TrackSorter::bpmValue(track, {{track.id(), QStringLiteral("?")}}), std::nullopt);
}

TEST_F(TrackSorterTest, EveryFieldInBothDirections)
{
    const auto rated = [](Popularity value) { return std::optional(value); };
    struct Case {
        const char* name;
        Field field;
        std::vector<SortRow> rows;
        const char* ascending;
        const char* descending;
    };
    const Case cases[] = {
        {"the order that is there", Field::Original, {{"b"}, {"a"}}, "b a", "b a"},
        {"names: numbers by value, case alone is no difference",
         Field::Name,
         {{"10"}, {"B"}, {"2"}, {"a"}, {"b"}},
         "2 10 a B b",
         "B b a 10 2"},
        {"genres: blanks do not count, none comes last, then names",
         Field::Genre,
         {{"x", " \n"}, {"b", "House"}, {"c", "Ambient\t"}, {"a", " House "}, {"w", ""}},
         "c a b w x",
         "b a c x w"},
        {"formats, then names, none is a value like others",
         Field::Format,
         {{"b", "", "MP3"}, {"c", "", "FLAC"}, {"a", "", "MP3"}, {"d", "", ""}},
         "d c a b",
         "b a c d"},
        {"tempos: none comes last, equal ones by name, which turns too",
         Field::BPM,
         {{"n", "", "", "~"}, {"b", "", "", "128"}, {"c", "", "", "99,5"}, {"a", "", "", "128.0"}, {"m"}},
         "c a b m n",
         "b a c n m"},
        {"equal rows keep their order",
         Field::BPM,
         {{"a", "", "", "100"}, {"A", "", "", "100"}, {"a", "", "", "100"}},
         "a A a",
         "a A a"},
        {"ratings: unknown last, the pool first, then tier, direct signal, chart",
         Field::Rating,
         {{"none"},
          {"low", "", "", "", rated({1, true, 1, {}})},
          {"pool1", "", "", "", rated({0, false, {}, 1})},
          {"indirect", "", "", "", rated({2, false, 3, {}})},
          {"rank9", "", "", "", rated({2, true, 9, {}})},
          {"unranked", "", "", "", rated({2, true, {}, {}})},
          {"pool2", "", "", "", rated({9, true, 1, 2})},
          {"rank2", "", "", "", rated({2, true, 2, {}})}},
         "pool1 pool2 low indirect unranked rank9 rank2 none",
         "pool2 pool1 rank2 rank9 unranked indirect low none"},
        {"equal ratings: by tempo, none last, never by name",
         Field::Rating,
         {{"d", "", "", "", rated({1, false, {}, {}})},
          {"c", "", "", "90", rated({1, false, {}, {}})},
          {"b", "", "", "120", rated({1, false, {}, {}})},
          {"a", "", "", "90", rated({1, false, {}, {}})},
          {"y", "", "", "80"},
          {"x", "", "", "85"}},
         "c a b d y x",
         "b c a d x y"},
        {"one pool tier: by tempo, whatever else is known",
         Field::Rating,
         {{"a", "", "", "90", rated({9, true, 1, 3})}, {"b", "", "", "120", rated({1, false, {}, 3})}},
         "a b",
         "b a"},
    };
    for (const Case& test : cases) {
        const Rows given = rows(test.rows);
        EXPECT_EQ(order(given, test.field, Direction::Ascending), QLatin1StringView(test.ascending)) << test.name;
        EXPECT_EQ(order(given, test.field, Direction::Descending), QLatin1StringView(test.descending)) << test.name;
    }
}

TEST_F(TrackSorterTest, ATitleThatIsMissingSortsByTheFileName)
{
    const QList<Track> tracks{SortRows::track({"c"}), SortRows::track({""}, QStringLiteral("/m/b.x.mp3"))};
    EXPECT_EQ(SortRows::titles(TrackSorter::sorted(tracks, Field::Name, Direction::Ascending, {}, {})),
              QStringLiteral("b.x c"));
}

TEST_F(TrackSorterTest, RandomRowsSortAsDefined)
{
    QRandomGenerator random(20261121);
    const std::vector<const char*> titles{"2", "10", "ё", "е", "Е", "a b", "ab", "", "Z"};
    const std::vector<const char*> genres{"", " ", "House", "house ", "2 Step", "10", "Хаус"};
    const std::vector<const char*> formats{"", "MP3", "mp3", "FLAC"};
    const std::vector<const char*> tempos{"", "128", "128,0", "99.5", "x", ".5", "1.2.3 7", "127 128"};
    const auto any = [&](const std::vector<const char*>& texts) {
        return texts[random.bounded(quint32(texts.size()))];
    };
    const auto maybe = [&](int below) {
        return random.bounded(2) == 0 ? std::nullopt : std::optional(int(random.bounded(below)));
    };
    for (int round = 0; round < 300; ++round) {
        std::vector<SortRow> told;
        for (int count = random.bounded(40); count > 0; --count) {
            SortRow row{any(titles), any(genres), any(formats), any(tempos), {}};
            if (random.bounded(4) != 0)
                row.popularity = Popularity{random.bounded(3), random.bounded(2) == 0, maybe(3),
                                            random.bounded(3) == 0 ? maybe(3) : std::nullopt};
            told.push_back(row);
        }
        Rows given = rows(told);
        for (const Track& track : std::as_const(given.tracks)) {
            if (random.bounded(5) == 0)
                given.estimates.insert(track.id(), QString::fromUtf8(any(tempos)));
        }
        for (const Field field : {Field::Name, Field::Genre, Field::Format, Field::BPM, Field::Rating}) {
            for (const Direction direction : {Direction::Ascending, Direction::Descending}) {
                const QList<Track> expected = PlainOrder(given, field, direction).sorted();
                const QList<Track> result =
                    TrackSorter::sorted(given.tracks, field, direction, given.estimates, given.popularity);
                ASSERT_TRUE(std::ranges::equal(result, expected, {}, &Track::id, &Track::id))
                    << qPrintable(rawValue(field)) << ' ' << qPrintable(rawValue(direction)) << " round " << round;
            }
        }
    }
}
