#include "support/SortRows.h"

#include "core/library/order/TrackSorter.h"
#include "platform/Localization.h"

#include <gtest/gtest.h>

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

std::string order(const Rows& rows, Field field, Direction direction)
{
    return SortRows::titles(TrackSorter::sorted(rows.tracks, field, direction, rows.estimates, rows.popularity));
}

class TrackSorterTest : public testing::Test {
protected:
    TrackSorterTest() { VelmoraLocalization::setLanguage(AppLanguage::Russian); }
};

} // namespace

TEST_F(TrackSorterTest, TheNumberInATempoText)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const std::pair<const char*, std::optional<double>> cases[] = {
        {"128", 128},   {"128,5", 128.5}, {"128.5 BPM", 128.5}, {"ca. 128", 128}, {"~", {}},
        {"", {}},       {"128.", 128},    {",5", 0.5},          {".", {}},        {"1.2.3 and 90", 90},
        {"-128", 128},  {"1e3", 1},       {"128/64", 128},      {"½ 100", 100},   {"١٢٨", {}},
        {"1𝟐8", {}},    {"😀77", 77},      {"128½", {}}, // one piece, and no number
        {"𝟏𝟐𝟖x99", 99},                                 // digits beyond the basic plane are numbers too
    };
    EXPECT_EQ(TrackSorter::bpmNumber(QString(400, u'9')), infinity);
    EXPECT_EQ(TrackSorter::bpmNumber(QStringLiteral("0.") + QString(400, u'0') + u'1'), 0);
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(TrackSorter::bpmNumber(QString::fromUtf8(text)), expected) << text;
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
    const struct {
        const char* name;
        Field field;
        std::vector<SortRow> rows;
        const char* ascending;
        const char* descending;
    } cases[] = {
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
    for (const auto& test : cases) {
        const Rows given = rows(test.rows);
        EXPECT_EQ(order(given, test.field, Direction::Ascending), test.ascending) << test.name;
        EXPECT_EQ(order(given, test.field, Direction::Descending), test.descending) << test.name;
    }
}

TEST_F(TrackSorterTest, ManyEqualRowsKeepTheirOrder)
{
    QList<Track> tracks;
    for (int count = 0; count < 100; ++count)
        tracks.append(SortRows::track({.title = "a", .genre = "House", .bpm = count % 2 ? "128" : "128.0"}));
    for (const Direction direction : {Direction::Ascending, Direction::Descending})
        EXPECT_TRUE(std::ranges::equal(TrackSorter::sorted(tracks, Field::BPM, direction, {}, {}), tracks, {},
                                       &Track::id, &Track::id));
}

TEST_F(TrackSorterTest, ATitleThatIsMissingSortsByTheFileName)
{
    const QList<Track> tracks{SortRows::track({"c"}), SortRows::track({""}, QStringLiteral("/m/b.x.mp3"))};
    EXPECT_EQ(SortRows::titles(TrackSorter::sorted(tracks, Field::Name, Direction::Ascending, {}, {})), "b.x c");
}
