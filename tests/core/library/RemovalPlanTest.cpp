#include "core/library/removal/RemovalPlan.h"

#include "platform/FileURL.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// A row of /music. \param marks "p" for the playlist, "f" for Favorites (and Covers), "c" for Covers.
Track row(const QString& name, const char* marks = "p")
{
    const QLatin1StringView in(marks);
    Track track = Track::unread(FileURL::fromPath(QStringLiteral("/music/") + name));
    track.setIsInPlaylist(in.contains(u'p'));
    track.setIsFavorite(in.contains(u'f'));
    track.setIsInCoverWorkspace(in.contains(u'f') || in.contains(u'c'));
    return track;
}

TrackList listOf(const QList<Track>& rows)
{
    TrackList list;
    list.assign(rows);
    return list;
}

/// The names in order; in capitals what is in the playlist.
QString shown(const QList<Track>& rows)
{
    QString names;
    for (const Track& track : rows) {
        const QString name = FileURL::lastPathComponent(track.url());
        names += track.isInPlaylist() ? name.toUpper() : name;
    }
    return names;
}

} // namespace

TEST(RemovalPlanTest, FavouritesStayAndAllOthersLeave)
{
    const QList<Track> rows{row(QStringLiteral("a")), row(QStringLiteral("b"), "pf"), row(QStringLiteral("c"), "pc"),
                            row(QStringLiteral("d"), "c"), row(QStringLiteral("e"), "f")};
    const struct {
        QList<int> chosen;
        const char* left;
        QList<int> places;
        QList<bool> flagOnly;
    } cases[] = {
        {{0}, "BCde", {0}, {false}},
        {{1}, "AbCde", {1}, {true}},
        {{2}, "ABde", {2}, {false}}, // Covers go with it
        {{3, 4}, "ABCde", {}, {}},   // not in the playlist
        {{4, 2, 1, 0, 3}, "bde", {0, 1, 2}, {false, true, false}},
        {{}, "ABCde", {}, {}},
    };
    for (const auto& each : cases) {
        QSet<TrackID> ids{Track(QUuid::createUuid(), rows[0].url()).id()}; // and one that is nowhere
        for (const int index : each.chosen)
            ids.insert(rows[index].id());
        const TrackList before = listOf(rows);
        const RemovalPlan::Cut cut = RemovalPlan::outOfPlaylist(before, ids);
        EXPECT_EQ(shown(cut.rows), QLatin1StringView(each.left));
        QList<int> places;
        QList<bool> flagOnly;
        for (const RemovedTrack& entry : cut.removed) {
            places.append(entry.originalIndex);
            flagOnly.append(entry.removedFromPlaylistOnly);
            EXPECT_TRUE(entry.track.isSameValueAs(rows[entry.originalIndex])) << "the full value is kept";
        }
        EXPECT_EQ(places, each.places);
        EXPECT_EQ(flagOnly, each.flagOnly);
        EXPECT_EQ(shown(RemovalPlan::putBack(listOf(cut.rows), cut.removed).rows), shown(rows));
    }
}

