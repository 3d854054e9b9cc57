// What every writer promises, whatever the container.

#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/writing/MetadataWriter.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QByteArray kPicture = "\x89PNG picture";

struct RealFile {
    const char* name;
    const char* options;  ///< of the encoder
    const char* titleKey; ///< as another library spells it
    const char* artistKey;
};

class RealFiles : public testing::TestWithParam<RealFile> {};

TEST_P(RealFiles, KeepEverySampleAndShowWhatWasWritten)
{
    const RealFile& kind = GetParam();
    const bool holdsMore = !QLatin1StringView(kind.name).endsWith(QLatin1StringView("m4a")); // pictures and keys
    const FileFolder folder;
    const QUrl url = makeSound(folder, QLatin1StringView(kind.name), QString::fromLatin1(kind.options).split(u' '));
    const QByteArray before = packetDigest(url);
    ASSERT_FALSE(before.isEmpty());
    if (holdsMore)
        MetadataWriter::assignArtwork(kPicture, fullTags(), url);
    else
        MetadataWriter::write(fullTags(), false, url);
    EXPECT_EQ(packetDigest(url), before);
    AudioTags expected = readableTags();
    if (!holdsMore)
        expected.musicalKey.clear();
    const LoadedTrackMetadata loaded = AudioMetadataLoader::load(url, {});
    EXPECT_EQ(loaded.tags, expected);
    EXPECT_EQ(loaded.artworkData.bytes(), holdsMore ? kPicture : QByteArray());
    EXPECT_EQ(foreignTag(url, QString::fromUtf8(kind.titleKey)), fullTags().title);

    const QString title = QStringLiteral("A much longer title than before");
    MetadataWriter::clean(CleanerField::Title | CleanerField::Comment, title, {}, url);
    EXPECT_EQ(packetDigest(url), before);
    EXPECT_EQ(foreignTag(url, QString::fromUtf8(kind.titleKey)), title);
    EXPECT_EQ(foreignTag(url, QString::fromUtf8(kind.artistKey)), fullTags().artist);
    EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags.comment, QString());
}

const RealFile kRealFiles[] = {
    {"a.wav", "-c:a pcm_u8", "TIT2", "TPE1"},
    {"a.wav", "-c:a pcm_s16le", "TIT2", "TPE1"},
    {"a.wav", "-c:a pcm_s24le", "TIT2", "TPE1"},
    {"a.wav", "-c:a pcm_f32le", "TIT2", "TPE1"},
    {"a.wav", "-c:a adpcm_ms", "TIT2", "TPE1"},
    {"a.aiff", "-c:a pcm_s16be", "TIT2", "TPE1"},
    {"a.aiff", "-c:a pcm_s24be", "TIT2", "TPE1"},
    {"a.aiff", "-c:a pcm_f32be", "TIT2", "TPE1"},
    {"a.aiff", "-c:a pcm_s16le", "TIT2", "TPE1"},
    {"a.flac", "-sample_fmt s16", "title", "artist"},
    {"a.flac", "-sample_fmt s32", "title", "artist"},
    {"a.mp3", "-b:a 128k", "TIT2", "TPE1"},
    {"a.m4a", "-c:a aac", "\xC2\xA9nam",
     "\xC2\xA9"
     "ART"},
    {"a.m4a", "-c:a aac -movflags +faststart", "\xC2\xA9nam",
     "\xC2\xA9"
     "ART"},
    {"a.m4a", "-c:a alac -movflags +faststart", "\xC2\xA9nam",
     "\xC2\xA9"
     "ART"},
};

INSTANTIATE_TEST_SUITE_P(OfEveryContainer, RealFiles, testing::ValuesIn(kRealFiles));

TEST(WriterContract, refusesFilesThatWouldPassTheirSizeField)
{
    const QByteArray format = riffChunk("fmt ", little(1, 2) + little(1, 2) + little(8000, 4) + little(16000, 4) +
                                                    little(2, 2) + little(16, 2));
    const struct {
        const char* name;
        QByteArray bytes;
        qint64 size;
        const char* error;
    } cases[] = {
        {"a.wav", "RIFF" + little(0, 4) + "WAVE" + format + "data" + little(0xFFFFFFC0, 4),
         12 + format.size() + 8 + 0xFFFFFFC0, "rewriteFailed wav"},
        {"a.aiff", "FORM" + big(0, 4) + "AIFFSSND" + big(0xFFFFFFE0, 4), 12 + 8 + 0xFFFFFFE0, "rewriteFailed aiff"},
    };
    for (const auto& [name, bytes, size, error] : cases) {
        const FileFolder folder;
        const QUrl url = folder.write(QLatin1StringView(name), bytes);
        ASSERT_TRUE(QFile::resize(url.toLocalFile(), size)); // a hole
        EXPECT_EQ(failureOf(writing(fullTags()), url), QLatin1StringView(error));
        EXPECT_EQ(QFileInfo(url.toLocalFile()).size(), size);
    }
}

} // namespace
