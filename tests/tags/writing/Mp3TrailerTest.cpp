#include "tags/writing/Mp3Trailer.h"

#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/ApeFilter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kPath = QStringLiteral("a.mp3");

QByteArray withoutHeader(const QByteArray& ape)
{
    return ape.sliced(ApeFilter::kBlockSize);
}

qint64 audioEnd(const QByteArray& bytes, qint64 lowerBound = 0)
{
    const Mp3Trailer::Read read = [&](qint64 offset, qint64 count) {
        EXPECT_TRUE(offset >= lowerBound && offset + count <= bytes.size()) << offset;
        return bytes.sliced(offset, count);
    };
    return Mp3Trailer::audioEnd(read, bytes.size(), lowerBound, kPath);
}

TEST(Mp3TrailerTest, findsTheEndOfTheSound)
{
    const QByteArray v1 = id3v1({.title = "x"});
    const QByteArray tag = ape({"Title=One", "Artist=Two"});
    const QByteArray other = ape({"Album=Three"});
    const QByteArray lyrics = "LYRICSBEGIN000009LYRICS200";
    const struct {
        const char* what;
        QByteArray trailer;
        qint64 sound; ///< bytes of the trailer that count as sound
    } cases[] = {
        {"nothing", {}, 0},
        {"ID3v1", v1, 0},
        {"two ID3v1", v1 + v1, 0},
        {"APEv2", tag, 0},
        {"APEv2 without a header", withoutHeader(tag), 0},
        {"APEv2, ID3v1", tag + v1, 0},
        {"ID3v1, APEv2", v1 + tag, 0},
        {"all mixed", tag + v1 + other + v1 + v1 + tag, 0},
        {"an empty APEv2", ape({}), 0},
        {"lyrics in between", tag + lyrics + v1, tag.size() + lyrics.size()},
        {"a header at the end", tag.first(32), 32},
        {"a header, ID3v1", tag.first(32) + v1, 32},
        {"APEv2 of 131 bytes, whose mark looks like ID3v1", ape({"T=" + QByteArray(131 - 64 - 10, 't')}), 0},
        {"sound, ID3v1 cut short", v1.chopped(1), 127},
    };
    const QByteArray sound = mpegFrames(2);
    for (const auto& c : cases)
        EXPECT_EQ(audioEnd(sound + c.trailer), sound.size() + c.sound) << c.what;
}

TEST(Mp3TrailerTest, staysBehindTheLowerBound)
{
    const QByteArray v1 = id3v1({});
    const QByteArray tag = ape({"Title=One"});
    EXPECT_EQ(audioEnd(v1, 0), 0);
    EXPECT_EQ(audioEnd(v1, 1), 128);
    EXPECT_EQ(audioEnd(tag, 0), 0);
    EXPECT_EQ(audioEnd(QByteArray("xy") + tag, 2), 2);
    EXPECT_EQ(audioEnd(tag, 1), 32) << "the header begins before the sound, so it is none";
    EXPECT_EQ(errorOf([&] { audioEnd(withoutHeader(tag), 1); }), kCorrupt);
    EXPECT_EQ(errorOf([&] { audioEnd(mpegFrames(1) + withSize(tag, 31)); }), kCorrupt);
    EXPECT_EQ(errorOf([&] { audioEnd(mpegFrames(1) + withSize(tag, 0xffffffff)); }), kCorrupt);
    // A size that is wrong but possible leaves the header and what is before the items to the sound.
    EXPECT_EQ(audioEnd(mpegFrames(1) + withSize(tag, 32)), 417 + tag.size() - 32);
}

