#include "support/StoreFixture.h"

#include "core/library/order/PlaylistBase.h"

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
