#include "platform/files/FileStamp.h"

#include "support/Machine.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

TEST(FileStamp, TellsSizeAndDateOfAFile)
{
    const QTemporaryDir folder;
    const QUrl url = QUrl::fromLocalFile(folder.filePath(QStringLiteral("Ночь.mp3")));
    EXPECT_FALSE(FileStamp::of(url));
    writeFile(url.toLocalFile(), "123");
    const timespec times[2] = {{0, UTIME_OMIT}, {978'307'200 + 100, 250'000'000}};
    ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(url.toLocalFile()).constData(), times, 0), 0);

    const std::optional<FileStamp> stamp = FileStamp::of(url);
    ASSERT_TRUE(stamp);
    EXPECT_EQ(stamp->byteCount, 3);
    EXPECT_EQ(stamp->modificationDate, 100.25);
    EXPECT_EQ(stamp->modifiedAt.tv_sec, 978'307'300);
    EXPECT_EQ(stamp->modifiedAt.tv_nsec, 250'000'000);
    EXPECT_NE(stamp->inode, 0U);
}

TEST(FileStamp, IsTheSameFileWithTheSameSizeAndAlmostTheSameDate)
{
    const FileStamp stamp{123, 100.5};
    const std::pair<FileStamp, bool> cases[] = {
        {{123, 100.5}, true},    {{123, 100.5009}, true}, {{123, 100.4991}, true},
        {{123, 100.502}, false}, {{123, 100.498}, false}, {{124, 100.5}, false},
    };
    for (const auto& [other, isSame] : cases)
        EXPECT_EQ(stamp.isSameFile(other), isSame) << other.byteCount << ' ' << other.modificationDate;
}
