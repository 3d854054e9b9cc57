#include "core/library/session/FilePresence.h"

#include "platform/FileURL.h"
#include "support/Machine.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <semaphore>

TEST(FilePresence, AsksTheFileSystem)
{
    const QTemporaryDir folder;
    const QString file = writeFile(folder.filePath(QStringLiteral("é ж%.mp3")));
    QList<QUrl> urls;
    std::vector<bool> expected;
    for (int i = 0; i < 20'000; ++i) { // enough for several threads
        const bool isThere = i % 3 == 0;
        urls.append(FileURL::fromPath(isThere ? file : folder.filePath(QString::number(i))));
        expected.push_back(isThere);
    }
    urls.append(FileURL::fromPath(file + QStringLiteral("/below a file")));
    expected.push_back(false);
    EXPECT_EQ(FilePresence::check(urls), expected);
    EXPECT_TRUE(FilePresence::check({}).empty());
}

TEST(FilePresence, ASilentVolumeCountsAsPresent)
{
    // What outlives the check stays alive until its threads are through.
    struct Silence {
        std::counting_semaphore<8> end{0};
        std::counting_semaphore<8> gone{0};
    };
    const auto silence = std::make_shared<Silence>();
    const FilePresence::Probe probe = [silence](const QByteArray& path) {
        if (!path.startsWith("/proc/"))
            return false;
        silence->end.acquire();
        silence->gone.release();
        return false;
    };
    // "/proc" is a volume of its own everywhere.
    const QList<QUrl> urls{FileURL::fromPath(QStringLiteral("/a")), FileURL::fromPath(QStringLiteral("/proc/silent")),
                           FileURL::fromPath(QStringLiteral("/b"))};
    EXPECT_EQ(FilePresence::check(urls, std::chrono::milliseconds(50), probe), (std::vector<bool>{false, true, false}));
    silence->end.release();
    silence->gone.acquire();
}

TEST(FilePresence, VolumeOfAPath)
{
    const QList<QByteArray> mounts{"", "/media", "/media/usb", "/proc"};
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"/a", ""},           {"/media/a", "/media"}, {"/media/usb/a", "/media/usb"}, {"/media/usb2/a", "/media"},
        {"/media", "/media"},
    };
    for (const auto& [path, volume] : cases)
        EXPECT_EQ(FilePresence::volumeOf(path, mounts), volume) << path.constData();
}
