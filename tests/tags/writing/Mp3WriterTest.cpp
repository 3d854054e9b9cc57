#include "core/model/AudioTags.h"
#include "support/FailingFileCalls.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/Id3v2Builder.h"
#include "tags/writing/MetadataWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("a.mp3");
const AudioTags kNew =
    tagsWith({{&AudioTags::title, QStringLiteral("New")}, {&AudioTags::comment, QStringLiteral(" ")}});

TEST(Mp3WriterTest, putsOneTagInThePlaceOfAll)
{
    const QByteArray sound = mpegFrames(5);
    const QByteArray old = id3v2(textFrame("TIT2", "Old") + pictureFrame("picture") + QByteArray(100, '\0'));
    const QByteArray footer = id3v2(textFrame("TIT2", "F", 4), 4, 0x10) + "3DI" + QByteArray(7, '\0');
    QByteArray sloppySize = id3v2(textFrame("TIT2", "x"));
    sloppySize[9] = static_cast<char>(sloppySize.at(9) | 0x80);
    const QByteArray v1 = id3v1({.title = "x"});
    const QByteArray tag = ape({"Title=One"});
    const std::tuple<const char*, QByteArray, QByteArray> cases[] = {
        {"no tag", sound, sound},
        {"a tag", old + sound, sound},
        {"several", old + id3v2(textFrame("TT2", "x"), 2) + footer + old + sound, sound},
        {"flags", id3v2(textFrame("TIT2", "x"), 3, 0xc0) + sound, sound},
        {"high bits in the size", sloppySize + sound, sound},
        {"trailers", old + sound + tag + v1, sound},
        {"trailers the other way round", sound + v1 + tag + v1, sound},
        {"only a tag", old, {}},
        {"only a trailer", v1, {}},
        {"nothing at all", {}, {}},
        {"nine bytes", "ID3\3\0\0\0\0", "ID3\3\0\0\0\0"},
        {"sound of a block and more", QByteArray(1024 * 1024 + 1, 'x'), QByteArray(1024 * 1024 + 1, 'x')},
    };
    for (const auto& [what, before, sound] : cases)
        expectChanges(kName, {{what, writing(kNew), before, Id3v2Builder::tag(kNew, {}) + sound},
                              {what, writing({}), before, sound},
                              {what, assigning("cover", {}), before, Id3v2Builder::tag({}, "cover") + sound}});
}

TEST(Mp3WriterTest, leavesBrokenFilesAlone)
{
    const QByteArray tooLong = "ID3" + QByteArray::fromHex("040000") + syncsafe(100) + QByteArray(99, 'x');
    const QByteArray footerMissing = id3v2(textFrame("TIT2", "x", 4), 4, 0x10);
    const QByteArray badApe = mpegFrames(1) + "APETAGEX" + little(2000, 4) + little(31, 4) + QByteArray(16, '\0');
    QByteArray highBit = id3v2(textFrame("TIT2", "x"));
    highBit[8] = '\x80';
    const QString failed = QStringLiteral("rewriteFailed ID3");
    const Change clean = cleaning(CleanerField::Comment);
    expectRefusals(kName, {{"a tag beyond the file", tooLong, writing(kNew), kCorrupt},
                           {"a second one", id3v2({}) + tooLong, writing(kNew), kCorrupt},
                           {"a missing footer", footerMissing, writing(kNew), kCorrupt},
                           {"a broken trailer", badApe, writing(kNew), kCorrupt},
                           {"a tag beyond the file, cleaning", tooLong, clean, kCorrupt},
                           {"a second one, cleaning", id3v2({}) + tooLong, clean, kCorrupt},
                           {"a missing footer, cleaning", footerMissing, clean, failed},
                           {"flags", id3v2({}, 3, 0x80), clean, failed},
                           {"a high bit", highBit, clean, kCorrupt},
                           {"a broken trailer, cleaning", badApe, clean, kCorrupt},
                           {"two trailers", mpegFrames(1) + id3v1({}) + id3v1({}), clean, kCorrupt},
                           {"a broken frame", id3v2("TIT2" + big(9, 4) + "xx"), clean, kCorrupt}});
    // What a whole new tag takes the place of need not be understood.
    for (const QByteArray& bytes : {id3v2({}, 3, 0x80), highBit, id3v2("TIT2" + big(9, 4) + "xx")})
        EXPECT_EQ(changed(kName, bytes, writing(kNew)), Id3v2Builder::tag(kNew, {}));
}

