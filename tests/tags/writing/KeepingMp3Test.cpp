#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/AudioMetadataLoader.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.mp3");
const QByteArray kSound = mpegFrames(5);

QByteArray wideText(const QString& text)
{
    return '\1' + utf16(text);
}

QByteArray wideComment(const QString& text)
{
    return QByteArray("\1eng\xFF\xFE\0\0", 8) + utf16(text);
}

QByteArray picture(int type, const QByteArray& bytes, int version = 3)
{
    return frame("APIC", QByteArray("\0image/png\0", 11) + static_cast<char>(type) + '\0' + bytes, version);
}

QByteArray unsynchronised(const QByteArray& bytes)
{
    return QByteArray(bytes).replace(QByteArray("\xFF"), QByteArray("\xFF\0", 2));
}

const TagFields kTitle = TagField::Title;
const AudioTags kNew = tagsWith({{&AudioTags::title, QStringLiteral("N")}});
const Change kRename = keeping(kNew, kTitle);

TEST(KeepingMp3Test, changesTheChosenFramesOfEachVersion)
{
    const AudioTags dated = tagsWith({{&AudioTags::year, QStringLiteral("2001")},
                                      {&AudioTags::comment, QStringLiteral("C")},
                                      {&AudioTags::genre, QStringLiteral("(17)")}});
    const TagFields datedFields = TagField::Year | TagFields(TagField::Comment) | TagField::Genre;
    const QByteArray others = picture(3, "\xFF\xD8\xFF cover") + frame("PRIV", "owner") +
                              describedFrame("COMM", "iTunNORM", "0000") + textFrame("TPE1", "A");
    const QByteArray others4 = picture(4, "\xFF\xD8\xFF back", 4) + frame("UFID", QByteArray(200, 'u'), 4);
    const QByteArray title = frame("TIT2", wideText(QStringLiteral("N")));
    const QByteArray title4 = frame("TIT2", wideText(QStringLiteral("N")), 4);
    const QByteArray packed = frame("TPE1", QByteArray("\0\xFF\xE0z", 4), 4);
    const ChangeCase cases[] = {
        {"2.3", kRename, id3v2(others + textFrame("TIT2", "O") + QByteArray(50, '\0')), id3v2(others + title)},
        {"2.4", kRename, id3v2(textFrame("TIT2", "O", 4) + others4, 4), id3v2(others4 + title4, 4)},
        {"2.2", kRename, id3v2(shortFrame("TT2", "\0O") + shortFrame("PIC", "any"), 2),
         id3v2(shortFrame("PIC", "any") + shortFrame("TT2", wideText(QStringLiteral("N"))), 2)},
        {"2.2, year, comment and genre", keeping(dated, datedFields),
         id3v2(shortFrame("TYE", '\0' + QByteArray("1999")) + shortFrame("TDA", '\0' + QByteArray("0102")), 2),
         id3v2(shortFrame("TCO", wideText(QStringLiteral("((17)"))) +
                   shortFrame("TYE", wideText(QStringLiteral("2001"))) +
                   shortFrame("COM", wideComment(QStringLiteral("C"))),
               2)},
        {"2.4, year and comment", keeping(dated, TagField::Year | TagFields(TagField::Comment)),
         id3v2(textFrame("TDRC", "1999", 4) + textFrame("TYER", "1999", 4), 4),
         id3v2(frame("TDRC", wideText(QStringLiteral("2001")), 4) + frame("COMM", wideComment(QStringLiteral("C")), 4),
               4)},
        {"comments of the user go, of programs stay", keeping({}, TagField::Comment),
         id3v2(describedFrame("COMM", "", "a") + others + describedFrame("COMM", "mood", "b")), id3v2(others)},
        {"all names of the key", keeping({}, TagField::MusicalKey),
         id3v2(textFrame("TKEY", "Am") + describedFrame("TXXX", "Initial Key", "8A") +
               describedFrame("TXXX", "energy", "7")),
         id3v2(describedFrame("TXXX", "energy", "7"))},
        {"several tags", kRename, id3v2(textFrame("TIT2", "O")) + id3v2(textFrame("TIT2", "P", 4) + others4, 4),
         id3v2(title) + id3v2(others4, 4)},
        {"emptied", keeping({}, kTitle), id3v2(textFrame("TIT2", "O")), id3v2({})},
        {"2.3 unsynchronised as a whole", kRename, id3v2(unsynchronised(others + textFrame("TIT2", "O")), 3, 0x80),
         id3v2(others + title)},
        {"2.4 unsynchronised frame by frame", kRename,
         id3v2(frame("TPE1", QByteArray("\0\xFF\0\xE0z", 5), 4) + packed, 4, 0x80),
         id3v2(frame("TPE1", QByteArray("\0\xFF\0\xE0z", 5), 4, 2) + frame("TPE1", packed.sliced(10), 4, 2) + title4,
               4)},
        {"extended header, experimental", kRename, id3v2(big(6, 4) + big(0, 6) + others, 3, 0x60),
         id3v2(others + title, 3, 0x20)},
        {"extended header of 2.4 and a footer", kRename,
         id3v2(syncsafe(6) + "\1" + QByteArray(1, '\0') + others4, 4, 0x50) + "3DI" + QByteArray(7, '\0'),
         id3v2(others4 + title4, 4)},
        {"sizes of the wrong kind are put right", kRename,
         id3v2("UFID" + big(200, 4) + big(0, 2) + QByteArray(200, 'u') + textFrame("TIT2", "O", 4), 4),
         id3v2(frame("UFID", QByteArray(200, 'u'), 4) + title4, 4)},
        {"no tag", keeping(kNew), {}, id3v2(title)},
        {"no tag and nothing to say", keeping({}), {}, {}},
    };
    for (const ChangeCase& c : cases)
        expectChanges(kName, {{c.what, c.change, c.before + kSound, c.after + kSound}});
}

