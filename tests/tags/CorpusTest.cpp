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
    const std::tuple<QStringView, QString AudioTags::*, QStringView> cases[] = {
        {u"taglib/has-tags.m4a", &AudioTags::artist, u"Test Artist"},
        {u"taglib/multiple-vc.flac", &AudioTags::artist, u"Artist 1"},
        {u"taglib/duplicate_tags.wav", &AudioTags::title, u"Title1"},
        {u"tinytag/UTF16.mp3", &AudioTags::album, u"High Violet"},
        {u"tinytag/id3v22.TCO.genre.mp3", &AudioTags::genre, u"Pop"},
        {u"tinytag/id3_comment_utf_16_double_bom.mp3", &AudioTags::comment, u"Unclear"},
        {u"tinytag/id3v24_genre_null_byte.mp3", &AudioTags::album, u"秘密"},
        {u"tinytag/multi_value_utf16.mp3", &AudioTags::title, u"some title / another title / yet another title"},
    };
    for (const auto& [file, field, value] : cases) {
        const QUrl url = QUrl::fromLocalFile(kCorpus + u'/' + file.toString());
        EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags.*field, value.toString()) << file.toString().toStdString();
    }
}

} // namespace
