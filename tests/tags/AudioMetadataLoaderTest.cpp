#include "tags/AudioMetadataLoader.h"

#include "support/Encoder.h"
#include "support/TagBytes.h"
#include "support/TagsOf.h"
#include "tags/AudioTechnicalInfo.h"

#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

using namespace TagBytes;

TEST(AudioMetadataLoaderTest, letsTheLastItemWinAndTheFirstKey)
{
    const std::tuple<const char*, QByteArray, QString AudioTags::*, QString> cases[] = {
        {"two titles", textFrame("TIT2", "One") + textFrame("TIT2", "Two"), &AudioTags::title, QStringLiteral("Two")},
        {"empty behind", textFrame("TIT2", "One") + textFrame("TIT2", ""), &AudioTags::title, QStringLiteral("One")},
        {"no title", textFrame("TPE1", "A"), &AudioTags::title, QStringLiteral("fallback")},
        {"two comments", describedFrame("COMM", "x", "One") + describedFrame("COMM", "y", "Two"), &AudioTags::comment,
         QStringLiteral("Two")},
        {"private comment behind", describedFrame("COMM", "", "One") + describedFrame("COMM", "iTunNORM", " 0000"),
         &AudioTags::comment, QStringLiteral("One")},
        {"two keys", textFrame("TKEY", "8A") + textFrame("TKEY", "9A"), &AudioTags::musicalKey, QStringLiteral("8A")},
        {"blank key in front", textFrame("TKEY", "  ") + textFrame("TKEY", "9A"), &AudioTags::musicalKey,
         QStringLiteral("9A")},
        {"user-defined key", describedFrame("TXXX", "initial_key", "4B"), &AudioTags::musicalKey, QStringLiteral("4B")},
        {"no key", describedFrame("TXXX", "key", "4B"), &AudioTags::musicalKey, QString()},
        {"blanks kept", textFrame("TALB", "  Album "), &AudioTags::album, QStringLiteral("  Album ")},
        {"genre by number", textFrame("TCON", "(17)"), &AudioTags::genre, QStringLiteral("Rock")},
        {"album artist", textFrame("TPE2", "X"), &AudioTags::albumArtist, QString()},
        {"year", textFrame("TYER", "1999"), &AudioTags::year, QString()},
        {"track", textFrame("TRCK", "7"), &AudioTags::track, QString()},
        {"tempo", textFrame("TBPM", "128"), &AudioTags::bpm, QStringLiteral("120")},
    };
    const FileFolder folder;
    AudioTags fallback;
    fallback.title = QStringLiteral("fallback");
    fallback.bpm = QStringLiteral("120");
    for (const auto& [what, frames, field, value] : cases) {
        const AudioTags tags = folder.load(QStringLiteral("a.mp3"), id3v2(frames) + mpegFrames(3), fallback).tags;
        EXPECT_EQ(tags.*field, value) << what;
    }
}

TEST(AudioMetadataLoaderTest, prefersTheMoreTrustedFormatAndItsLastPicture)
{
    const FileFolder folder;
    const QByteArray bytes = id3v2(textFrame("TIT2", "V2") + pictureFrame("one") + pictureFrame("two")) +
                             mpegFrames(3) + ape({"Title=Ape", "Artist=Ape"}) +
                             id3v1({.title = "V1", .artist = "V1", .album = "V1"});
    const LoadedTrackMetadata metadata = folder.load(QStringLiteral("a.mp3"), bytes);
    EXPECT_EQ(metadata.tags.title, QStringLiteral("V2"));
    EXPECT_EQ(metadata.tags.artist, QStringLiteral("Ape"));
    EXPECT_EQ(metadata.tags.album, QStringLiteral("V1"));
    EXPECT_EQ(metadata.artworkData.bytes(), "two");
    EXPECT_EQ(AudioMetadataLoader::artwork(QUrl::fromLocalFile(folder.path(QStringLiteral("a.mp3")))), "two");
}

TEST(AudioMetadataLoaderTest, namesTheFormatByTheExtension)
{
    const FileFolder folder;
    const std::pair<QStringView, QStringView> cases[] = {{u"a.mp3", u"MP3"},     {u"a.Flac", u"FLAC"},
                                                         {u"noextension", u""},  {u"a.b.m4a", u"M4A"},
                                                         {u"песня.mp3", u"MP3"}, {u"a b\n'\"%20#?.mp3", u"MP3"}};
    for (const auto& [name, format] : cases) {
        const LoadedTrackMetadata metadata = folder.load(name.toString(), mpegFrames(3));
        EXPECT_EQ(metadata.format, format.toString());
        EXPECT_GT(metadata.duration, 0);
    }
}

