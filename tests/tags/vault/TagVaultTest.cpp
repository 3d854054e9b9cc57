#include "tags/vault/TagVault.h"

#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/WriteErrors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <sys/resource.h>

using namespace TagBytes;

namespace {

const QByteArray kPicture = "\x89PNG" + QByteArray(300, 'p');

class TagVaultTest : public testing::Test {
protected:
    QString vaultPath() const { return m_folder.path(QStringLiteral("data/vault")); }
    QStringList entries() const { return filesBelow(vaultPath()); }

    FileFolder m_folder;
    TagVault m_vault{vaultPath()};
};

QString failureOfRestoring(TagVault& vault, const QUrl& url)
{
    return failureOf([&](const QUrl& file) { vault.restore(file); }, url);
}

TEST_F(TagVaultTest, leavesAFileOfOtherSoundAlone)
{
    const std::tuple<QString, QByteArray, QByteArray> cases[] = {
        {QStringLiteral("a.mp3"), id3v2(textFrame("TIT2", "x")) + mpegFrames(30), mpegFrames(31)},
        {QStringLiteral("a.mp3"), mpegFrames(30) + "last", mpegFrames(30) + "LAST"},
        {QStringLiteral("a.wav"), wave(400), wave(401)},
        {QStringLiteral("a.wav"), wave(400, riffChunk("data", "ab")), wave(400, riffChunk("data", "ac"))},
        {QStringLiteral("a.m4a"), m4a({}, QByteArray(3'000'000, 'x')), m4a({}, QByteArray(3'000'000, 'y'))},
    };
    for (const auto& [name, original, other] : cases) {
        const QUrl url = m_folder.write(name, original);
        m_vault.keep(url);
        m_folder.write(name, other);
        EXPECT_EQ(failureOfRestoring(m_vault, url), QStringLiteral("noEntry")) << name.toStdString();
        EXPECT_TRUE(contentOf(url) == other);

        m_vault.keep(url); // the file of this path is another one now
        EXPECT_EQ(failureOf(writing(fullTags()), url), QString());
        EXPECT_EQ(failureOfRestoring(m_vault, url), QString());
        EXPECT_TRUE(contentOf(url) == other);

        m_folder.write(name, original); // and now the first one has come back, edited elsewhere
        EXPECT_EQ(failureOf(writing({}), url), QString());
        EXPECT_EQ(failureOfRestoring(m_vault, url), QString());
        EXPECT_TRUE(contentOf(url) == original) << "both have an entry";
    }
}

TEST_F(TagVaultTest, refusesWhatAnotherProgramChangedBesidesTags)
{
    const QByteArray picture = flacBlock(6, flacPicture(kPicture));
    const QByteArray room = atom("free", QByteArray(300, '\0'));
    const QByteArray tagged = m4a(itemAtom("\251nam", 1, "old"));
    QByteArray brand = tagged;
    brand.replace(8, 4, "M4B ");
    QByteArray codec = tagged;
    codec.replace("alac", "alax");
    QByteArray rate = wave(400);
    rate[24] = 1;
    const struct {
        const char* what;
        QString name;
        QByteArray original;
        QByteArray present;
        bool isRefused;
    } cases[] = {
        {"chunk added", QStringLiteral("a.wav"), wave(400), wave(400, riffChunk("cue ", "1234")), true},
        {"chunk gone", QStringLiteral("a.wav"), wave(400, riffChunk("cue ", "1234")), wave(400), true},
        {"chunk changed", QStringLiteral("a.wav"), wave(400), rate, true},
        {"chunks swapped", QStringLiteral("a.aif"), aiff(9, aiffChunk("AAAA", "12") + aiffChunk("BBBB", "12")),
         aiff(9, aiffChunk("BBBB", "12") + aiffChunk("AAAA", "12")), true},
        {"tags moved", QStringLiteral("a.wav"), wave(400, info({}) + riffChunk("cue ", "1")),
         wave(400, riffChunk("cue ", "1") + info({})), false},
        {"block added", QStringLiteral("a.flac"), flac(9, {}), flac(9, {}, flacBlock(2, "appl")), true},
        {"block changed", QStringLiteral("a.flac"), flac(9, {}), flac(8, {}), true},
        {"picture and padding", QStringLiteral("a.flac"), flac(9, {"A=b"}, picture),
         flac(9, {}, flacBlock(1, QByteArray(8000, '\0'))), false},
        {"codec", QStringLiteral("a.m4a"), tagged, codec, true},
        {"brand", QStringLiteral("a.m4a"), tagged, brand, true},
        {"atom added", QStringLiteral("a.m4a"), tagged, tagged + atom("uuid", "x"), true},
        {"room added", QStringLiteral("a.m4a"), tagged, tagged + room, false},
        {"other tags behind an ID3v2 tag", QStringLiteral("a.mp3"), mpegFrames(9), id3v2({}) + mpegFrames(9), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const QUrl url = m_folder.write(c.name, c.original);
        m_vault.keep(url);
        m_folder.write(c.name, c.present);
        const QString extension = c.name.mid(2);
        EXPECT_EQ(failureOfRestoring(m_vault, url),
                  c.isRefused ? QStringLiteral("rewriteFailed ") + extension : QString());
        EXPECT_TRUE(contentOf(url) == (c.isRefused ? c.present : c.original));
        QFile::remove(m_folder.path(c.name));
        QDir(vaultPath()).removeRecursively();
    }
}

TEST_F(TagVaultTest, knowsFilesByTheirPathsInAnyScript)
{
    const QString names[] = {QStringLiteral("Ёлка — микс.mp3"), QStringLiteral("🎛️ set.mp3"),
                             QStringLiteral("cafe\u0301.mp3"), QStringLiteral("caf\u00e9.mp3"),
                             QStringLiteral("a%20b #?.mp3")};
    int number = 0;
    for (const QString& name : names) {
        const QUrl url = m_folder.write(name, id3v2(textFrame("TIT2", "x")) + mpegFrames(++number));
        m_vault.keep(url);
    }
    EXPECT_EQ(entries().size(), std::ssize(names)) << "the two ways to write the same letter are two files";
    number = 0;
    for (const QString& name : names) {
        const QUrl url = QUrl::fromLocalFile(m_folder.path(QStringLiteral("./") + name));
        const QByteArray original = contentOf(url);
        ASSERT_EQ(failureOf(writing(fullTags()), url), QString());
        EXPECT_TRUE(m_vault.holds(url));
        m_vault.restore(url);
        EXPECT_TRUE(contentOf(url) == original) << name.toStdString();
    }
}

TEST_F(TagVaultTest, saysWhatCannotBeKeptOrPutBack)
{
    const Change keep = [&](const QUrl& url) { m_vault.keep(url); };
    const std::tuple<QString, QByteArray, QString> cases[] = {
        {QStringLiteral("a.ogg"), "OggS", QString()},
        {QStringLiteral("a.aifc"), aiff(3), QString()},
        {QStringLiteral("mp3"), mpegFrames(1), QString()},
        {QStringLiteral("a.flac"), id3v2({}) + flac(1, {}), QStringLiteral("unsupportedFormat flac")},
        {QStringLiteral("a.wav"), "RF64" + wave(3).mid(4), QStringLiteral("unsupportedFormat wav")},
        {QStringLiteral("a.wav"), wave(30).chopped(3), kCorrupt},
        {QStringLiteral("a.m4a"), m4a({}).chopped(3), kCorrupt},
        {QStringLiteral("a.m4a"), "short", QStringLiteral("unsupportedFormat m4a")},
        {QStringLiteral("b.mp3"), id3v2(textFrame("TIT2", "x")).chopped(3), kCorrupt},
    };
    for (const auto& [name, bytes, failure] : cases) {
        const QUrl url = m_folder.write(name, bytes);
        EXPECT_EQ(failureOf(keep, url), failure) << name.toStdString();
        EXPECT_FALSE(m_vault.holds(url));
        EXPECT_EQ(failureOfRestoring(m_vault, url), QStringLiteral("noEntry"));
        EXPECT_TRUE(contentOf(url) == bytes);
    }
    EXPECT_FALSE(QDir(vaultPath()).exists()) << "only the first entry makes it";
    EXPECT_EQ(failureOf(keep, QUrl::fromLocalFile(m_folder.path(QStringLiteral("none.mp3")))),
              QStringLiteral("fileNoSuchFile"));
}

TEST_F(TagVaultTest, changesWhatALinkLeadsToUnderTheLinksPath)
{
    const QByteArray original = id3v2(textFrame("TIT2", "x")) + mpegFrames(3);
    const QUrl file = m_folder.write(QStringLiteral("a.mp3"), original);
    ASSERT_TRUE(QFile::link(QStringLiteral("a.mp3"), m_folder.path(QStringLiteral("b.mp3"))));
    const QUrl link = QUrl::fromLocalFile(m_folder.path(QStringLiteral("b.mp3")));
    m_vault.keep(link);
    EXPECT_FALSE(m_vault.holds(file));
    ASSERT_EQ(failureOf(writing(fullTags()), link), QString());
    m_vault.restore(link);
    EXPECT_TRUE(contentOf(file) == original);
    EXPECT_TRUE(QFileInfo(link.toLocalFile()).isSymLink());
}

TEST_F(TagVaultTest, keepsTheTagsOfLongSoundWithLittleMemory)
{
    const QByteArray tag = id3v2(textFrame("TIT2", "x"));
    const QUrl url = m_folder.write(QStringLiteral("a.mp3"), tag + mpegFrames(10));
    constexpr qint64 kLong = qint64(3) << 30;
    QFile file(url.toLocalFile());
    ASSERT_TRUE(file.resize(kLong)) << "a hole, so it takes no room";
    constexpr long kMostKilobytes = 64 * 1024;
    struct rusage before = {};
    struct rusage after = {};
    ASSERT_EQ(getrusage(RUSAGE_SELF, &before), 0);
    m_vault.keep(url);
    ASSERT_EQ(getrusage(RUSAGE_SELF, &after), 0);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, kMostKilobytes);
    EXPECT_LT(QFileInfo(entries().first()).size(), 1000);
}

} // namespace
