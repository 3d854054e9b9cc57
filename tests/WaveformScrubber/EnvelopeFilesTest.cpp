#include "WaveformScrubber/cache/EnvelopeFile.h"
#include "WaveformScrubber/cache/EnvelopeFolder.h"
#include "WaveformScrubber/cache/EnvelopeKey.h"
#include "WaveformScrubber/shape/Envelope.h"
#include "support/FileTimes.h"
#include "support/Machine.h"
#include "support/Stopped.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

const QString kName = QString(64, u'a') + QStringLiteral(".waveform");

class EnvelopeFilesTest : public testing::Test {
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

    void put(const QString& name, const QByteArray& bytes) const { writeFile(path(name), bytes); }

    /// Makes a file look as if nobody had used it for some days.
    void age(const QString& name, int readDays, int writtenDays) const
    {
        const time_t now = time(nullptr);
        const timespec times[2] = {{now - readDays * 86400, 0}, {now - writtenDays * 86400, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path(name)).constData(), times, 0), 0);
    }

    qint64 secondsSinceWritten(const QString& name) const
    {
        return QFileInfo(path(name)).lastModified().secsTo(QDateTime::currentDateTime());
    }

    QStringList entries() const { return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden); }

    QTemporaryDir m_folder;
};

} // namespace

TEST(EnvelopeKey, HashesTheLocationAndTheStamp)
{
    // Digests by sha256sum of the text on the right.
    const struct {
        const char* path;
        qint64 byteCount;
        timespec modifiedAt;
        const char* text;
    } cases[] = {
        {"/music/a.mp3", 123, {1700000000, 500000000}, "/music/a.mp3|123|1700000000.5|4096|2"},
        {"/music/./b/../a.mp3", 0, {1700000000, 0}, "/music/a.mp3|0|1700000000.0|4096|2"},
        {"/m/Ночь.flac", 7, {-1, 0}, "/m/Ночь.flac|7|-1.0|4096|2"},
        {"/a", 5, {1700000000, 123456700}, "/a|5|1700000000.1234567|4096|2"},
    };
    const QStringList digests{QStringLiteral("1eda0d9ca591a22e3b72d8dd8d28286c15a98fd5e43f1f9077e45a3dece293b9"),
                              QStringLiteral("bd6081f7d859520a0c05103760d23f7bf77a944dab5696725575acdb810b935a"),
                              QStringLiteral("31d64d1a31506edd4be1eb6d256ba861d5f42fcbc79866ef567c7daa0ad4894c"),
                              QStringLiteral("6b20fbeefae19739589f4cee2202b62a059bd0edf75168a991e9097d1b938bcd")};
    for (std::size_t index = 0; index < std::size(cases); ++index) {
        const auto& [path, byteCount, modifiedAt, text] = cases[index];
        const FileStamp stamp{.byteCount = byteCount, .modifiedAt = modifiedAt};
        EXPECT_EQ(envelopeKey(QUrl::fromLocalFile(QString::fromUtf8(path)), stamp), digests[qsizetype(index)]) << text;
    }
}

TEST_F(EnvelopeFilesTest, AnEntryIsFloatsOfTheSmallerEndAndNothingElse)
{
    std::vector<float> samples(kEnvelopeSampleCount, 0.25F);
    samples.front() = 1;
    const QString entry = path(QStringLiteral("new/folders/") + kName);
    EXPECT_TRUE(EnvelopeFile::write(entry, samples));
    EXPECT_EQ(readFile(entry).size(), 16384);
    EXPECT_EQ(readFile(entry).first(8), QByteArray::fromHex("0000803f0000803e"));
    EXPECT_EQ(EnvelopeFile::read(entry), samples);

    samples.pop_back();
    EXPECT_FALSE(EnvelopeFile::write(path(kName), samples));
    EXPECT_FALSE(QFile::exists(path(kName)));
}

TEST_F(EnvelopeFilesTest, AnyOtherLengthCountsAsAbsent)
{
    EXPECT_EQ(EnvelopeFile::read(path(kName)), std::nullopt);
    EXPECT_EQ(EnvelopeFile::read(m_folder.path()), std::nullopt);
    for (const int size : {0, 16383, 16385, 32768}) {
        put(kName, QByteArray(size, '\0'));
        EXPECT_EQ(EnvelopeFile::read(path(kName)), std::nullopt) << size;
        EXPECT_TRUE(QFile::exists(path(kName)));
    }
    EXPECT_TRUE(EnvelopeFile::write(path(kName), std::vector<float>(kEnvelopeSampleCount)));
    EXPECT_TRUE(EnvelopeFile::read(path(kName)));
}

