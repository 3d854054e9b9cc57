#include "tags/writing/Mp3Writer.h"

#include "core/model/AudioTags.h"
#include "support/FailingFileCalls.h"
#include "support/TagBytes.h"
#include "support/TagsOf.h"
#include "support/WriterFolder.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/writing/Id3v2Builder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("a.mp3");
const QString kCorrupt = QStringLiteral("fileReadCorruptFile");
constexpr CleanerField kTitle = CleanerField::Title;
constexpr CleanerField kAlbum = CleanerField::Album;

const AudioTags& newTags()
{
    static const AudioTags kTags = [] {
        AudioTags tags;
        tags.title = QStringLiteral("New");
        tags.comment = QStringLiteral(" ");
        return tags;
    }();
    return kTags;
}

QByteArray afterWrite(const QByteArray& bytes, const AudioTags& tags, const std::optional<QByteArray>& artwork = {})
{
    const WriterFolder folder;
    Mp3Writer::write(tags, artwork, folder.write(kName, bytes));
    EXPECT_EQ(folder.names(), QStringList{kName});
    return folder.read(kName);
}

QByteArray afterClean(const QByteArray& bytes, CleanerFields fields, const std::optional<QString>& title = {},
                      const std::optional<QString>& album = {})
{
    const WriterFolder folder;
    Mp3Writer::clean(fields, title, album, folder.write(kName, bytes));
    EXPECT_EQ(folder.names(), QStringList{kName});
    return folder.read(kName);
}

