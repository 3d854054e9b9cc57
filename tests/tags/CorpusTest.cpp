#include "support/TagsOf.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/bytes/ByteSource.h"

#include <QDirIterator>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <cmath>

// Files of other projects' tests, each of which once broke some reader. They are not part of this project.

namespace {

const QString kCorpus = QStringLiteral(VELMORA_CORPUS);

TEST(CorpusTest, readsEveryFileInTime)
{
    if (!QFileInfo::exists(kCorpus))
        GTEST_SKIP() << "there is no corpus";
    for (QDirIterator files(kCorpus, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        const QUrl url = QUrl::fromLocalFile(files.next());
        QElapsedTimer timer;
        timer.start();
        const LoadedTrackMetadata metadata = AudioMetadataLoader::load(url, {});
        EXPECT_LE(timer.elapsed(), ByteSource::kDefaultTimeLimit.count() + 500) << url.path().toStdString();
        EXPECT_TRUE(std::isfinite(metadata.duration) && metadata.duration >= 0) << url.path().toStdString();
        EXPECT_TRUE(std::isfinite(metadata.bitRate) && metadata.bitRate >= 0) << url.path().toStdString();
    }
}

// Values cross-checked with two independent readers.
TEST(CorpusTest, findsWhatTheFilesSay)
{
    if (!QFileInfo::exists(kCorpus))
        GTEST_SKIP() << "there is no corpus";
    const struct {
        QStringView file;
        QString AudioTags::*field;
        QStringView value;
    } cases[] = {
        {u"taglib/has-tags.m4a", &AudioTags::artist, u"Test Artist"},
        {u"taglib/gnre.m4a", &AudioTags::genre, u"Ska"},
        {u"taglib/silence-44-s.flac", &AudioTags::title, u"Silence"},
        {u"taglib/multiple-vc.flac", &AudioTags::artist, u"Artist 1"},
        {u"taglib/duplicate_tags.wav", &AudioTags::title, u"Title1"},
        {u"taglib/duplicate_id3v2.mp3", &AudioTags::genre, u"Punk"},
        {u"tinytag/UTF16.mp3", &AudioTags::album, u"High Violet"},
        {u"tinytag/id3v22.TCO.genre.mp3", &AudioTags::genre, u"Pop"},
        {u"tinytag/id3_comment_utf_16_double_bom.mp3", &AudioTags::comment, u"Unclear"},
        {u"tinytag/id3_comment_utf_16_with_bom.mp3", &AudioTags::comment, u"3/4 time"},
        {u"tinytag/id3v24_genre_null_byte.mp3", &AudioTags::album, u"秘密"},
        {u"tinytag/id3v1-latin1.mp3", &AudioTags::album, u"The Young Americans"},
        {u"tinytag/id3v24-long-title.mp3", &AudioTags::album, u"The Double EP: A Sea of Split Peas"},
        {u"tinytag/multi_value_utf16.mp3", &AudioTags::title, u"some title / another title / yet another title"},
        {u"tinytag/multiple_values_images.flac", &AudioTags::artist, u"artist 3"},
        {u"tinytag/duplicate_fields.mp3", &AudioTags::title, u"another title"},
    };
    for (const auto& c : cases) {
        const QUrl url = QUrl::fromLocalFile(kCorpus + u'/' + c.file.toString());
        EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags.*c.field, c.value.toString())
            << c.file.toString().toStdString();
    }
}

TEST(CorpusTest, findsPicturesAndSound)
{
    if (!QFileInfo::exists(kCorpus))
        GTEST_SKIP() << "there is no corpus";
    const struct {
        QStringView file;
        qsizetype artworkBytes;
        double seconds;
        int bitDepth;
    } cases[] = {
        {u"taglib/has-tags.m4a", 287, 3.707, 0},
        {u"taglib/silence-44-s.flac", 150, 3.675, 16},
        {u"taglib/itunes10.mp3", 2315, 0.052, 0},
        {u"tinytag/aiff_with_image.aiff", 1220, 2.176, 8},
        {u"tinytag/wav_with_image.wav", 4627, 2.14, 8},
        {u"tinytag/id3v22_with_image_stray_null.mp3", 1220, 0, 0},
        {u"taglib/empty1s.aac", 0, 1.115, 0},
        {u"tinytag/alac_file.m4a", 1050, 166.633, 16},
        {u"taglib/rf64.wav", 0, 0.048, 16},
        {u"tinytag/vbr44.mp3", 0, 9.091, 0},
        {u"tinytag/title_after_image.mp3", 1220, 0, 0},
        {u"taglib/flac96.m4a", 0, 1.0, 24},
    };
    for (const auto& c : cases) {
        const QUrl url = QUrl::fromLocalFile(kCorpus + u'/' + c.file.toString());
        const LoadedTrackMetadata metadata = AudioMetadataLoader::load(url, {});
        EXPECT_EQ(metadata.artworkData.byteCount(), c.artworkBytes) << c.file.toString().toStdString();
        EXPECT_NEAR(metadata.duration, c.seconds, 0.02) << c.file.toString().toStdString();
        EXPECT_EQ(metadata.bitDepth, c.bitDepth) << c.file.toString().toStdString();
    }
}

} // namespace