TEST(AudioMetadataLoaderTest, fillsInTheBitRate)
{
    const FileFolder folder;
    // The reader knows it, whatever the tag's size does to the direct reader.
    const QByteArray tagged = id3v2(QByteArray(200 * 1024, '\0')) + mpegFrames(100);
    EXPECT_DOUBLE_EQ(folder.load(QStringLiteral("a.mp3"), tagged).bitRate, 128000);
    EXPECT_DOUBLE_EQ(folder.load(QStringLiteral("a.wav"), mpegFrames(100)).bitRate, 128000);
    // One frame alone is no sound that is known, but its header still tells.
    const LoadedTrackMetadata lonely = folder.load(QStringLiteral("b.mp3"), mpegFrames(1));
    EXPECT_DOUBLE_EQ(lonely.bitRate, 128000);
    EXPECT_EQ(lonely.duration, 0);
    // No length, no estimate.
    EXPECT_EQ(folder.load(QStringLiteral("c.flac"), flac(0, {})).bitRate, 0);
}

TEST(AudioMetadataLoaderTest, keepsTheFallbackOfWhatCannotBeRead)
{
    const FileFolder folder;
    AudioTags fallback;
    fallback.title = QStringLiteral("fallback");
    ASSERT_EQ(::mkfifo(qPrintable(folder.path(QStringLiteral("fifo.mp3"))), 0600), 0);
    ASSERT_EQ(::mkdir(qPrintable(folder.path(QStringLiteral("folder.mp3"))), 0700), 0);
    ASSERT_EQ(::symlink("/dev/zero", qPrintable(folder.path(QStringLiteral("device.mp3")))), 0);
    folder.write(QStringLiteral("empty.mp3"), {});
    folder.write(QStringLiteral("text.mp3"), QByteArray("only words\n").repeated(1000));
    folder.write(QStringLiteral("picture.mp3"), "\xFF\xD8\xFF\xE0" + QByteArray(5000, '\x12'));
    for (QStringView name :
         {u"fifo.mp3", u"folder.mp3", u"device.mp3", u"empty.mp3", u"text.mp3", u"picture.mp3", u"missing.mp3"}) {
        const QUrl url = QUrl::fromLocalFile(folder.path(name.toString()));
        EXPECT_FALSE(AudioMetadataLoader::loadIfReadable(url, fallback)) << name.toString().toStdString();
        const LoadedTrackMetadata metadata = AudioMetadataLoader::load(url, fallback);
        EXPECT_EQ(metadata.tags, fallback);
        EXPECT_EQ(metadata.duration, 0);
        EXPECT_EQ(metadata.format, QStringLiteral("MP3"));
        EXPECT_TRUE(metadata.artworkData.isNull());
        EXPECT_FALSE(AudioTechnicalInfo::read(url));
    }
}

TEST(AudioMetadataLoaderTest, readsWhatRealEncodersWrite)
{
    const FileFolder folder;
    if (!runProgram(QStringLiteral("ffmpeg"), {QStringLiteral("-version")}))
        GTEST_SKIP() << "ffmpeg is not installed";
    const struct {
        QStringView name;
        QStringView options;
        double bitRate; ///< 0: not checked
        int bitDepth;
    } cases[] = {
        {u"cbr.mp3", u"-b:a 192k -write_id3v1 1", 192000, 0},
        {u"vbr.mp3", u"-q:a 4", 0, 0},
        {u"noxing.mp3", u"-q:a 4 -write_xing 0", 0, 0},
        {u"a.flac", u"", 0, 16},
        {u"a.wav", u"", 705600, 16},
        {u"deep.wav", u"-c:a pcm_s24le", 1058400, 24},
        {u"a.aiff", u"-write_id3v2 1", 705600, 16},
        {u"a.m4a", u"", 0, 0},
        {u"alac.m4a", u"-c:a alac", 0, 16},
        {u"a.aac", u"-write_id3v2 1", 0, 0},
    };
    const QString tone = QStringLiteral("sine=duration=4:sample_rate=44100 ");
    const QString texts = QStringLiteral("-metadata title=Тишина -metadata artist=Beyoncé -metadata genre=House ");
    for (const auto& c : cases) {
        const QString path = folder.path(c.name.toString());
        ASSERT_TRUE(Encoder::encode(tone + texts + c.options.toString(), path)) << path.toStdString();
        const QUrl url = QUrl::fromLocalFile(path);
        const std::optional<LoadedTrackMetadata> metadata = AudioMetadataLoader::loadIfReadable(url, {});
        ASSERT_TRUE(metadata) << path.toStdString();
        EXPECT_EQ(metadata->tags.title, QStringLiteral("Тишина")) << path.toStdString();
        EXPECT_EQ(metadata->tags.artist, QStringLiteral("Beyoncé")) << path.toStdString();
        EXPECT_EQ(metadata->tags.genre, QStringLiteral("House")) << path.toStdString();
        EXPECT_NEAR(metadata->duration, 4.0, 0.1) << path.toStdString();
        EXPECT_EQ(metadata->bitDepth, c.bitDepth) << path.toStdString();
        const double sizeRate = static_cast<double>(QFile(path).size()) * 8 / 4;
        const double expected = c.bitRate != 0 ? c.bitRate : sizeRate;
        EXPECT_NEAR(metadata->bitRate, expected, c.bitRate != 0 ? 0 : sizeRate * 0.2) << path.toStdString();
    }
}

} // namespace