TEST(Mp3WriterTest, putsOneTagInThePlaceOfAll)
{
    const QByteArray sound = mpegFrames(5);
    const QByteArray old = id3v2(textFrame("TIT2", "Old") + pictureFrame("picture") + QByteArray(100, '\0'));
    const QByteArray footer = id3v2(textFrame("TIT2", "F", 4), 4, 0x10) + "3DI" + QByteArray(7, '\0');
    QByteArray sloppySize = id3v2(textFrame("TIT2", "x"));
    sloppySize[9] = static_cast<char>(sloppySize.at(9) | 0x80);
    const QByteArray v1 = id3v1({.title = "x"});
    const QByteArray tag = ape({"Title=One"});
    const struct {
        const char* what;
        QByteArray before;
        QByteArray sound;
    } cases[] = {
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
    for (const auto& c : cases) {
        EXPECT_TRUE(afterWrite(c.before, newTags()) == Id3v2Builder::tag(newTags(), {}) + c.sound) << c.what;
        EXPECT_TRUE(afterWrite(c.before, {}) == c.sound) << c.what << ", no fields";
        EXPECT_TRUE(afterWrite(c.before, {}, "cover") == Id3v2Builder::tag({}, "cover") + c.sound) << c.what;
    }
}

TEST(Mp3WriterTest, leavesBrokenFilesAlone)
{
    const QByteArray tooLong = "ID3" + QByteArray::fromHex("040000") + syncsafe(100) + QByteArray(99, 'x');
    const QByteArray footerMissing = id3v2(textFrame("TIT2", "x", 4), 4, 0x10);
    const QByteArray badApe = mpegFrames(1) + "APETAGEX" + little(2000, 4) + little(31, 4) + QByteArray(16, '\0');
    QByteArray highBit = id3v2(textFrame("TIT2", "x"));
    highBit[8] = '\x80';
    const QString kFine;
    const struct {
        const char* what;
        QByteArray bytes;
        QString writeError;
        QString cleanError;
    } cases[] = {
        {"a tag beyond the file", tooLong, kCorrupt, kCorrupt},
        {"a second one", id3v2({}) + tooLong, kCorrupt, kCorrupt},
        {"a missing footer", footerMissing, kCorrupt, QStringLiteral("rewriteFailed ID3")},
        {"flags", id3v2({}, 3, 0x80), kFine, QStringLiteral("rewriteFailed ID3")},
        {"a high bit", highBit, kFine, kCorrupt},
        {"a broken trailer", badApe, kCorrupt, kCorrupt},
        {"two trailers", mpegFrames(1) + id3v1({}) + id3v1({}), kFine, kCorrupt},
        {"a broken frame", id3v2("TIT2" + big(9, 4) + "xx"), kFine, kCorrupt},
    };
    for (const auto& c : cases) {
        const WriterFolder folder;
        const QString path = folder.write(kName, c.bytes);
        EXPECT_EQ(errorOf([&] { Mp3Writer::clean(CleanerField::Comment, {}, {}, path); }), c.cleanError) << c.what;
        EXPECT_EQ(folder.read(kName), c.bytes) << c.what;
        EXPECT_EQ(errorOf([&] { Mp3Writer::write(newTags(), {}, path); }), c.writeError) << c.what;
        EXPECT_EQ(folder.read(kName) == c.bytes, !c.writeError.isEmpty()) << c.what;
        EXPECT_EQ(folder.names(), QStringList{kName}) << c.what;
    }
}

TEST(Mp3WriterTest, cleansEachTagInItsOwnForm)
{
    const QByteArray sound = mpegFrames(3);
    const QByteArray title = frame("TIT2", '\x01' + utf16(QStringLiteral("New")));
    const QByteArray first = textFrame("TPE1", "A");
    const QByteArray second = textFrame("TPE1", "B", 4);
    const QByteArray oldTitle = textFrame("TIT2", "Old");
    const QByteArray ownApe = ape({"Artist=A"});
    const QByteArray ownV1 = id3v1({.artist = "A"});
    const struct {
        const char* what;
        QByteArray before;
        CleanerFields fields;
        std::optional<QString> title;
        QByteArray expected;
    } cases[] = {
        {"no tag and nothing to set", sound, CleanerField::Comment, {}, sound},
        {"no tag, the title not chosen", sound, CleanerField::Comment, QStringLiteral("New"), sound},
        {"no tag and a title", sound, kTitle, QStringLiteral("New"), id3v2(title) + sound},
        {"no tag and an empty title", sound, kTitle, QString(), sound},
        {"two tags", id3v2(oldTitle + first) + id3v2(textFrame("TIT2", "x", 4) + second, 4) + sound, kTitle,
         QStringLiteral("New"), id3v2(first + title) + id3v2(second, 4) + sound},
        {"a tag that becomes empty", id3v2(oldTitle + QByteArray(9, '\0')) + sound, kTitle, {}, id3v2({}) + sound},
        {"all kinds", id3v2(oldTitle) + sound + ape({"Artist=A", "TITLE=x"}) + id3v1({.title = "Old", .artist = "A"}),
         kTitle, QStringLiteral("New"), id3v2(title) + sound + ownApe + id3v1({.title = "New", .artist = "A"})},
        {"nothing chosen",
         id3v2(oldTitle) + sound + ownApe + ownV1,
         {},
         QStringLiteral("New"),
         id3v2(oldTitle) + sound + ownApe + ownV1},
        {"only a tag", id3v2(oldTitle), kTitle, {}, id3v2({})},
        {"nothing at all", {}, kTitle, {}, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(afterClean(c.before, c.fields, c.title).toHex(), c.expected.toHex()) << c.what;
    const QByteArray album = frame("TALB", '\x01' + utf16(QStringLiteral("Al")));
    EXPECT_EQ(afterClean(sound, kAlbum, QStringLiteral("New"), QStringLiteral("Al")), id3v2(album) + sound);
    EXPECT_EQ(afterClean(id3v2(oldTitle) + id3v2(first) + sound, kAlbum, {}, QStringLiteral("Al")),
              id3v2(oldTitle + album) + id3v2(first) + sound);
}

TEST(Mp3WriterTest, leavesTheOldOrTheNewFileAtEveryStep)
{
    const QByteArray bytes = id3v2(textFrame("TIT2", "Old")) + mpegFrames(5) + ape({"Title=Old"}) + id3v1({});
    expectWholeAtEveryStep(kName, bytes, [](const QString& path) { Mp3Writer::clean(kTitle, {}, {}, path); });
    expectWholeAtEveryStep(
        kName, bytes, [](const QString& path) { Mp3Writer::write(newTags(), "cover", path); }, true);
}

TEST(Mp3WriterTest, leavesTheNewFileOfASaveThatCouldNotTakeItsPlace)
{
    const WriterFolder folder;
    const QByteArray bytes = id3v2(textFrame("TIT2", "Old")) + mpegFrames(1);
    const QString path = folder.write(QStringLiteral("a.MP3"), bytes);
    FailingFileCalls calls;
    calls.failingName = "rename";
    EXPECT_EQ(errorOf([&] { Mp3Writer::clean(kTitle, {}, {}, path); }), QStringLiteral("fileWriteUnknown"));
    EXPECT_EQ(folder.names().size(), 1);
    EXPECT_EQ(errorOf([&] { Mp3Writer::write(newTags(), {}, path); }), QStringLiteral("fileWriteUnknown"));
    ASSERT_EQ(folder.names().size(), 2);
    const QString left = folder.names().first();
    EXPECT_TRUE(left.endsWith(QStringLiteral(".mp3")));
    EXPECT_EQ(folder.read(left), Id3v2Builder::tag(newTags(), {}) + mpegFrames(1));
    EXPECT_EQ(folder.read(QStringLiteral("a.MP3")), bytes);
}

TEST(Mp3WriterTest, looksForThePictureInTheFirstTag)
{
    const WriterFolder folder;
    const QByteArray picture = "a picture's bytes";
    const struct {
        QByteArray bytes;
        bool isFound;
    } cases[] = {
        {id3v2(pictureFrame(picture)) + mpegFrames(1), true},
        {id3v2(textFrame("TIT2", "this is " + picture)), true},
        {id3v2(pictureFrame(picture.chopped(1))) + picture, false},
        {id3v2({}) + id3v2(pictureFrame(picture)), false},
        {mpegFrames(1) + picture, false},
        {"ID3\3", false},
        {{}, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Mp3Writer::contains(picture, folder.write(kName, c.bytes)), c.isFound) << c.bytes.toHex().constData();
    EXPECT_FALSE(Mp3Writer::contains({}, folder.write(kName, id3v2(pictureFrame(picture)))));
    EXPECT_FALSE(Mp3Writer::contains(picture, folder.write(kName, id3v2(pictureFrame(picture)).chopped(1))));
}

/// The system's own, which has the packages of the system, whatever else the path names.
const QString kPython = QStringLiteral("/usr/bin/python3");

/// What another reader is asked about the changed file.
QStringList frameArguments(const QString& original, const QString& changed, const AudioTags& tags)
{
    return {QStringLiteral(VELMORA_SOURCE_DIR "/tests/tags/writing/check_mp3.py"),
            original,
            changed,
            QStringLiteral("TIT2=") + tags.title,
            QStringLiteral("TPE1=") + tags.artist,
            QStringLiteral("TALB=") + tags.album,
            QStringLiteral("TPE2=") + tags.albumArtist,
            QStringLiteral("TCON=") + tags.genre,
            QStringLiteral("TYER=") + tags.year,
            QStringLiteral("TRCK=") + tags.track,
            QStringLiteral("TBPM=") + tags.bpm,
            QStringLiteral("TKEY=") + tags.musicalKey,
            QStringLiteral("APIC=-")};
}

TEST(Mp3WriterTest, isReadByOthersAndKeepsEverySample)
{
    const WriterFolder folder;
    const QString original = folder.path(QStringLiteral("original.mp3"));
    const QString command = QStringLiteral("-v error -f lavfi -i sine=d=2 -metadata title=Old -write_id3v1 1");
    ASSERT_TRUE(runProgram(QStringLiteral("ffmpeg"), command.split(u' ') + QStringList{original}));
    const QByteArray bytes = folder.read(QStringLiteral("original.mp3"));
    const QString path = folder.write(QStringLiteral("Ёлка e\u0301 \U0001F3A7.MP3"), bytes + ape({"Title=Old"}));
    AudioTags tags;
    for (const AudioTags::Field& field : AudioTags::fields())
        tags.*field.value = QStringLiteral("Ж\U0001F3A7 ") + QLatin1StringView(field.name);
    tags.year = QStringLiteral("1999");
    tags.bpm = QStringLiteral("128");
    tags.musicalKey = QStringLiteral("8A");
    const QByteArray picture = "\x89PNG and so on";
    Mp3Writer::write(tags, picture, path);

    const LoadedTrackMetadata loaded = AudioMetadataLoader::load(QUrl::fromLocalFile(path), {});
    for (const auto field : {&AudioTags::title, &AudioTags::artist, &AudioTags::album, &AudioTags::genre,
                             &AudioTags::comment, &AudioTags::musicalKey})
        EXPECT_EQ(loaded.tags.*field, tags.*field);
    EXPECT_EQ(loaded.artworkData.bytes(), picture);
    const QStringList arguments = frameArguments(original, path, tags);
    EXPECT_TRUE(runProgram(kPython, arguments + QStringList{QStringLiteral("COMM=") + tags.comment}));
    Mp3Writer::clean(CleanerField::Comment, {}, {}, path);
    EXPECT_TRUE(runProgram(kPython, arguments));
    EXPECT_FALSE(runProgram(kPython, arguments.first(arguments.size() - 1))) << "the check finds everything right";
}

} // namespace