TEST(Mp3TrailerTest, emptiesFieldsOfId3v1InTheirPlaces)
{
    const QByteArray full =
        "TAG" + QByteArray(30, 't') + QByteArray(30, 'a') + QByteArray(30, 'b') + "1999" + QByteArray(30, 'c') + '\x05';
    QByteArray numbered = full;
    numbered.replace(125, 2, QByteArray("\0\7", 2));
    const auto with = [](QByteArray tag, qsizetype offset, const QByteArray& bytes) {
        return tag.replace(offset, bytes.size(), bytes);
    };
    const auto zeros = [](int count) { return QByteArray(count, '\0'); };
    const QString title = QStringLiteral("ёёёёёёёёёёёёёёё!");
    const struct {
        const char* what;
        QByteArray tag;
        CleanerFields fields;
        std::optional<QString> title;
        QByteArray expected;
    } cases[] = {
        {"nothing", full, {}, title, full},
        {"comment", full, CleanerField::Comment, {}, with(full, 97, zeros(30))},
        {"comment beside a track", numbered, CleanerField::Comment, {}, with(numbered, 97, zeros(28))},
        {"album", full, CleanerField::Album, {}, with(full, 63, zeros(30))},
        {"year", full, CleanerField::Year, {}, with(full, 93, zeros(4))},
        {"track where a comment is", full, CleanerField::Track, {}, full},
        {"track", numbered, CleanerField::Track, {}, with(numbered, 126, zeros(1))},
        {"comment and track", numbered, CleanerField::Comment | CleanerField::Track, {}, with(numbered, 97, zeros(30))},
        {"genre", full, CleanerField::Genre, {}, with(full, 127, "\xff")},
        {"title without one", full, CleanerField::Title, {}, full},
        {"title", full, CleanerField::Title, QStringLiteral("New"), with(full, 3, "New" + zeros(27))},
        {"title cut at a byte", full, CleanerField::Title, u'x' + title,
         with(full, 3, (u'x' + title).toUtf8().first(30))},
        {"empty title", full, CleanerField::Title, QString(), with(full, 3, zeros(30))},
        {"what has no place",
         full,
         CleanerField::Artwork | CleanerField::AlbumArtist | CleanerField::Tempo | CleanerField::Key,
         {},
         full},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Mp3Trailer::filtered(c.tag, c.fields, c.title, kPath).toHex(), c.expected.toHex()) << c.what;
}

TEST(Mp3TrailerTest, takesItemsOutOfApe)
{
    const QByteArrayList items{"Title=T", "Comment=C", "comments=D", "Cover Art (Front)=P", "Album Artist=A", "Mood=M"};
    const std::pair<CleanerFields, QByteArrayList> cases[] = {
        {{}, items},
        {CleanerField::Comment, {items[0], items[3], items[4], items[5]}},
        {CleanerField::Artwork | CleanerField::Title, {items[1], items[2], items[4], items[5]}},
        {CleanerField::AlbumArtist, {items[0], items[1], items[2], items[3], items[5]}},
        {CleanerFields(0x3ff), {items[5]}},
    };
    const QByteArray v1 = id3v1({.artist = "x"});
    for (const auto& [fields, expected] : cases) {
        const auto filtered = [&](const QByteArray& trailer) {
            return Mp3Trailer::filtered(trailer, fields, std::nullopt, kPath).toHex();
        };
        EXPECT_EQ(filtered(ape(items)), ape(expected).toHex());
        EXPECT_EQ(filtered(withoutHeader(ape(items))), withoutHeader(ape(expected)).toHex());
        EXPECT_EQ(filtered(ape(items) + v1), (ape(expected) + v1).toHex());
    }
    EXPECT_EQ(Mp3Trailer::filtered(ape({"Year=1"}), CleanerField::Year, {}, kPath), ape({}));
    EXPECT_EQ(Mp3Trailer::filtered({}, CleanerField::Year, {}, kPath), "");
}

TEST(Mp3TrailerTest, refusesBrokenTrailers)
{
    const QByteArray tag = ape({"Title=One", "Artist=Two"});
    const QByteArray v1 = id3v1({});
    const QByteArray item = little(3, 4) + little(0, 4) + "Key"; // no zero byte behind the key
    const auto footer = [](quint32 size, quint32 count) {
        return "APETAGEX" + little(2000, 4) + little(size, 4) + little(count, 4) + little(0x80000000, 4) +
               QByteArray(8, '\0');
    };
    const std::pair<const char*, QByteArray> cases[] = {
        {"two ID3v1", v1 + v1},
        {"ID3v1 in front", v1 + tag},
        {"two APEv2", tag + tag},
        {"a byte in front", 'x' + tag},
        {"too short", tag.last(31)},
        {"fewer items than counted", withCount(tag, 3)},
        {"more items than counted", withCount(tag, 1)},
        {"very many items", withCount(tag, 0xffffffff)},
        {"no header where one should be", QByteArray(32, 'x') + withoutHeader(tag)},
        {"size below a footer's", footer(0, 0)},
        {"a key without an end", item + footer(43, 1)},
        {"a value past the end", item + '\0' + "ab" + footer(46, 1)},
        {"an item of seven bytes", item.first(7) + footer(39, 1)},
    };
    for (const auto& [what, trailer] : cases) {
        EXPECT_EQ(errorOf([&] { Mp3Trailer::filtered(trailer, {}, {}, kPath); }), kCorrupt) << what;
    }
}

} // namespace
