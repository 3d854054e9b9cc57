#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/writing/MetadataWriter.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

constexpr qint64 kSoundSize = 0x1'0000'0000 + 12345;

/// A file whose sound is a hole with an end.
QUrl makeLarge(const FileFolder& folder, const QString& name, const QByteArray& begin)
{
    const QUrl url = folder.write(name, begin);
    QFile file(url.toLocalFile());
    const bool isMade =
        file.open(QIODevice::ReadWrite) && file.seek(begin.size() + kSoundSize - 3) && file.write("end") == 3;
    EXPECT_TRUE(isMade);
    return url;
}

TEST(LargeFilesTest, keepSoundBeyondFourGigabytes)
{
    const QByteArray flacBegin = "fLaC" + flacBlock(0, QByteArray(34, '\1'), true);
    const QByteArray places = atom("co64", big(0, 4) + big(1, 4) + big(quint64(kSoundSize), 8));
    const QByteArray movie = atom("moov", atom("trak", atom("mdia", atom("minf", atom("stbl", places)))));
    const QByteArray sound = big(1, 4) + "mdat" + big(quint64(kSoundSize) + 16, 8);
    const std::pair<const char*, QByteArray> cases[] = {
        {"sound.flac", flacBegin},
        {"sound.m4a", atom("ftyp", "M4A ") + movie + sound},
    };
    for (const auto& [name, begin] : cases) {
        const FileFolder folder;
        const QUrl url = makeLarge(folder, QLatin1StringView(name), begin);
        const AudioTags tags = tagsWith({{&AudioTags::title, QStringLiteral("T")}});
        MetadataWriter::write(tags, false, url);
        QFile file(url.toLocalFile());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        const qint64 growth = file.size() - begin.size() - kSoundSize;
        EXPECT_GT(growth, 0) << name;
        EXPECT_LT(growth, 200) << name;
        EXPECT_TRUE(file.seek(file.size() - 3) && file.readAll() == "end") << name;
        EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags.title, tags.title) << name;
        if (begin.contains("co64")) {
            file.seek(0);
            EXPECT_TRUE(
                file.read(1000).contains("co64" + big(0, 4) + big(1, 4) + big(quint64(kSoundSize + growth), 8)));
        }
    }
}

} // namespace