TEST(Mp3WriterTest, cleansEachTagInItsOwnForm)
{
    using enum CleanerField;
    const QByteArray sound = mpegFrames(3);
    const QByteArray title = frame("TIT2", '\x01' + utf16(QStringLiteral("New")));
    const QByteArray album = frame("TALB", '\x01' + utf16(QStringLiteral("Al")));
    const QByteArray first = textFrame("TPE1", "A");
    const QByteArray second = textFrame("TPE1", "B", 4);
    const QByteArray oldTitle = textFrame("TIT2", "Old");
    const QByteArray oldTag = id3v2(oldTitle);
    const QByteArray ownApe = ape({"Artist=A"});
    const QByteArray both = oldTag + sound + ownApe + id3v1({.artist = "A"});
    const Change rename = cleaning(Title, kNew.title);
    expectChanges(
        kName,
        {{"no tag and nothing to set", cleaning(Comment), sound, sound},
         {"no tag, the title not chosen", cleaning(Comment, kNew.title), sound, sound},
         {"no tag and a title", rename, sound, id3v2(title) + sound},
         {"no tag and an empty title", cleaning(Title, QString()), sound, sound},
         {"two tags", rename, id3v2(oldTitle + first) + id3v2(textFrame("TIT2", "x", 4) + second, 4) + sound,
          id3v2(first + title) + id3v2(second, 4) + sound},
         {"a tag that becomes empty", cleaning(Title), id3v2(oldTitle + QByteArray(9, '\0')) + sound,
          id3v2({}) + sound},
         {"all kinds", rename, oldTag + sound + ape({"Artist=A", "TITLE=x"}) + id3v1({.title = "Old", .artist = "A"}),
          id3v2(title) + sound + ownApe + id3v1({.title = "New", .artist = "A"})},
         {"no new title for the oldest kind", cleaning(Title), sound + id3v1({.title = "Old"}),
          sound + id3v1({.title = "Old"})},
         {"nothing chosen", cleaning({}, kNew.title), both, both},
         {"only a tag", cleaning(Title), oldTag, id3v2({})},
         {"nothing at all", cleaning(Title), {}, {}},
         {"album alone", cleaning(Album, kNew.title, QStringLiteral("Al")), sound, id3v2(album) + sound},
         {"album in the first of two", cleaning(Album, {}, QStringLiteral("Al")), oldTag + id3v2(first) + sound,
          id3v2(oldTitle + album) + id3v2(first) + sound}});
}

TEST(Mp3WriterTest, leavesTheNewFileOfASaveThatCouldNotTakeItsPlace)
{
    const FileFolder folder;
    const QByteArray bytes = id3v2(textFrame("TIT2", "Old")) + mpegFrames(1);
    const QUrl url = folder.write(QStringLiteral("a.MP3"), bytes);
    FailingFileCalls calls;
    calls.failingName = "rename";
    EXPECT_EQ(failureOf(cleaning(CleanerField::Title), url), QStringLiteral("fileWriteUnknown"));
    EXPECT_EQ(folder.names().size(), 1);
    EXPECT_EQ(failureOf(writing(kNew), url), QStringLiteral("fileWriteUnknown"));
    ASSERT_EQ(folder.names().size(), 2);
    const QString left = folder.names().first();
    EXPECT_TRUE(left.endsWith(QStringLiteral(".mp3")));
    EXPECT_EQ(folder.read(left), Id3v2Builder::tag(kNew, {}) + mpegFrames(1));
    EXPECT_EQ(contentOf(url), bytes);
}

TEST(Mp3WriterTest, looksForThePictureInTheFirstTag)
{
    const FileFolder folder;
    const QByteArray picture = "a picture's bytes";
    const auto isIn = [&](const QByteArray& bytes, const QByteArray& wanted) {
        return MetadataWriter::containsArtworkBytes(wanted, folder.write(kName, bytes));
    };
    const QByteArray whole = id3v2(pictureFrame(picture));
    for (const QByteArray& bytes : {whole + mpegFrames(1), id3v2(textFrame("TIT2", "this is " + picture))})
        EXPECT_TRUE(isIn(bytes, picture)) << bytes.toHex().constData();
    for (const QByteArray& bytes : {id3v2(pictureFrame(picture.chopped(1))) + picture, id3v2({}) + whole,
                                    mpegFrames(1) + picture, QByteArray("ID3\3"), QByteArray(), whole.chopped(1)})
        EXPECT_FALSE(isIn(bytes, picture)) << bytes.toHex().constData();
    EXPECT_FALSE(isIn(whole, {}));
}

} // namespace
