#include "support/WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>

namespace {

QList<Track> madeUp(int count)
{
    QList<Track> rows;
    for (int i = 0; i < count; ++i)
        rows.append(Track::unread(FileURL::fromPath(QStringLiteral("/music/%1.mp3").arg(i))));
    return rows;
}

QString names(const QList<Track>& rows)
{
    QStringList names;
    for (const Track& track : rows)
        names += track.tags().title + (track.isFavorite() ? u'*' : u' ');
    return names.join(u',');
}

/// One random edit of a list, of the kinds that the workspace makes and of some that it does not.
QList<Track> edited(QList<Track> rows, QRandomGenerator& random, int& nextName)
{
    const auto place = [&] { return static_cast<int>(random.bounded(rows.size() + 1)); };
    const auto fresh = [&] {
        return Track::unread(FileURL::fromPath(QStringLiteral("/music/new%1.mp3").arg(nextName++)));
    };
    const auto shuffle = [&] { std::shuffle(rows.begin(), rows.end(), random); };
    const std::function<void()> edits[] = {
        [&] { // a run of new rows
            for (int i = place(), n = static_cast<int>(random.bounded(1, 9)); n > 0; --n)
                rows.insert(i, fresh());
        },
        [&] { // a run leaves
            if (!rows.isEmpty()) {
                const int first = static_cast<int>(random.bounded(rows.size()));
                rows.remove(first, random.bounded(rows.size() - first) + 1);
            }
        },
        [&] { rows.removeIf([&](const Track&) { return random.bounded(3) == 0; }); }, // scattered rows leave
        [&] { // scattered rows come, more runs than are worth single edits
            for (int n = 0; n < 130; ++n)
                rows.insert(place(), fresh());
        },
        shuffle,
        [&] { // everything at once
            rows.removeIf([&](const Track&) { return random.bounded(2) == 0; });
            shuffle();
            for (int n = 0; n < 5; ++n)
                rows.insert(place(), fresh());
        },
        [&] { rows.clear(); },
        [] {},
    };
    edits[random.bounded(int(std::size(edits)))]();
    for (Track& track : rows) { // values change as well
        if (random.bounded(6) == 0)
            track.setIsFavorite(!track.isFavorite());
    }
    return rows;
}

} // namespace

TEST(TrackListModelTest, FollowsAnyListWhateverHappenedToIt)
{
    for (quint32 seed = 1; seed <= 12; ++seed) {
        QRandomGenerator random(seed);
        int nextName = 0;
        TrackListModel model(TrackColumns::full());
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        QList<Track> expected = madeUp(30);
        model.setRows(expected);
        for (int step = 0; step < 40; ++step) {
            QHash<TrackID, QPersistentModelIndex> held;
            for (int row = 0; row < expected.size(); row += 3)
                held.insert(expected[row].id(), model.index(row, 1));
            expected = edited(expected, random, nextName);
            model.setRows(expected);
            ASSERT_EQ(names(model.rows()), names(expected)) << "seed " << seed << " step " << step;
            for (auto index = held.cbegin(); index != held.cend(); ++index) {
                const std::optional<int> row = model.rowOf(index.key());
                ASSERT_EQ(index->isValid(), row.has_value()) << "seed " << seed << " step " << step;
                ASSERT_TRUE(!row || index->row() == *row) << "a selection would jump to another track";
            }
        }
        EXPECT_EQ(resets.size(), 0);
    }
}

TEST(TrackListModelTest, TellsOnlyWhatDiffers)
{
    TrackListModel model(TrackColumns::full());
    QList<Track> rows = madeUp(1000);
    model.setRows(rows);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy moved(&model, &QAbstractItemModel::layoutChanged);

    for (int row : {10, 11, 12, 500})
        rows[row].setIsFavorite(true);
    model.setRows(rows);
    ASSERT_EQ(changed.size(), 2) << "one signal per run of rows";
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 10);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 12);
    EXPECT_EQ(changed[1][0].toModelIndex().row(), 500);

    changed.clear();
    rows.append(madeUp(200));
    rows[3].setIsFavorite(true);
    model.setRows(rows);
    EXPECT_EQ(inserted.size(), 1);
    EXPECT_EQ(changed.size(), 1);

    rows.remove(100, 50);
    model.setRows(rows);
    EXPECT_EQ(removed.size(), 1);
    rows.move(5, 900);
    model.setRows(rows);
    EXPECT_EQ(moved.size(), 1);
    model.setRows(rows);
    EXPECT_EQ(moved.size() + removed.size() + inserted.size(), 3) << "the same list is no change";
}

TEST(TrackListModelTest, ARowThatOccursTwiceDoesNotBreakTheList)
{
    TrackListModel model(TrackColumns::full());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QList<Track> rows = madeUp(6);
    model.setRows(rows);
    rows = {rows[4], rows[1], rows[1], rows[0], rows[4]};
    model.setRows(rows);
    EXPECT_EQ(names(model.rows()), names(rows));
}