/// An ID3v1 tag of all fields.
QByteArray oldTag(const QByteArray& title, const QByteArray& year, const QByteArray& comment, quint8 genre)
{
    QByteArray tag = id3v1({.title = title, .artist = "A", .album = "L", .comment = comment, .genre = genre});
    return tag.replace(93, 4, year.leftJustified(4, '\0'));
}

TEST(KeepingMp3Test, leavesNoOldValueBehindTheSound)
{
    const QByteArray fits = "\xC4rtist";
    const QByteArray tracked = QByteArray("c").leftJustified(29, '\0') + '\5';
    const QByteArray trackedAnew = QByteArray("c").leftJustified(29, '\0') + '\x0C';
    const QByteArray longComment(30, 'l');
    const QByteArray lyrics = "LYRICSBEGININD0000200000021LYRICS200";
    const AudioTags track = tagsWith({{&AudioTags::track, QStringLiteral("12/20")}});
    const ChangeCase cases[] = {
        {"title that Latin-1 has", keeping(tagsWith({{&AudioTags::title, QStringLiteral("Ärtist")}}), kTitle),
         oldTag("O", "1999", "c", 3), oldTag(fits, "1999", "c", 3)},
        {"title that it has not", keeping(tagsWith({{&AudioTags::title, QStringLiteral("Название")}}), kTitle),
         oldTag("O", "1999", "c", 3), oldTag({}, "1999", "c", 3)},
        {"year and genre",
         keeping(tagsWith({{&AudioTags::year, QStringLiteral("2001-05")}}),
                 TagField::Year | TagFields(TagField::Genre)),
         oldTag("O", "1999", "c", 3), oldTag("O", "2001", "c", 255)},
        {"comment keeps the track", keeping({}, TagField::Comment), oldTag("O", {}, tracked, 3),
         oldTag("O", {}, QByteArray(29, '\0') + '\5', 3)},
        {"track", keeping(track, TagField::Track), oldTag("O", {}, tracked, 3), oldTag("O", {}, trackedAnew, 3)},
        {"no track", keeping({}, TagField::Track), oldTag("O", {}, tracked, 3), oldTag("O", {}, "c", 3)},
        {"no room for a track", keeping(track, TagField::Track), oldTag("O", {}, longComment, 3),
         oldTag("O", {}, longComment, 3)},
        {"items", kRename, ape({"Title=O", "Mood=x", "Cover Art (Front)=p"}), ape({"Mood=x", "Cover Art (Front)=p"})},
        {"artist and key", keeping({}, TagField::Artist | TagFields(TagField::MusicalKey)),
         ape({"ARTIST=a", "Initial Key=8A", "Title=O"}), ape({"Title=O"})},
        {"items before lyrics before a tag", kRename, ape({"Title=O", "X=y"}) + lyrics + oldTag("O", {}, {}, 3),
         ape({"X=y"}) + lyrics + oldTag("N", {}, {}, 3)},
        {"the other way round", kRename, oldTag("O", {}, {}, 3) + ape({"Title=O"}) + oldTag("P", {}, {}, 3),
         oldTag("N", {}, {}, 3) + ape({}) + oldTag("N", {}, {}, 3)},
        {"a header at the end is sound", kRename, ape({"Title=O"}).first(32), ape({"Title=O"}).first(32)},
    };
    for (const ChangeCase& c : cases) {
        const QByteArray front = id3v2(textFrame("TPE1", "A"));
        const QByteArray after = changed(kName, front + kSound + c.before, c.change);
        EXPECT_EQ(after.last(c.after.size()).toHex(' '), c.after.toHex(' ')) << c.what;
        EXPECT_TRUE(after.chopped(c.after.size()).endsWith(kSound)) << c.what;
    }
}

