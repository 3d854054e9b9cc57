#include "support/StoreFixture.h"

#include "core/library/order/PlaylistBase.h"
#include "platform/Collation.h"

#include <QRandomGenerator>

namespace {

/// The order by definition.
QList<Track> reference(const TrackList& tracks)
{
    QList<Track> rows;
    for (const Track& track : tracks) {
        if (track.isInPlaylist())
            rows.append(track);
    }
    std::ranges::sort(rows, [](const Track& left, const Track& right) {
        if (const int order =
                Collation::standardCompare(FileURL::folderPath(left.url()), FileURL::folderPath(right.url())))
            return order < 0;
        const int order =
            Collation::standardCompare(FileURL::lastPathComponent(left.url()), FileURL::lastPathComponent(right.url()));
        return order != 0 ? order < 0 : left.id().toString() < right.id().toString();
    });
    return rows;
}

QStringList paths(const QList<Track>& tracks)
{
    QStringList result;
    for (const Track& track : tracks)
        result.append(track.url().path() + track.id().toString());
    return result;
}

QString randomPath(QRandomGenerator& random)
{
    static const QStringList kFolders{QStringLiteral("/m/2"), QStringLiteral("/m/10"), QStringLiteral("/m"),
                                      QStringLiteral("/M/2"), QStringLiteral("/м"),    QStringLiteral("/m/2/x")};
    static const QStringList kNames{QStringLiteral("2.mp3"),  QStringLiteral("10.mp3"),  QStringLiteral("Ёж.mp3"),
                                    QStringLiteral("еж.mp3"), QStringLiteral("a b.mp3"), QStringLiteral("ab.mp3")};
    return kFolders[random.bounded(kFolders.size())] + u'/' + kNames[random.bounded(kNames.size())];
}

} // namespace

TEST_F(StoreFixture, NumbersInNamesSortByValueAndFoldersStayTogether)
{
    TrackList list;
    list.assign({track(QStringLiteral("/m/b/10.mp3")), track(QStringLiteral("/m/a/z.mp3")),
                 track(QStringLiteral("/m/b/2.mp3")), track(QStringLiteral("/m/a/Y.mp3"))});
    PlaylistBase base;
    base.rebuild(list);
    EXPECT_EQ(titles(base.rows().rows()),
              QStringList({QStringLiteral("Y"), QStringLiteral("z"), QStringLiteral("2"), QStringLiteral("10")}));
    const std::vector<PlaylistBase::FolderSection> expected{{QStringLiteral("/m/a"), 0, 2},
                                                            {QStringLiteral("/m/b"), 2, 4}};
    EXPECT_EQ(base.sections(), expected);
}

TEST_F(StoreFixture, TheOrderIsThatOfTheLanguage)
{
    fill({track(QStringLiteral("/m/я.mp3")), track(QStringLiteral("/m/a.mp3"))});
    const QStringList cyrillicFirst{QStringLiteral("я"), QStringLiteral("a")};
    EXPECT_EQ(titles(store->order().playlistTracks()), cyrillicFirst);
    VelmoraLocalization::setLanguage(AppLanguage::English);
    emit notifications.velmoraLanguageDidChange();
    EXPECT_EQ(titles(store->order().playlistTracks()), QStringList(cyrillicFirst.rbegin(), cyrillicFirst.rend()));
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    emit notifications.velmoraLanguageDidChange();
    EXPECT_EQ(titles(store->order().playlistTracks()), cyrillicFirst);
}

TEST_F(StoreFixture, PlaylistOrderFollowsAnyWalkOfChanges)
{
    QRandomGenerator random(4711);
    for (int step = 0; step < 400; ++step) {
        QList<Track> rows = workspace().tracks().rows();
        switch (random.bounded(6)) {
        case 0:
        case 1:
            for (int count = random.bounded(5); count >= 0; --count)
                rows.append(track(randomPath(random)));
            break;
        case 2:
            if (!rows.isEmpty())
                rows.removeAt(random.bounded(rows.size()));
            break;
        case 3:
            for (Track& row : rows) {
                if (random.bounded(4) == 0)
                    row.setDuration(random.bounded(100));
            }
            break;
        case 4:
            if (!rows.isEmpty())
                rows[random.bounded(rows.size())].setIsInPlaylist(random.bounded(2) == 0);
            break;
        case 5:
            if (!rows.isEmpty()) { // a renamed file
                Track& row = rows[random.bounded(rows.size())];
                const bool inPlaylist = row.isInPlaylist();
                row = Track(row.id(), FileURL::fromPath(randomPath(random)));
                row.setIsInPlaylist(inPlaylist);
            }
            break;
        }
        fill(rows);
        ASSERT_EQ(paths(store->order().playlistTracks()), paths(reference(workspace().tracks()))) << "step " << step;
        for (const Track& row : store->order().playlistTracks())
            ASSERT_TRUE(row.isSameValueAs(*workspace().tracks().find(row.id()))) << "step " << step;
    }
}
