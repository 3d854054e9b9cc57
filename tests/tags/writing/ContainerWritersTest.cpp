#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/TagsOf.h"
#include "support/WriterFolder.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/writing/MetadataWriter.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

TEST(ContainerWritersTest, leaveAWholeFileAtEveryStep)
{
    const QByteArray tag = id3v2(textFrame("TIT2", "Old") + textFrame("TPE1", "A"));
    const struct {
        const char* name;
        QByteArray bytes;
    } files[] = {
        {"sound.flac", flac(1000, {"TITLE=Old", "ARTIST=A"})},
        {"sound.wav", wave(1000, info(riffChunk("INAM", "Old")) + riffChunk("id3 ", tag))},
        {"sound.aiff", aiff(1000, aiffChunk("NAME", "Old") + aiffChunk("ID3 ", tag))},
        {"sound.m4a", m4a(itemAtom("\251nam", 1, "Old") + itemAtom("\251"
                                                                   "ART",
                                                                   1, "A"))},
    };
    AudioTags tags;
    tags.title = QStringLiteral("New");
    const Change changes[] = {
        [&](const QString& path) { MetadataWriter::write(tags, false, QUrl::fromLocalFile(path)); },
        [&](const QString& path) {
            MetadataWriter::clean(CleanerField::Title, tags.title, {}, QUrl::fromLocalFile(path));
        },
    };
    for (const auto& file : files) {
        for (const Change& change : changes) {
            SCOPED_TRACE(file.name);
            expectWholeAtEveryStep(QLatin1StringView(file.name), file.bytes, change);
        }
    }
}

/// Files of other projects' tests, which are not part of this project.
TEST(ContainerWritersTest, rewriteForeignFilesOrLeaveThem)
{
    const QString corpus = QStringLiteral(VELMORA_CORPUS);
    if (!QFileInfo::exists(corpus))
        GTEST_SKIP() << "there is no corpus";
    const WriterFolder folder;
    AudioTags tags;
    tags.title = QStringLiteral("A title longer than any that stands there");
    int rewritten = 0;
    const QStringList names{QStringLiteral("*.flac"), QStringLiteral("*.wav"), QStringLiteral("*.aif*"),
                            QStringLiteral("*.m4a")};
    for (QDirIterator files(corpus, names, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        QFile original(files.next());
        ASSERT_TRUE(original.open(QIODevice::ReadOnly));
        const QByteArray bytes = original.readAll();
        const QString name = files.fileName();
        const QUrl url = QUrl::fromLocalFile(folder.write(name, bytes));
        const double seconds = AudioMetadataLoader::load(url, {}).duration;
        if (errorOf([&] { MetadataWriter::write(tags, false, url); }).isEmpty()) {
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