TEST_F(EnvelopeFilesTest, AWriteThatFailsLeavesWhatWasThere)
{
    const std::vector<float> before(kEnvelopeSampleCount, 0.5F);
    ASSERT_TRUE(EnvelopeFile::write(path(kName), before));
    const std::vector<float> after(kEnvelopeSampleCount, 1.0F);
    // The disk is full behind the first 8 KB.
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit small{8192, old.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_FALSE(EnvelopeFile::write(path(kName), after));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &old), 0);
    signal(SIGXFSZ, handler);
    EXPECT_EQ(EnvelopeFile::read(path(kName)), before);
    EXPECT_EQ(entries(), QStringList{kName});

    // A folder that takes no files, whoever asks.
    EXPECT_FALSE(EnvelopeFile::write(QStringLiteral("/proc/") + kName, after));
    put(QStringLiteral("file"), "");
    EXPECT_FALSE(EnvelopeFile::write(path(QStringLiteral("file/") + kName), after));
}

TEST_F(EnvelopeFilesTest, AReadMarksTheEntryAsUsedOnceADay)
{
    ASSERT_TRUE(EnvelopeFile::write(path(kName), std::vector<float>(kEnvelopeSampleCount)));
    age(kName, 0, 100);
    EXPECT_TRUE(EnvelopeFile::read(path(kName)));
    EXPECT_LT(secondsSinceWritten(kName), 60);

    setModified(path(kName), QDateTime::currentDateTime().addSecs(-3600));
    EXPECT_TRUE(EnvelopeFile::read(path(kName)));
    EXPECT_GE(secondsSinceWritten(kName), 3600);
}

TEST_F(EnvelopeFilesTest, OnlyEntriesAreCountedSweptAndEmptied)
{
    const QString unfinished = kName + QStringLiteral(".QzbTfA");
    const QString old = QString(64, u'0') + QStringLiteral(".waveform");
    const QString readLately = QString(64, u'1') + QStringLiteral(".waveform");
    const QString usedLately = QString(64, u'2') + QStringLiteral(".waveform");
    const QStringList foreign{QStringLiteral("notes.txt"), QString(63, u'a') + QStringLiteral(".waveform"),
                              QString(64, u'A') + QStringLiteral(".waveform"), kName + QStringLiteral(".tar.gz"),
                              u'x' + kName};
    for (const QString& name : foreign + QStringList{kName, unfinished, old, readLately, usedLately})
        put(name, QByteArray(10, 'x'));
    ASSERT_TRUE(QFile::link(path(foreign.first()), path(QString(64, u'3') + QStringLiteral(".waveform"))));
    for (const QString& name : foreign + QStringList{unfinished, old})
        age(name, 200, 200);
    age(readLately, 179, 200);
    age(usedLately, 200, 179);

    EXPECT_EQ(EnvelopeFolder::size(m_folder.path(), {}), (EnvelopeCacheSize{50, 5}));
    const QDateTime limit = QDateTime::currentDateTimeUtc().addDays(-180);
    EnvelopeFolder::sweep(m_folder.path(), limit, stoppedToken());
    EXPECT_TRUE(QFile::exists(path(old))) << "stopped";
    EnvelopeFolder::sweep(m_folder.path(), limit, {});
    EXPECT_FALSE(QFile::exists(path(old)));
    EXPECT_FALSE(QFile::exists(path(unfinished)));
    EXPECT_EQ(EnvelopeFolder::size(m_folder.path(), {}), (EnvelopeCacheSize{30, 3}));
    EnvelopeFolder::empty(m_folder.path(), {});
    EXPECT_EQ(EnvelopeFolder::size(m_folder.path(), {}), EnvelopeCacheSize());
    for (const QString& name : foreign)
        EXPECT_TRUE(QFile::exists(path(name))) << qPrintable(name);
    EXPECT_EQ(EnvelopeFolder::size(path(QStringLiteral("none")), {}), EnvelopeCacheSize());
}
