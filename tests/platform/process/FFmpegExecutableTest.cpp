#include "platform/process/FFmpegExecutable.h"

#include "support/Machine.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

TEST(FFmpegExecutable, IsLookedForInThisOrder)
{
    const FFmpegExecutable::Places places{
        .resourceFolders = {QStringLiteral("/app/Resources"), QStringLiteral("/app/../share/velmora")},
        .workingDirectory = QStringLiteral("/work dir"),
        .searchPath = QStringLiteral(":/one::relative:/two/:")};
    const QStringList order{QStringLiteral("/app/Resources/MP3Converter/ffmpeg"),
                            QStringLiteral("/share/velmora/MP3Converter/ffmpeg"),
                            QStringLiteral("/work dir/Sources/Velmora/Resources/MP3Converter/ffmpeg"),
                            QStringLiteral("/opt/homebrew/bin/ffmpeg"),
                            QStringLiteral("/usr/local/bin/ffmpeg"),
                            QStringLiteral("/usr/bin/ffmpeg"),
                            QStringLiteral("/one/ffmpeg"),
                            QStringLiteral("/work dir/relative/ffmpeg"),
                            QStringLiteral("/two/ffmpeg")};
    for (qsizetype first = 0; first < order.size(); ++first) {
        const QStringList present = order.sliced(first);
        const auto found = FFmpegExecutable::find(
            places, [&present](const QString& path) { return present.contains(QDir::cleanPath(path)); });
        EXPECT_EQ(found, QUrl::fromLocalFile(order[first])) << first;
    }
    QStringList asked;
    EXPECT_EQ(FFmpegExecutable::find(places,
                                     [&asked](const QString& path) {
                                         asked.append(QDir::cleanPath(path));
                                         return false;
                                     }),
              std::nullopt);
    EXPECT_EQ(asked, order);
    EXPECT_EQ(FFmpegExecutable::find({.workingDirectory = QStringLiteral("/")},
                                     [](const QString& path) { return path.startsWith(QLatin1StringView("/ffmpeg")); }),
              std::nullopt)
        << "an empty search path is not the working directory";
}

TEST(FFmpegExecutable, OnlyFilesThatMayBeExecutedCount)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("ffmpeg"));
    EXPECT_FALSE(FFmpegExecutable::isExecutableFile(path));
    ASSERT_TRUE(QDir().mkdir(path));
    EXPECT_FALSE(FFmpegExecutable::isExecutableFile(path)) << "a folder";
    ASSERT_TRUE(QDir().rmdir(path));
    QFile file(writeFile(path));
    EXPECT_FALSE(FFmpegExecutable::isExecutableFile(path));
    ASSERT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_TRUE(FFmpegExecutable::isExecutableFile(path));
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(path, link));
    EXPECT_TRUE(FFmpegExecutable::isExecutableFile(link)) << "package managers link";
}
