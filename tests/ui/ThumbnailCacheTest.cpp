#include "support/Pictures.h"
#include "support/WindowFixture.h"

#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/thumbnails/ThumbnailDecoder.h"

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
    EXPECT_NEAR(ask(b).toImage().pixelColor(18, 18).green(), 0xAA, 4);
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
    EXPECT_NEAR(ask(a).toImage().pixelColor(18, 18).blue(), 0xAA, 4);

    ask(a, 36, 2);
    ask(a, 56, 2);
    executor.runAll();
    EXPECT_FALSE(ask(a, 56, 2).isNull());
    EXPECT_EQ(filesRead.size(), 1) << "sizes of one step are cut from the same reduced picture";
}

TEST_F(ThumbnailCacheTest, LongPicturesStaySharp)
{
    QImage stripes(1600, 400, QImage::Format_RGB32); // reduced to 256 pixels, their short side would have 64
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 1600; ++x)
            stripes.setPixelColor(x, y, y % 8 < 4 ? Qt::white : Qt::black);
    }
    const Track wide = fullTrack(QStringLiteral("wide"), Pictures::encoded(stripes, "PNG"));
    ask(wide, 200);
    executor.runAll();
    const QImage seen = ask(wide, 200).toImage();
    ASSERT_EQ(seen.size(), QSize(200, 200));
    EXPECT_GT(std::abs(seen.pixelColor(100, 100).lightness() - seen.pixelColor(100, 102).lightness()), 120);
}

TEST_F(ThumbnailCacheTest, WhatIsAskedForLastIsMadeFirst)
{
    QList<Track> tracks;
    for (int i = 0; i < 5; ++i)
        tracks.append(fullTrack(QString::number(i), picture(0xFF000000u + static_cast<uint>(i) * 40)));
    for (const Track& each : tracks)
        ask(each);
    while (ask(tracks[4]).isNull() && executor.runOne()) {
    }
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
    const QImage image = ThumbnailDecoder::square(Pictures::encoded(wide, "PNG"), 512, 20, 0).image;
    EXPECT_EQ(image.pixelColor(2, 10), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(17, 10), QColor(Qt::blue));
}
