// What every writer promises, whatever the container.

#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/writing/MetadataWriter.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

/// A name, and options of the encoder.
using RealFile = std::pair<const char*, const char*>;

class RealFiles : public testing::TestWithParam<RealFile> {};

TEST_P(RealFiles, KeepEverySampleAndShowWhatWasWritten)
{
    const QString name = QString::fromLatin1(GetParam().first);
    const bool holdsMore = name != QStringLiteral("a.m4a"); // pictures and keys
    const bool isFlac = name == QStringLiteral("a.flac");
    // As another library spells them.
    const QString titleKey = QString::fromUtf8(!holdsMore ? "©nam" : isFlac ? "title" : "TIT2");
    const QString artistKey = QString::fromUtf8(!holdsMore ? "©ART" : isFlac ? "artist" : "TPE1");
    const FileFolder folder;
    const QUrl url = makeSound(folder, name, QString::fromLatin1(GetParam().second));
    const QByteArray before = packetDigest(url);
    ASSERT_FALSE(before.isEmpty());
    if (holdsMore)
        MetadataWriter::assignArtwork(kPng, fullTags(), url);
    else
        MetadataWriter::write(fullTags(), false, url);
    EXPECT_EQ(packetDigest(url), before);
    AudioTags expected = readableTags();
    if (!holdsMore)
        expected.musicalKey.clear();
    const LoadedTrackMetadata loaded = AudioMetadataLoader::load(url, {});
    EXPECT_EQ(loaded.tags, expected);
    EXPECT_EQ(loaded.artworkData.bytes(), holdsMore ? kPng : QByteArray());
    EXPECT_EQ(foreignTag(url, titleKey), fullTags().title);

    const QString title = QStringLiteral("A much longer title than before");
    MetadataWriter::clean(CleanerField::Title | CleanerField::Comment, title, {}, url);
    EXPECT_EQ(packetDigest(url), before);
    EXPECT_EQ(foreignTag(url, titleKey), title);
    EXPECT_EQ(foreignTag(url, artistKey), fullTags().artist);
    EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags.comment, QString());
}

const RealFile kRealFiles[] = {
    {"a.wav", "-c:a pcm_u8"},
    {"a.wav", "-c:a pcm_s16le"},
    {"a.wav", "-c:a pcm_s24le"},
    {"a.wav", "-c:a pcm_f32le"},
    {"a.wav", "-c:a adpcm_ms"},
    {"a.aiff", "-c:a pcm_s16be"},
    {"a.aiff", "-c:a pcm_s24be"},
    {"a.aiff", "-c:a pcm_f32be"},
    {"a.aiff", "-c:a pcm_s16le"},
    {"a.flac", "-sample_fmt s16"},
    {"a.flac", "-sample_fmt s32"},
    {"a.mp3", "-b:a 128k"},
    {"a.m4a", "-c:a aac"},
    {"a.m4a", "-c:a aac -movflags +faststart"},
    {"a.m4a", "-c:a alac -movflags +faststart"},
};

INSTANTIATE_TEST_SUITE_P(OfEveryContainer, RealFiles, testing::ValuesIn(kRealFiles));

/// A file of every container with a title and an artist.
std::vector<std::pair<QString, QByteArray>> taggedFiles()
{
    const QByteArray tag = id3v2(textFrame("TIT2", "Old") + textFrame("TPE1", "A"));
    return {{QStringLiteral("a.mp3"), tag + mpegFrames(3) + ape({"Title=Old"}) + id3v1({.title = "Old"})},
            {QStringLiteral("a.flac"), flac(1000, {"TITLE=Old", "ARTIST=A"})},
            {QStringLiteral("a.wav"), wave(1000, info(riffChunk("INAM", "Old")) + riffChunk("id3 ", tag))},
            {QStringLiteral("a.aiff"), aiff(1000, aiffChunk("NAME", "Old") + aiffChunk("ID3 ", tag))},
            {QStringLiteral("a.m4a"), m4a(itemAtom("\251nam", 1, "Old") + itemAtom("aART", 1, "A"))}};
}

