#include "tags/writing/MetadataWriter.h"

#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/TagsOf.h"
#include "support/WriterFolder.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QByteArray kPicture = "\x89PNG picture";

AudioTags titled()
{
    AudioTags tags;
    tags.title = QStringLiteral("New");
    return tags;
}

/// Bytes that the writer of an extension takes.
QByteArray bytesFor(const QString& extension)
{
    const QString lower = extension.toLower();
    if (lower == QLatin1StringView("mp3"))
        return id3v2(textFrame("TIT2", "Old")) + mpegFrames(3);
    if (lower == QLatin1StringView("flac"))
        return flac(44100, {"TITLE=Old"});
    if (lower == QLatin1StringView("wav"))
        return wave(100, info(riffChunk("INAM", "Old")));
    if (lower.startsWith(QLatin1StringView("aif")))
        return aiff(100, aiffChunk("ID3 ", id3v2(textFrame("TIT2", "Old"))));
    return m4a(itemAtom("\xA9nam", 1, "Old"));
}

class MetadataWriterTest : public testing::Test {
protected:
    /// The error of an operation on a fresh file of that extension; the file must be untouched then.
    QString errorOn(const QString& extension, const std::function<void(const QUrl&)>& operation) const
    {
        const QString name = QStringLiteral("a.") + extension;
        const QByteArray bytes = bytesFor(extension);
        const QUrl url = QUrl::fromLocalFile(folder.write(name, bytes));
        const QString error = errorOf([&] { operation(url); });
        EXPECT_EQ(folder.read(name) == bytes, !error.isEmpty()) << extension.toStdString();
        EXPECT_EQ(folder.names(), QStringList{name});
        EXPECT_TRUE(QFile::remove(folder.path(name)));
        return error;
    }

    WriterFolder folder;
};

TEST_F(MetadataWriterTest, choosesTheWriterByTheExtension)
{
    const QString kRefusal = QStringLiteral("unsupportedFormat ");
    const struct {
        QString extension;
        QString tagError;
        QString pictureError;
    } cases[] = {
        {QStringLiteral("mp3"), {}, {}},
        {QStringLiteral("MP3"), {}, {}},
        {QStringLiteral("flac"), {}, {}},
        {QStringLiteral("Wav"), {}, {}},
        {QStringLiteral("aiff"), {}, {}},
        {QStringLiteral("AIF"), {}, {}},
        {QStringLiteral("m4a"), {}, kRefusal + QStringLiteral("m4a")},
        {QStringLiteral("aifc"), kRefusal + QStringLiteral("aifc"), kRefusal + QStringLiteral("aifc")},
        {QStringLiteral("OGG"), kRefusal + QStringLiteral("ogg"), kRefusal + QStringLiteral("ogg")},
        {QStringLiteral("aac"), kRefusal + QStringLiteral("aac"), kRefusal + QStringLiteral("aac")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.extension.toStdString());
        EXPECT_EQ(errorOn(c.extension, [](const QUrl& url) { MetadataWriter::write(titled(), false, url); }),
                  c.tagError);
        EXPECT_EQ(errorOn(c.extension, [](const QUrl& url) { MetadataWriter::assignArtwork(kPicture, {}, url); }),
                  c.pictureError);
        EXPECT_EQ(errorOn(c.extension,
                          [](const QUrl& url) {
                              MetadataWriter::clean(CleanerField::Title, std::nullopt, std::nullopt, url);
                          }),
                  c.tagError);
    }
}

TEST_F(MetadataWriterTest, findsThePictureItHasWrittenAndTakesItOutWithTheNextSave)
{
    for (const char* extension : {"mp3", "flac", "wav", "aiff"}) {
        const QString name = QLatin1StringView("a.") + QLatin1StringView(extension);
        const QUrl url = QUrl::fromLocalFile(folder.write(name, bytesFor(QLatin1StringView(extension))));
        EXPECT_FALSE(MetadataWriter::containsArtworkBytes(kPicture, url)) << extension;
        MetadataWriter::assignArtwork(kPicture, titled(), url);
        EXPECT_TRUE(MetadataWriter::containsArtworkBytes(kPicture, url)) << extension;
        for (const bool removeArtwork : {false, true}) {
            MetadataWriter::write(titled(), removeArtwork, url);
            EXPECT_FALSE(MetadataWriter::containsArtworkBytes(kPicture, url)) << extension;
        }
    }
}

TEST_F(MetadataWriterTest, saysThatAPictureIsNotThereAlthoughTheFileWasWritten)
{
    const QString name = QStringLiteral("a b.mp3");
    const QUrl url = QUrl::fromLocalFile(folder.write(name, mpegFrames(1)));
    EXPECT_EQ(errorOf([&] { MetadataWriter::assignArtwork({}, titled(), url); }),
              QStringLiteral("artworkVerificationFailed a b.mp3"));
    EXPECT_TRUE(folder.read(name).startsWith("ID3"));
}

} // namespace