TEST(RemovalPlanTest, RowsComeBackToTheirPlacesInAChangedList)
{
    const Track a = row(QStringLiteral("a"));
    const Track b = row(QStringLiteral("b"));
    const Track c = row(QStringLiteral("c"));
    const Track loved = row(QStringLiteral("l"), "f");
    const Track again = row(QStringLiteral("b"), "c"); // the same file, dropped again
    const auto gone = [](const Track& track, int index, bool flagOnly = false) {
        RemovedTrack entry;
        entry.track = track;
        entry.originalIndex = index;
        entry.removedFromPlaylistOnly = flagOnly;
        return entry;
    };
    const struct {
        const char* name;
        QList<Track> present;
        QList<RemovedTrack> entries;
        const char* rows;
        QList<TrackID> ids;
    } cases[] = {
        {"between", {a, c}, {gone(b, 1)}, "ABC", {b.id()}},
        {"side by side", {c}, {gone(a, 0), gone(b, 1)}, "ABC", {a.id(), b.id()}},
        {"the list became shorter", {a}, {gone(b, 7), gone(c, 9)}, "ABC", {b.id(), c.id()}},
        {"the list is empty", {}, {gone(b, 3)}, "B", {b.id()}},
        {"a favourite gets its flag", {a, loved}, {gone(loved, 1, true)}, "AL", {loved.id()}},
        {"a favourite that is gone", {a}, {gone(loved, 1, true)}, "A", {}},
        {"a row that is there", {a, b}, {gone(b, 0)}, "AB", {b.id()}},
        {"its file has a new row", {a, again}, {gone(b, 0)}, "AB", {again.id()}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const RemovalPlan::Back back = RemovalPlan::putBack(listOf(each.present), each.entries);
        EXPECT_EQ(shown(back.rows), QLatin1StringView(each.rows));
        EXPECT_EQ(back.ids, each.ids);
    }
}

TEST(RemovalPlanTest, EveryRowOfATrashedFileGoes)
{
    const Track a = row(QStringLiteral("a"));
    const Track b = row(QStringLiteral("b"), "pf");
    const Track copy(QUuid::createUuid(), b.url());
    const TrashedItem item{"/music/b", "/trash/b", "/trash/b.trashinfo"};
    const auto cut = RemovalPlan::withoutFiles(RemovalPlan::List::Analysis, listOf({a, b, copy}), {{b.url(), {item}}});
    EXPECT_EQ(shown(cut.rows), QStringLiteral("A"));
    ASSERT_EQ(cut.removed.size(), 2);
    EXPECT_EQ(cut.removed[1].track.id(), copy.id());
    EXPECT_EQ(cut.removed[1].originalIndex, 2);
    EXPECT_EQ(cut.removed[1].trashed->trashedURL(), QUrl(QStringLiteral("file:///trash/b")));
    EXPECT_EQ(cut.removed[1].list, RemovalPlan::List::Analysis);
}

TEST(RemovalPlanTest, FilesAreCollectedOnceInListOrder)
{
    const Track a = row(QStringLiteral("a"));
    const Track b = row(QStringLiteral("b"));
    const Track copy(QUuid::createUuid(), a.url());
    const TrackList library = listOf({a, b});
    const TrackList analysis = listOf({copy});
    EXPECT_EQ(RemovalPlan::filesOf({&library, &analysis}, {b.id(), a.id(), copy.id()}),
              (QList<QUrl>{a.url(), b.url()}));
    EXPECT_EQ(RemovalPlan::filesOf({&analysis}, {b.id()}), QList<QUrl>());
}

// Steps of any size, taken and undone in any order of a stack, against inserting one row after another.
TEST(RemovalPlanTest, RandomStepsComeBackAsOneByOne)
{
    std::mt19937 random(20); // any seed
    const auto below = [&](int limit) { return std::uniform_int_distribution(0, limit - 1)(random); };
    QList<Track> all;
    for (int index = 0; index < 26; ++index)
        all.append(row(QString(QChar(u'a' + index)), below(3) == 0 ? "pf" : "p"));
    TrackList list = listOf(all);
    QList<QList<RemovedTrack>> history;
    for (int turn = 0; turn < 2000; ++turn) {
        if (below(2) == 0 && !history.isEmpty()) {
            const QList<RemovedTrack> step = history.takeLast();
            QList<Track> naive = list.rows();
            for (const RemovedTrack& entry : step) {
                if (!entry.removedFromPlaylistOnly) {
                    naive.insert(std::min<qsizetype>(entry.originalIndex, naive.size()), entry.track);
                    continue;
                }
                const auto place = std::ranges::find(naive, entry.track.id(), &Track::id);
                if (place != naive.end())
                    place->setIsInPlaylist(true);
            }
            const RemovalPlan::Back back = RemovalPlan::putBack(list, step);
            ASSERT_EQ(shown(back.rows), shown(naive));
            list.assign(back.rows);
        } else if (below(8) == 0 && !list.isEmpty()) { // a row leaves or moves without a step
            QList<Track> rows = list.rows();
            rows.move(below(list.size()), below(list.size()));
            list.assign(rows);
        } else {
            QSet<TrackID> ids;
            for (const Track& track : list) {
                if (below(4) == 0)
                    ids.insert(track.id());
            }
            const RemovalPlan::Cut cut = RemovalPlan::outOfPlaylist(list, ids);
            if (!cut.removed.isEmpty())
                history.append(cut.removed);
            list.assign(cut.rows);
        }
    }
    while (!history.isEmpty())
        list.assign(RemovalPlan::putBack(list, history.takeLast()).rows);
    EXPECT_EQ(list.size(), all.size()) << "nothing is lost, nothing doubled";
    EXPECT_TRUE(std::ranges::all_of(list, &Track::isInPlaylist));
}