TEST(WriterContract, leavesAWholeFileAtEveryStep)
{
    const AudioTags tags = tagsWith({{&AudioTags::title, QStringLiteral("New")}});
    for (const auto& [name, bytes] : taggedFiles()) {
        SCOPED_TRACE(name.toStdString());
        // A plain save of an MP3 leaves its new file, for those who look for it.
        expectWholeAtEveryStep(name, bytes, writing(tags), name.endsWith(QStringLiteral("mp3")));
        expectWholeAtEveryStep(name, bytes, cleaning(CleanerField::Title, tags.title));
        expectWholeAtEveryStep(name, bytes, keeping(tags, TagField::Title));
    }
    // Looking for the picture comes behind the swap, so that only what fails before leaves the old file.
    const FileFolder folder;
    const QUrl url = folder.write(QStringLiteral("a.mp3"), taggedFiles().front().second);
    EXPECT_EQ(failureOf(keepingWithPicture(kPng, tags, TagField::Title), url), QString());
    EXPECT_EQ(folder.names(), QStringList{QStringLiteral("a.mp3")});
    EXPECT_TRUE(contentOf(url).contains(kPng));
}

TEST(WriterContract, choosesTheWriterByTheExtensionAndFindsThePictureItHasWritten)
{
    std::vector<std::pair<QString, QByteArray>> files = taggedFiles();
    files.emplace_back(QStringLiteral("a.aif"), files[3].second);
    const AudioTags tags = tagsWith({{&AudioTags::title, QStringLiteral("New")}});
    for (const auto& [lowerName, bytes] : files) {
        const QString name = lowerName.toUpper();
        const FileFolder folder;
        const QUrl url = folder.write(name, bytes);
        EXPECT_EQ(failureOf(cleaning(CleanerField::Title), url), QString()) << name.toStdString();
        EXPECT_NE(contentOf(url), bytes) << name.toStdString();
        EXPECT_FALSE(MetadataWriter::containsArtworkBytes(kPng, url));
        const bool takesPictures = name != QStringLiteral("A.M4A");
        EXPECT_EQ(failureOf(assigning(kPng, tags), url),
                  takesPictures ? QString() : QStringLiteral("unsupportedFormat m4a"));
        EXPECT_EQ(MetadataWriter::containsArtworkBytes(kPng, url), takesPictures) << name.toStdString();
        for (const bool removeArtwork : {true, false}) {
            MetadataWriter::write(tags, removeArtwork, url);
            EXPECT_FALSE(MetadataWriter::containsArtworkBytes(kPng, url)) << name.toStdString();
        }
        EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags.title, tags.title) << name.toStdString();
    }
    for (const QString& extension : {QStringLiteral("aifc"), QStringLiteral("ogg"), QStringLiteral("aac")}) {
        const QString refusal = QStringLiteral("unsupportedFormat ") + extension;
        expectRefusals(QStringLiteral("a.") + extension.toUpper(),
                       {{"tags", aiff(10), writing(tags), refusal},
                        {"picture", aiff(10), assigning(kPng, tags), refusal},
                        {"cleaning", aiff(10), cleaning(CleanerField::Title), refusal}});
    }
}

TEST(WriterContract, saysThatAPictureIsNotThereAlthoughTheFileWasWritten)
{
    const FileFolder folder;
    const QUrl url = folder.write(QStringLiteral("a b.mp3"), mpegFrames(1));
    EXPECT_EQ(failureOf(assigning({}, fullTags()), url), QStringLiteral("artworkVerificationFailed a b.mp3"));
    EXPECT_TRUE(contentOf(url).startsWith("ID3"));
}

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

/// Files of other projects' tests, which are not part of this project.
TEST(WriterContract, rewritesForeignFilesOrLeavesThem)
{
    const QString corpus = QStringLiteral(VELMORA_CORPUS);
    if (!QFileInfo::exists(corpus))
        GTEST_SKIP() << "there is no corpus";
    const FileFolder folder;
    const AudioTags tags = tagsWith({{&AudioTags::title, QStringLiteral("A title longer than any that stands there")}});
    int rewritten = 0;
    const QStringList names{QStringLiteral("*.flac"), QStringLiteral("*.wav"), QStringLiteral("*.aif*"),
                            QStringLiteral("*.m4a")};
    for (QDirIterator files(corpus, names, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        const QByteArray bytes = contentOf(QUrl::fromLocalFile(files.next()));
        const QString name = files.fileName();
        const QUrl url = folder.write(name, bytes);
        const double seconds = AudioMetadataLoader::load(url, {}).duration;
        if (failureOf(writing(tags), url).isEmpty()) {
            const LoadedTrackMetadata metadata = AudioMetadataLoader::load(url, {});
            EXPECT_EQ(metadata.tags.title, tags.title) << name.toStdString();
            EXPECT_EQ(metadata.duration, seconds) << name.toStdString();
            ++rewritten;
        } else {
            EXPECT_EQ(folder.read(name), bytes) << name.toStdString();
        }
        EXPECT_EQ(folder.removeTemporaries(), 0) << name.toStdString();
    }
    EXPECT_GT(rewritten, 50);
}

} // namespace