TEST(KeepingMp3Test, putsTheNewCoverWhereItIsShown)
{
    const QByteArray cover = "\x89PNG new";
    const QByteArray back = picture(4, "\xFF\xD8\xFF back");
    const QByteArray before = id3v2(picture(3, "\xFF\xD8\xFF old") + picture(0, "\xFF\xD8\xFF any") + back) +
                              id3v2(picture(3, "\xFF\xD8\xFF second")) + kSound;
    const QByteArray after = changed(kName, before, keepingWithPicture(cover, {}, {}));
    EXPECT_EQ(after, id3v2(back + pictureFrame(cover)) + id3v2({}) + kSound);

    const QByteArray version2 = changed(kName, id3v2({}, 2) + kSound, keepingWithPicture(cover, kNew, kTitle));
    const FileFolder folder;
    for (const QByteArray& bytes : {after, version2}) {
        const QUrl url = folder.write(kName, bytes);
        EXPECT_EQ(AudioMetadataLoader::artwork(url), cover);
    }
    expectRefusals(kName, {{"empty picture", before, keepingWithPicture({}, {}, {}),
                            QStringLiteral("artworkVerificationFailed sound.mp3")}});
}

TEST(KeepingMp3Test, leavesWhatItDoesNotUnderstand)
{
    const QString unknown = QStringLiteral("rewriteFailed ID3");
    const QString other = QStringLiteral("unsupportedFormat mp3");
    const QByteArray title = textFrame("TIT2", "O");
    QByteArray highBit = id3v2(title);
    highBit[9] = static_cast<char>(highBit[9] | 0x80);
    const std::tuple<const char*, QByteArray, QString> cases[] = {
        {"version 5", id3v2(title, 5) + kSound, unknown},
        {"unknown flag", id3v2(title, 3, 1) + kSound, unknown},
        {"footer flag of another version", id3v2(title, 3, 0x10) + kSound, unknown},
        {"compressed as a whole", id3v2(title, 2, 0x40) + kSound, unknown},
        {"second tag of version 9", id3v2(title) + id3v2(title, 9) + kSound, unknown},
        {"high bit in the size", highBit + kSound, kCorrupt},
        {"cut", id3v2(title).chopped(1), kCorrupt},
        {"frame beyond the end", id3v2(title.first(4) + big(5000, 4) + title.sliced(8)) + kSound, kCorrupt},
        {"no frame", id3v2(title + "tit2" + QByteArray(20, 'x')) + kSound, kCorrupt},
        {"padding with something in it", id3v2(title + QByteArray(20, '\0') + "x") + kSound, kCorrupt},
        {"extended header beyond the end", id3v2(big(500, 4) + title, 3, 0x40) + kSound, kCorrupt},
        {"number of items", kSound + withCount(ape({"Title=O"}), 9), kCorrupt},
        {"size of items", kSound + withSize(ape({"Title=O"}), 1 << 30), kCorrupt},
        {"another stream", flac(100, {"TITLE=O"}), other},
        {"another stream behind a tag", id3v2(title) + flac(100, {"TITLE=O"}), other},
        {"another container", wave(10), other},
    };
    for (const auto& [what, bytes, failure] : cases) {
        expectRefusals(kName,
                       {{what, bytes, kRename, failure}, {what, bytes, keepingWithPicture("\x89PNG", kNew), failure}});
    }
}

} // namespace
