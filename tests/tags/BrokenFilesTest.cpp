#include "support/TagBytes.h"
#include "support/TagsOf.h"
#include "tags/bytes/ByteSource.h"

#include <QDirIterator>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

namespace {

using namespace TagBytes;

/// A small healthy file of every kind, with every kind of tag.
QList<QByteArray> healthyFiles()
{
    const QByteArray tag =
        id3v2(textFrame("TIT2", "Title") + describedFrame("COMM", "", "Text") + pictureFrame("picture"));
    return {tag + mpegFrames(4) + ape({"Title=Ape"}) + id3v1({.title = "V1"}),
            tag + flac(44100, {"TITLE=T"}, flacBlock(6, flacPicture("picture"))),
            wave(100, info(riffChunk("INAM", "T")) + riffChunk("id3 ", tag)),
            aiff(100, aiffChunk("NAME", "T") + aiffChunk("ID3 ", tag)),
            m4a(itemAtom("\xA9nam", 1, "T") + freeformAtom("com.apple.iTunes", "initialkey", "8A")),
            readFile(QStringLiteral(VELMORA_FUZZ_SEEDS "/adts.aac"))};
}

/// No item may hold more than the file does.
void expectBounded(const Asset& asset, const QByteArray& bytes)
{
    for (const MetadataItem& item : asset.items) {
        EXPECT_LE(item.dataValue.value_or(QByteArray()).size(), bytes.size());
        EXPECT_LE(item.stringValue.value_or(QString()).size(), 3 * bytes.size()); // "A / B" for each "A" and "B"
    }
}

TEST(BrokenFilesTest, survivesEveryTruncation)
{
    for (const QByteArray& bytes : healthyFiles()) {
        for (qsizetype size = 0; size < std::min<qsizetype>(bytes.size(), 2500); ++size) {
            const QByteArray cut = bytes.first(size);
            expectBounded(assetOf(cut, QStringLiteral("mp3")), cut);
        }
    }
}

TEST(BrokenFilesTest, survivesEveryExtremeByte)
{
    for (const QByteArray& bytes : healthyFiles()) {
        for (qsizetype offset = 0; offset < std::min<qsizetype>(bytes.size(), 1200); ++offset) {
            for (const char value : {'\0', '\x7F', '\x80', '\xFF'}) {
                QByteArray changed = bytes;
                changed[offset] = value;
                expectBounded(assetOf(changed), changed);
            }
        }
    }
}

TEST(BrokenFilesTest, comesToAnEndWithFilesMadeToHoldIt)
{
    QByteArray nested;
    for (int depth = 0; depth < 20000; ++depth)
        nested.prepend(big(static_cast<quint64>(nested.size()) + 8, 4) + "moov");
    QByteArray chapters;
    for (int depth = 0; depth < 2000; ++depth)
        chapters = frame("CHAP", QByteArray("x\0", 2) + QByteArray(16, '\0') + chapters);
    constexpr int kMany = 300'000;
    const std::pair<const char*, QByteArray> cases[] = {
        {"nested atoms", atom("ftyp", "M4A ") + nested},
        {"nested chapters", id3v2(chapters)},
        {"tiny frames", id3v2(textFrame("TIT2", "").repeated(kMany)) + mpegFrames(3)},
        {"zero bytes as values", id3v2(frame("TPE1", QByteArray(3 * kMany, '\0'))) + mpegFrames(3)},
        {"empty tags", id3v2({}).repeated(kMany)},
        {"empty chunks", "RIFF" + little(0xFFFFFFFF, 4) + "WAVE" + riffChunk("LIST", {}).repeated(kMany)},
        {"empty blocks", "fLaC" + flacBlock(6, {}).repeated(kMany)},
        {"empty atoms", atom("ftyp", {}) + atom("free", {}).repeated(kMany)},
        {"syncs without frames", QByteArray(kMany, '\xFF')},
        {"false frames", QByteArray("\xFF\xFB\x90\x64", 4).repeated(kMany)},
    };
    for (const auto& [what, bytes] : cases) {
        QElapsedTimer timer;
        timer.start();
        const Asset asset = assetOf(bytes, QStringLiteral("mp3"));
        EXPECT_LE(timer.elapsed(), ByteSource::kDefaultTimeLimit.count() + 1000) << what;
        EXPECT_LE(asset.items.size(), 4096u) << what;
    }
}

/// A file on a disk that answers late.
class SlowBytes final : public ByteSource {
public:
    SlowBytes(QByteArray bytes, const ReadLimits& limits)
        : ByteSource(limits)
        , m_bytes(std::move(bytes))
    {
    }
    qint64 size() const override { return m_bytes.size(); }

protected:
    qint64 fill(qint64 offset, std::span<std::byte> target) override
    {
        const Clock::time_point begin = Clock::now();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        addWaiting(Clock::now() - begin);
        std::memcpy(target.data(), m_bytes.constData() + offset, target.size());
        return static_cast<qint64>(target.size());
    }

private:
    const QByteArray m_bytes;
};

TEST(BrokenFilesTest, yieldsAllOrNothingOfAFileThatTakesLong)
{
    using std::chrono::milliseconds;
    const QByteArray healthy = id3v2(textFrame("TIT2", "Title") + pictureFrame("picture")) + mpegFrames(50);
    const QByteArray endless = id3v2({}).repeated(100'000); // one tag after another
    const std::tuple<const char*, QByteArray, ReadLimits, bool> cases[] = {
        {"waits longer than it may work", healthy, {.ownTime = milliseconds(400)}, true},
        {"waits too long", healthy, {.wallTime = milliseconds(60)}, false},
        {"reads too often", endless, {.readCount = 20}, false},
        {"reads too much", healthy, {.timesSize = 0, .byteCount = 1000}, false},
    };
    for (const auto& [what, bytes, limits, isRead] : cases) {
        SlowBytes source(bytes, limits);
        QElapsedTimer timer;
        timer.start();
        const Asset asset = AssetReader::read(source, QStringLiteral("mp3"), {});
        EXPECT_LT(timer.elapsed(), 5000) << what;
        EXPECT_EQ(source.wasCutShort(), !isRead) << what;
        EXPECT_EQ(asset.sound.has_value(), isRead) << what;
        EXPECT_EQ(asset.items.size(), isRead ? 2u : 0u) << what;
    }
}

TEST(BrokenFilesTest, survivesWhatTheFuzzerFound)
{
    int count = 0;
    for (const char* folder : {VELMORA_FUZZ_SEEDS, VELMORA_TEST_DATA "/tags"}) {
        for (QDirIterator files(QString::fromUtf8(folder), QDir::Files); files.hasNext(); ++count) {
            const QString path = files.next();
            const QByteArray bytes = readFile(path);
            SCOPED_TRACE(path.toStdString());
            for (QStringView extension : {u"mp3", u"aac", u""})
                expectBounded(assetOf(bytes, extension.toString()), bytes);
        }
    }
    EXPECT_GE(count, 6) << "the seeds are not where they are looked for";
}

} // namespace
