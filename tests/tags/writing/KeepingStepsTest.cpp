#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WriterFolder.h"
#include "tags/keeping/KeepingWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

TEST(KeepingStepsTest, leaveAWholeFileAtEveryStep)
{
    const QByteArray tag = id3v2(textFrame("TIT2", "Old") + textFrame("TPE1", "A"));
    const QByteArray picture = "\x89PNG picture";
    AudioTags tags;
    tags.title = QStringLiteral("New");
    const auto save = [&](const QString& path) {
        KeepingWriter::write(tags, TagField::Title, QUrl::fromLocalFile(path));
    };
    const auto saveWithPicture = [&](const QString& path) {
        KeepingWriter::assignArtwork(picture, tags, TagField::Title, QUrl::fromLocalFile(path));
    };
    const struct {
        const char* name;
        QByteArray bytes;
        Change change;
    } cases[] = {
        {"sound.mp3", tag + mpegFrames(3) + ape({"Title=Old"}) + id3v1({.title = "Old"}), save},
        {"sound.flac", flac(1000, {"TITLE=Old", "ARTIST=A"}), save},
        {"sound.wav", wave(1000, info(riffChunk("INAM", "Old")) + riffChunk("id3 ", tag)), save},
        {"sound.aiff", aiff(1000, aiffChunk("NAME", "Old") + aiffChunk("ID3 ", tag)), save},
        {"sound.m4a", m4a(itemAtom("\251nam", 1, "Old")), save},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        expectWholeAtEveryStep(QLatin1StringView(c.name), c.bytes, c.change);
    }
    // Looking for the picture comes behind the swap, so that only what fails before leaves the old file.
    const WriterFolder folder;
    const QString path = folder.write(QStringLiteral("a.mp3"), tag + mpegFrames(3));
    saveWithPicture(path);
    EXPECT_EQ(folder.names(), QStringList{QStringLiteral("a.mp3")});
    EXPECT_TRUE(folder.read(QStringLiteral("a.mp3")).contains(picture));
}

} // namespace
