#include "support/WindowFixture.h"

#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/thumbnails/ThumbnailDecoder.h"

#include <QSignalSpy>

class ThumbnailCacheTest : public WindowFixture {
protected:
    ~ThumbnailCacheTest() override { ArtworkData::setPoolLimit(ArtworkData::kDefaultPoolLimit); }

    QPixmap ask(const Track& track, int side = 36, double ratio = 1)
    {
        return cache.thumbnail(track, {side, 6, ratio});
    }

    QList<QUrl> filesRead;
    QByteArray answer;
    ThumbnailCache cache{executor, [this](const QUrl& url) {
                             filesRead.append(url);
                             return answer;
                         }};
};

TEST_F(ThumbnailCacheTest, EqualCoversAreDecodedOncePerSize)
{
    const QByteArray bytes = picture(0xFF00AA00);
    const Track a = fullTrack(QStringLiteral("a"), bytes);
    const Track b = fullTrack(QStringLiteral("b"), bytes);
    EXPECT_TRUE(ask(a).isNull());
    EXPECT_TRUE(ask(b).isNull());
    EXPECT_EQ(executor.pendingCount(), 1);
    QSignalSpy ready(&cache, &ThumbnailCache::ready);
    executor.runAll();
    EXPECT_EQ(ready.size(), 1);
    EXPECT_EQ(ask(b).size(), QSize(36, 36));
    EXPECT_EQ(ask(b).toImage().pixelColor(18, 18), QColor(0, 0xAA, 0));
    EXPECT_EQ(ask(b).toImage().pixelColor(0, 0).alpha(), 0) << "corners are round";
    EXPECT_EQ(executor.pendingCount(), 0);

    ask(a, 36, 2);
    executor.runAll();
    EXPECT_EQ(ask(a, 36, 2).size(), QSize(72, 72));
    EXPECT_EQ(ask(a, 36, 2).devicePixelRatio(), 2);
}

TEST_F(ThumbnailCacheTest, BytesThatWereLetGoAreReadAgain)
{
    answer = picture(0xFF0000AA);
    const Track a = fullTrack(QStringLiteral("a"), answer);
    ArtworkData::setPoolLimit(0);
    const Track other = fullTrack(QStringLiteral("other"), picture(0xFFAA0000));
    ASSERT_TRUE(a.artworkData().bytes().isNull());
    ask(a);
    executor.runAll();
    EXPECT_EQ(filesRead, QList<QUrl>{a.url()});
    EXPECT_EQ(ask(a).toImage().pixelColor(18, 18), QColor(0, 0, 0xAA));
}

TEST_F(ThumbnailCacheTest, WhatIsAskedForLastIsMadeFirst)
{
    QList<Track> tracks;
    for (int i = 0; i < 5; ++i)
        tracks.append(fullTrack(QString::number(i), picture(0xFF000000u + static_cast<uint>(i) * 40)));
    for (const Track& each : tracks)
        ask(each);
    EXPECT_EQ(executor.pendingCount(), ThumbnailCache::kJobs);
    executor.runOne();
    executor.runOne();
    executor.runOne();
    EXPECT_FALSE(ask(tracks[4]).isNull());
    EXPECT_TRUE(ask(tracks[2]).isNull());
    executor.runAll();
    EXPECT_FALSE(ask(tracks[2]).isNull());
}

TEST_F(ThumbnailCacheTest, BrokenAndMissingPicturesAreAskedForOnce)
{
    const Track broken = fullTrack(QStringLiteral("broken"), "no picture");
    ask(broken);
    executor.runAll();
    EXPECT_TRUE(ask(broken).isNull());
    EXPECT_EQ(executor.pendingCount(), 0);
    ask(fullTrack(QStringLiteral("bare")));
    EXPECT_EQ(executor.pendingCount(), 0);
}

TEST_F(ThumbnailCacheTest, ThePictureIsCutToItsMiddle)
{
    QImage wide(300, 100, QImage::Format_RGB32);
    wide.fill(Qt::red);
    for (int x = 100; x < 200; ++x) {
        for (int y = 0; y < 100; ++y)
            wide.setPixelColor(x, y, Qt::blue);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    wide.save(&buffer, "PNG");
    const QImage image = ThumbnailDecoder::decode(bytes, 20, 0);
    EXPECT_EQ(image.pixelColor(2, 10), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(17, 10), QColor(Qt::blue));
}
