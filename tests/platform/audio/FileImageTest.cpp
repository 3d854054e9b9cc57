#include "platform/audio/FileImage.h"

#include "platform/audio/AudioFileError.h"
#include "support/Machine.h"
#include "support/Stopped.h"
#include "support/Thrown.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <thread>

namespace {

constexpr qint64 kMebibyte = 1024 * 1024;

/// Bytes that tell their place.
QByteArray pattern(qint64 count)
{
    QByteArray bytes(count, '\0');
    for (qint64 i = 0; i < count; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

class FileImageTest : public testing::Test {
protected:
    QString write(const QByteArray& bytes, const char* name = "file") { return writeFile(path(name), bytes); }

    QString path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    static QByteArray read(const FileImage& image, qint64 offset, qint64 count)
    {
        QByteArray bytes(count, '\0');
        const qint64 got = image.read(offset, {reinterpret_cast<std::byte*>(bytes.data()), static_cast<size_t>(count)});
        return got < 0 ? QByteArray("error") : bytes.first(got);
    }

    QTemporaryDir m_folder;
};

TEST_F(FileImageTest, refusesWhatIsNoFile)
{
    ASSERT_EQ(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    for (const QString& name : {m_folder.path(), path("pipe"), path("missing"), QStringLiteral("/dev/null")}) {
        const auto error = thrown<AudioFileError>([&] { FileImage::open(name); });
        ASSERT_TRUE(error) << name.toStdString() << " was opened";
        EXPECT_EQ(error->which(), AudioFileError::Case::CannotOpen);
    }
}

TEST_F(FileImageTest, readsTheSameBeforeAndAfterFilling)
{
    for (const qint64 size : {qint64(0), qint64(1), kMebibyte, 2 * kMebibyte + 77}) {
        const QByteArray bytes = pattern(size);
        const auto image = FileImage::open(write(bytes));
        for (const bool isFilled : {false, true}) {
            if (isFilled)
                image->fill({});
            EXPECT_EQ(image->isHeld(), isFilled || size == 0);
            EXPECT_EQ(image->size(), size);
            EXPECT_TRUE(read(*image, 0, size + 100) == bytes);
            EXPECT_TRUE(read(*image, size / 2, 1000) == bytes.mid(size / 2, 1000));
            EXPECT_EQ(read(*image, size, 10), QByteArray());
            EXPECT_EQ(read(*image, size + 10, 10), QByteArray());
            EXPECT_EQ(read(*image, -1, 10), QByteArray());
        }
    }
}

TEST_F(FileImageTest, isUndisturbedByWhatHappensToTheName)
{
    const QByteArray bytes = pattern(3 * kMebibyte);
    const auto image = FileImage::open(write(bytes));
    ASSERT_TRUE(QFile::rename(path("file"), path("old")));
    write(QByteArray(5 * kMebibyte, 'x'));
    EXPECT_TRUE(read(*image, 0, image->size()) == bytes);
    ASSERT_TRUE(QFile::remove(path("old")));
    image->fill({});
    EXPECT_TRUE(image->isHeld());
    EXPECT_TRUE(read(*image, 0, image->size()) == bytes);
}

TEST_F(FileImageTest, endsWhereAFileThatIsNotHeldEnds)
{
    const QByteArray bytes = pattern(2 * kMebibyte);
    const auto image = FileImage::open(write(bytes));
    ASSERT_TRUE(QFile::resize(path("file"), kMebibyte + 5));
    image->fill({});
    EXPECT_FALSE(image->isHeld());
    EXPECT_TRUE(read(*image, 0, 2 * kMebibyte) == bytes.first(kMebibyte + 5));
    // Grown beyond its size of opening: the image keeps to that.
    write(bytes + bytes);
    EXPECT_TRUE(read(*image, 0, 4 * kMebibyte) == bytes);
}

TEST_F(FileImageTest, holdsNothingBeyondTheLimitOrAfterAStop)
{
    const QByteArray bytes = pattern(kMebibyte + 1);
    const auto large = FileImage::open(write(bytes), kMebibyte);
    large->fill({});
    EXPECT_FALSE(large->isHeld());
    EXPECT_TRUE(read(*large, 0, large->size()) == bytes);

    const auto stopped = FileImage::open(path("file"));
    stopped->fill(stoppedToken());
    EXPECT_FALSE(stopped->isHeld());
    EXPECT_TRUE(read(*stopped, 0, stopped->size()) == bytes);
}

TEST_F(FileImageTest, isReadWhileItIsFilled)
{
    const QByteArray bytes = pattern(24 * kMebibyte);
    const auto image = FileImage::open(write(bytes));
    std::atomic<int> wrong = 0;
    const auto readAll = [&](qint64 step) {
        for (qint64 offset = 0; offset < bytes.size(); offset += step)
            wrong += read(*image, offset, 70'000) != bytes.mid(offset, 70'000);
    };
    {
        std::jthread fill([&] { image->fill({}); });
        std::jthread one([&] { readAll(50'021); });
        std::jthread other([&] { readAll(130'003); });
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_TRUE(image->isHeld());
}

} // namespace
