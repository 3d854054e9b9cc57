#include "tags/vault/FileAnatomy.h"

#include "support/TagBytes.h"
#include "tags/writing/RewriteSource.h"

#include <gtest/gtest.h>

using namespace TagBytes;

namespace {

using Stretches = std::vector<FileAnatomy::Stretch>;

FileAnatomy anatomyOf(const QByteArray& file, const QString& extension)
{
    SourceBytes bytes(file.size(), [&](qint64 offset, qint64 count) { return file.mid(offset, count); });
    return FileAnatomy::read(RewriteSource(bytes, {}), extension);
}

TEST(FileAnatomyTest, findsTheSoundAndWhatIsAroundIt)
{
    const QString mp3 = QStringLiteral("mp3");
    const QByteArray bareFlac = flac(0, {}); // with 1000 bytes of sound
    const QByteArray lyrics = "LYRICSBEGIN000011LYRICS200";
    const QByteArray tag = id3v2(textFrame("TIT2", "x")); // 22 bytes
    QByteArray footed = id3v2(textFrame("TIT2", "x", 4), 4, 0x10);
    footed += "3DI" + footed.sliced(3, 7);
    const struct {
        const char* what;
        QString extension;
        QByteArray file;
        Stretches sound;
        Stretches rest;
    } cases[] = {
        {"bare", mp3, mpegFrames(1), {{0, 417}}, {{0, 0}, {417, 0}}},
        {"nothing", mp3, {}, {}, {{0, 0}}},
        {"two tags", mp3, tag + tag + mpegFrames(1), {{44, 417}}, {{0, 44}, {461, 0}}},
        {"footer", mp3, footed + mpegFrames(1), {{32, 417}}, {{0, 32}, {449, 0}}},
        {"behind", mp3, mpegFrames(1) + ape({"A=b"}) + id3v1({}), {{0, 417}}, {{0, 0}, {417, 203}}},
        {"lyrics", mp3, mpegFrames(1) + ape({"A=b"}) + lyrics + id3v1({}), {{0, 417}}, {{0, 0}, {417, 229}}},
        {"behind FLAC",
         QStringLiteral("flac"),
         bareFlac + ape({"A=b"}) + id3v1({}),
         {{bareFlac.size() - 1000, 1000}},
         {{0, bareFlac.size() - 1000}, {bareFlac.size(), 203}}},
        {"only a tag", mp3, tag, {}, {{0, 22}}},
        {"two of data",
         QStringLiteral("WAV"),
         wave(2, riffChunk("data", "abc")),
         {{44, 4}, {56, 3}},
         {{0, 44}, {48, 8}, {59, 1}}},
        {"empty data", QStringLiteral("wav"), wave(0), {}, {{0, 44}}},
        {"64-bit size",
         QStringLiteral("m4a"),
         atom("ftyp", "M4A ") + big(1, 4) + "mdat" + big(20, 8) + "1234" + atom("moov", {}) + "tail",
         {{28, 4}},
         {{0, 28}, {32, 12}}},
        {"up to the end",
         QStringLiteral("m4a"),
         atom("ftyp", "M4A ") + atom("moov", {}) + big(0, 4) + "mdat1234",
         {{28, 4}},
         {{0, 28}, {32, 0}}},
    };
    for (const auto& c : cases) {
        const FileAnatomy anatomy = anatomyOf(c.file, c.extension);
        EXPECT_TRUE(anatomy.sound == c.sound) << c.what;
        EXPECT_TRUE(anatomy.rest(c.file.size()) == c.rest) << c.what;
    }
}

TEST(FileAnatomyTest, soundIsToldApartByItsBeginItsEndAndItsParts)
{
    const auto digestOf = [](const QByteArray& sound) { return anatomyOf(sound, QStringLiteral("mp3")).soundDigest; };
    constexpr qint64 kSample = FileAnatomy::kSoundSampleSize;
    constexpr qint64 kBlock = FileAnatomy::kSoundBlockSize;
    for (const qint64 size : {qint64(1), kSample - 1, kSample, kSample + 1, 3 * kSample, 10 * kSample + 7}) {
        const QByteArray sound(size, 'x');
        const QByteArray digest = digestOf(sound);
        EXPECT_NE(digestOf(sound + 'x'), digest) << size;
        // Wherever as many bytes as lie between two blocks change, one block sees it.
        const qint64 gap = std::max<qint64>(1, size > kSample ? (size - kBlock) / 15 : size / 16);
        for (qint64 begin = 0; begin + gap <= size; begin += gap) {
            QByteArray other = sound;
            other.replace(begin, gap, QByteArray(gap, 'y'));
            EXPECT_NE(digestOf(other), digest) << size << " " << begin;
        }
        for (const qint64 place : {qint64(0), size - 1}) {
            QByteArray other = sound;
            other[place] = 'y';
            EXPECT_NE(digestOf(other), digest) << size;
        }
        EXPECT_EQ(digestOf(id3v2(textFrame("TIT2", "y")) + sound + id3v1({})), digest);
    }
    const auto data = [](const QByteArray& first, const QByteArray& second) {
        return anatomyOf(wave(0, riffChunk("data", first) + riffChunk("data", second)), QStringLiteral("wav"))
            .soundDigest;
    };
    EXPECT_NE(data("aaaa", "bb"), data("aa", "aabb")) << "the same bytes in other parts";
}

/// A track whose chunks begin at these places.
QByteArray movie(const QByteArray& table, const QByteArray& more = {})
{
    return atom("moov", atom("trak", atom("mdia", atom("minf", atom("stbl", table)))) + more);
}

TEST(FileAnatomyTest, chunkOffsetsCountAsPlacesInTheSound)
{
    const QByteArray begin = atom("ftyp", "M4A ");
    const auto offsets = [](quint64 first, quint64 second) {
        return atom("stco", big(0, 4) + big(2, 4) + big(first, 4) + big(second, 4));
    };
    const auto otherOf = [](const QByteArray& file) { return anatomyOf(file, QStringLiteral("m4a")).otherDigest; };
    const QByteArray sound = atom("mdat", "123456");
    const qint64 front = begin.size() + movie(offsets(0, 0)).size() + 8;
    const QByteArray reference = otherOf(begin + movie(offsets(quint64(front), quint64(front + 3))) + sound);
    const auto shifted = [&](qint64 first, qint64 second) {
        return begin + movie(offsets(quint64(first), quint64(second))) + sound;
    };
    EXPECT_NE(otherOf(shifted(front, front + 4)), reference);
    EXPECT_NE(otherOf(shifted(front - 1, front + 3)), reference);
    const qint64 first = begin.size() + 8; // the sound in front of the movie
    EXPECT_EQ(otherOf(begin + sound + movie(offsets(quint64(first), quint64(first + 3)))), reference);
    const QByteArray room = atom("free", QByteArray(77, 'x'));
    const QByteArray tags = atom("udta", atom("meta", "tags") + room) + room;
    const qint64 moved = front + room.size() + tags.size();
    EXPECT_EQ(otherOf(begin + room + movie(offsets(quint64(moved), quint64(moved + 3)), tags) + sound), reference);
    EXPECT_NE(otherOf(begin + movie(atom("stco", big(0, 4) + big(9, 4) + big(1, 4))) + sound), reference)
        << "a table that claims more than it has";
}

} // namespace
