#include "core/model/Track.h"
#include "platform/FileURL.h"
#include "support/Pictures.h"
#include "support/TagTexts.h"

#include <gtest/gtest.h>

namespace {

QUrl url(const char* path)
{
    return FileURL::fromPath(QString::fromUtf8(path));
}

QByteArray png(int width, int height)
{
    return Pictures::plain({width, height}, 0xFFFF0000, "PNG");
}

} // namespace

TEST(Track, UnreadFilesCarryWhatTheirNameSays)
{
    const Track track = Track::unread(url("/music/128 - Artist - Title.Flac"));
    EXPECT_FALSE(track.id().isNull());
    EXPECT_NE(track.id(), Track::unread(track.url()).id());
    EXPECT_FALSE(track.metadataVersion().tags.isNull());
    EXPECT_NE(track.metadataVersion().tags, track.metadataVersion().artwork);
    EXPECT_EQ(track.tags().artist, QStringLiteral("Artist"));
    EXPECT_EQ(track.format(), QStringLiteral("FLAC"));
}

TEST(Track, TitleFallsBackToTheFileName)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"/music/a.b.mp3", "", "a.b"},
        {"/music/a.mp3", "Title", "Title"},
        {"/music/a.mp3", "  ", "  "}, // only emptiness counts
        {"/music/.mp3", "", ".mp3"},
    };
    for (const auto& [path, title, shown] : rows) {
        const Track track = TagTexts::on(Track::unread(url(path)), {{&AudioTags::title, title}});
        EXPECT_EQ(track.displayTitle(), QString::fromUtf8(shown)) << path;
    }
}

TEST(Track, BitRateIsShownInWholeKilobits)
{
    const std::pair<double, const char*> rows[] = {
        {0, "— kbps"},         {-1, "— kbps"},           {128'499, "128 kbps"}, {128'500, "129 kbps"},
        {320'000, "320 kbps"}, {1'411'200, "1411 kbps"}, {400, "0 kbps"},
    };
    for (const auto& [bitRate, shown] : rows) {
        Track track = Track::unread(url("/music/a.mp3"));
        LoadedTrackMetadata metadata;
        metadata.bitRate = bitRate;
        track.apply(metadata, track.url(), track.metadataVersion());
        EXPECT_EQ(track.bitRateText(), QString::fromUtf8(shown)) << bitRate;
    }
}

TEST(Track, CacheKeyNamesFileAndPicture)
{
    const auto keyOf = [](const char* path, const QByteArray& bytes) {
        Track track = Track::unread(url(path));
        track.replaceArtwork(ArtworkData::intern(bytes), QImage());
        return track.artworkCacheKey();
    };
    EXPECT_EQ(keyOf("/music/x/../a.mp3", {}), QStringLiteral("/music/a.mp3#none"));
    EXPECT_EQ(keyOf("/music/a.mp3", "Man"), QStringLiteral("/music/a.mp3#3#TWFu"));
    EXPECT_EQ(keyOf("/music/a.mp3", QByteArray(24, 'a') + "tail"),
              QStringLiteral("/music/a.mp3#28#YWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFh"));
    EXPECT_NE(keyOf("/music/a.mp3", "Man"), keyOf("/music/b.mp3", "Man"));
}

TEST(Track, ShowsTheDecodedPictureElseTheBytes)
{
    Track track = Track::unread(url("/music/shown.mp3"));
    EXPECT_TRUE(track.displayArtwork().isNull());
    track.replaceArtwork(ArtworkData::intern(png(3, 2)), QImage());
    EXPECT_EQ(track.displayArtwork().size(), QSize(3, 2));
    QImage atHand(7, 7, QImage::Format_RGB32);
    track.replaceArtwork(ArtworkData::intern(png(3, 2)), atHand);
    EXPECT_EQ(track.displayArtwork().size(), QSize(7, 7));
    track.replaceArtwork(ArtworkData::intern(png(5, 4)), QImage());
    EXPECT_EQ(track.displayArtwork().size(), QSize(5, 4)) << "another picture of the same file";
}

TEST(Track, UndecodableBytesGiveNoPicture)
{
    const QByteArray whole = png(64, 64);
    for (const QByteArray& bytes : {QByteArray("not a picture"), whole.first(20), QByteArray(5000, '\0')}) {
        Track track = Track::unread(url("/music/broken.mp3"));
        track.replaceArtwork(ArtworkData::intern(bytes), QImage());
        EXPECT_TRUE(track.displayArtwork().isNull());
        EXPECT_TRUE(track.displayArtwork().isNull()) << "the second time too";
    }
}

TEST(Track, DecodedPicturesOutliveTheirBytes)
{
    Track track = Track::unread(url("/music/evicted.mp3"));
    track.replaceArtwork(ArtworkData::intern(png(9, 9)), QImage());
    EXPECT_EQ(track.displayArtwork().size(), QSize(9, 9));
    ArtworkData::setPoolLimit(0);
    const ArtworkData other = ArtworkData::intern("needs the room");
    EXPECT_TRUE(track.artworkData().bytes().isNull());
    EXPECT_EQ(track.displayArtwork().size(), QSize(9, 9));
    ArtworkData::setPoolLimit(ArtworkData::kDefaultPoolLimit);
}
