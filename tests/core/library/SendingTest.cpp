#include "support/StoreFixture.h"

TEST_F(StoreFixture, SendsCopiesToTheAnalysisOnce)
{
    Track a = favorite(QStringLiteral("a.mp3"));
    a.edit(a.tags(), TagField::Genre);
    fill({b, a});
    store->sending().addTracksToAnalysis(ids({a, b}));
    const QList<Track> rows = workspace().analysisTracks().rows();
    EXPECT_EQ(titles(rows), QStringList({QStringLiteral("b"), QStringLiteral("a")})) << "in list order";
    EXPECT_FALSE(ids(rows).intersects(ids({a, b}))) << "ids of their own";
    EXPECT_FALSE(rows.last().isFavorite());
    EXPECT_FALSE(rows.last().editedFields()) << "edits stay with their row";
    EXPECT_EQ(qualityAsked, ids(rows));
    EXPECT_EQ(statusText(), QStringLiteral("Отправлено в анализ: 2"));
    workspace().setWorkspaceStatus(std::nullopt);
    store->sending().addTracksToAnalysis(ids({a, b}));
    EXPECT_EQ(workspace().analysisTracks().size(), 2);
    EXPECT_FALSE(workspace().workspaceStatus());
    clock.advance(async::seconds(5));
    settle();
}

TEST_F(StoreFixture, QueuesFilesForConversionOnce)
{
    const Track b = track(QStringLiteral("b.flac"));
    fill({a, b});
    EXPECT_EQ(store->sending().addTracksToConversion(ids({b})), 1);
    EXPECT_EQ(store->sending().addTracksToConversion(ids({a, b})), 1);
    EXPECT_EQ(store->sending().addTracksToConversion(ids({a, b})), 0);
    ASSERT_EQ(workspace().conversionItems().size(), 2);
    EXPECT_EQ(workspace().conversionItems().first().url, b.url());
    EXPECT_EQ(workspace().conversionItems().first().status.value, ConversionItem::Status::Case::Waiting);
    EXPECT_EQ(statusText(), QStringLiteral("Добавлено в конвертер: 1"));
    clock.advance(async::seconds(5));
}
