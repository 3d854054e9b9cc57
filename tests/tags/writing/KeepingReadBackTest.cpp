#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/AudioMetadataLoader.h"

#include <gtest/gtest.h>

namespace {

/// Puts tags of all kinds into a file with another library: old texts, a picture and what no field is for.
const QString kDress = QStringLiteral(R"(
import sys, mutagen
from mutagen import id3, flac, mp4
path, picture = sys.argv[1], b'\x89PNG\r\n\x1a\n other'
file = mutagen.File(path)
if isinstance(file, flac.FLAC):
    image = flac.Picture(); image.type = 4; image.mime = 'image/png'; image.data = picture
    file.add_picture(image)
    file.tags.update({'title': 'old', 'artist': ['old', 'older'], 'description': 'old', 'initialkey': 'old',
                      'mood': 'kept', 'replaygain_track_gain': '-1 dB', 'date': '1900', 'bpm': '1'})
elif isinstance(file, mp4.MP4):
    file.tags.update({'\xa9nam': 'old', '\xa9cmt': 'old', 'covr': [mp4.MP4Cover(picture, 14)], 'cpil': True,
                      '----:com.apple.iTunes:MOOD': b'kept', '----:com.apple.iTunes:initialkey': b'old',
                      'tmpo': [1], 'trkn': [(1, 2)], 'aART': 'old'})
else:
    if file.tags is None: file.add_tags()
    for frame in (id3.TIT2(text='old'), id3.TPE1(text=['old', 'older']), id3.COMM(lang='rus', desc='', text='old'),
                  id3.COMM(lang='eng', desc='iTunNORM', text='kept'), id3.TKEY(text='old'), id3.TPE2(text='old'),
                  id3.TXXX(desc='MOOD', text='kept'), id3.APIC(mime='image/png', type=4, desc='b', data=picture),
                  id3.TDRC(text='1900-01-02'), id3.PRIV(owner='kept', data=b'\xff\x00\xff\xe0')):
        file.tags.add(frame)
file.save(**({'v2_version': int(sys.argv[2])} if len(sys.argv) > 2 else {}))
)");

/// What another library finds besides the ten fields, as text.
const QString kOthers = QStringLiteral(R"(
import sys, mutagen, hashlib
file = mutagen.File(sys.argv[1])
own = ('TIT2 TPE1 TALB TPE2 TCON TDRC TYER TRCK TBPM TKEY title artist album albumartist genre date tracknumber comment bpm '
       'initialkey description \xa9nam \xa9ART \xa9alb aART \xa9gen \xa9day trkn \xa9cmt tmpo ----:com.apple.iTunes:initialkey '
       '----:com.apple.iTunes:BPM').split()
lines = [f'{key}={value!r}' for key, value in file.tags.items()
         if key not in own and not (key.startswith('COMM:') and 'iTun' not in key)] if file.tags is not None else []
lines += [hashlib.md5(image.write()).hexdigest() for image in getattr(file, 'pictures', [])]
print('\n'.join(sorted(lines)))
)");

QByteArray runPython(const QString& script, const QStringList& arguments)
{
    return outputOf(QStringLiteral("/usr/bin/python3"), QStringList{QStringLiteral("-c"), script} + arguments);
}

struct Spelling {
    QString AudioTags::*field;
    const char* key;
    bool operator==(const Spelling&) const = default;
};
const std::vector<Spelling> kId3{{&AudioTags::title, "TIT2"},       {&AudioTags::artist, "TPE1"},
                                 {&AudioTags::album, "TALB"},       {&AudioTags::genre, "TCON"},
                                 {&AudioTags::albumArtist, "TPE2"}, {&AudioTags::year, "TDRC"},
                                 {&AudioTags::track, "TRCK"},       {&AudioTags::comment, "COMM::eng"},
                                 {&AudioTags::bpm, "TBPM"},         {&AudioTags::musicalKey, "TKEY"}};
const std::vector<Spelling> kVorbis{
    {&AudioTags::title, "title"},          {&AudioTags::artist, "artist"},           {&AudioTags::album, "album"},
    {&AudioTags::genre, "genre"},          {&AudioTags::albumArtist, "albumartist"}, {&AudioTags::year, "date"},
    {&AudioTags::track, "tracknumber"},    {&AudioTags::comment, "comment"},         {&AudioTags::bpm, "bpm"},
    {&AudioTags::musicalKey, "initialkey"}};
const std::vector<Spelling> kMp4{{&AudioTags::title, "©nam"},       {&AudioTags::artist, "©ART"},
                                 {&AudioTags::album, "©alb"},       {&AudioTags::genre, "©gen"},
                                 {&AudioTags::albumArtist, "aART"}, {&AudioTags::year, "©day"},
                                 {&AudioTags::comment, "©cmt"}};

class KeepingReadBackTest : public testing::Test {
protected:
    const FileFolder folder;

    /// A file of real sound with tags of others.
    QUrl dressed(const QString& name, const QString& arguments, const QStringList& dress) const
    {
        const QUrl url = makeSound(folder, name, arguments);
        runPython(kDress, QStringList{url.toLocalFile()} + dress);
        return url;
    }
};

TEST_F(KeepingReadBackTest, realFilesShowWhatWasWrittenAndKeepTheRest)
{
    const std::tuple<const char*, QString, QStringList, std::vector<Spelling>> cases[] = {
        {"new.mp3", QStringLiteral("-id3v2_version 4"), {QStringLiteral("4")}, kId3},
        {"old.mp3", QStringLiteral("-write_id3v1 1"), {QStringLiteral("3")}, kId3},
        {"a.flac", {}, {}, kVorbis},
        {"a.wav", QStringLiteral("-metadata title=old"), {QStringLiteral("3")}, kId3},
        {"a.aiff", {}, {QStringLiteral("4")}, kId3},
        {"a.m4a", QStringLiteral("-c:a alac"), {}, kMp4},
    };
    for (const auto& [name, arguments, dress, spellings] : cases) {
        SCOPED_TRACE(name);
        const QUrl url = dressed(QLatin1StringView(name), arguments, dress);
        const QByteArray sound = packetDigest(url);
        const QByteArray others = runPython(kOthers, {url.toLocalFile()});
        const QByteArray picture = AudioMetadataLoader::artwork(url);
        ASSERT_FALSE(sound.isEmpty());
        ASSERT_TRUE(others.contains("kept"));

        AudioTags tags = fullTags();
        ASSERT_EQ(failureOf(keeping(tags), url), QString());
        EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags, readableTags());
        for (const Spelling& spelling : spellings)
            EXPECT_EQ(foreignTag(url, QString::fromUtf8(spelling.key)), tags.*spelling.field) << spelling.key;
        EXPECT_EQ(runPython(kOthers, {url.toLocalFile()}), others);
        EXPECT_EQ(AudioMetadataLoader::artwork(url), picture);
        EXPECT_EQ(packetDigest(url), sound);

        // One field goes, the others stay.
        ASSERT_EQ(failureOf(keeping({}, TagField::Comment), url), QString());
        tags = readableTags();
        tags.comment.clear();
        EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags, tags);
        EXPECT_EQ(foreignTag(url, QString::fromUtf8(spellings[4].key)), fullTags().*spellings[4].field);
        ASSERT_EQ(failureOf(keeping({}), url), QString());
        EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags, AudioTags());
        EXPECT_EQ(runPython(kOthers, {url.toLocalFile()}), others);
        EXPECT_EQ(packetDigest(url), sound);
        if (spellings == kMp4)
            continue; // takes no pictures
        for (const QByteArray& cover : {QByteArray("\x89PNG first"), QByteArray("\x89PNG second")}) {
            ASSERT_EQ(failureOf(keepingWithPicture(cover, fullTags()), url), QString());
            EXPECT_EQ(AudioMetadataLoader::artwork(url), cover);
        }
        EXPECT_EQ(packetDigest(url), sound);
        EXPECT_FALSE(contentOf(url).contains("\x89PNG first"));
        EXPECT_TRUE(contentOf(url).contains("\x89PNG\r\n\x1a\n other")) << "a picture of another kind stays";
    }
}

/// The program of the encoder reads comments and lists that the library above does not.
TEST_F(KeepingReadBackTest, theEncoderReadsTheTextsToo)
{
    for (const char* name : {"a.mp3", "a.flac", "a.wav", "a.aiff", "a.m4a"}) {
        const QUrl url = makeSound(folder, QLatin1StringView(name));
        ASSERT_EQ(failureOf(keeping(readableTags()), url), QString());
        const QString words = QStringLiteral("-v error -show_entries format_tags -of default=nk=1:nw=1");
        const QStringList arguments = words.split(u' ') + QStringList{url.toLocalFile()};
        const QList<QByteArray> values = outputOf(QStringLiteral("ffprobe"), arguments).split('\n');
        const AudioTags tags = readableTags();
        for (QString AudioTags::*field :
             {&AudioTags::title, &AudioTags::artist, &AudioTags::album, &AudioTags::genre, &AudioTags::comment})
            EXPECT_TRUE(values.contains((tags.*field).toUtf8())) << name << ": " << (tags.*field).toStdString();
    }
}

TEST_F(KeepingReadBackTest, textsThatReadersMightTakeForSomethingElse)
{
    const QString texts[] = {QStringLiteral("(17)"),      QStringLiteral("((17)Rock"), QStringLiteral("(4)Eurodisco"),
                             QStringLiteral("(Live) at"), QStringLiteral("A / B"),     QStringLiteral(" x "),
                             QStringLiteral("\u0130 😀"),  QStringLiteral("a\nb"),      QStringLiteral("ÀÉÎ")};
    using namespace TagBytes;
    for (const QString& text : texts) {
        SCOPED_TRACE(text.toStdString());
        const AudioTags tags =
            tagsWith({{&AudioTags::title, text}, {&AudioTags::genre, text}, {&AudioTags::comment, text}});
        const std::pair<const char*, QByteArray> files[] = {
            {"a.mp3", mpegFrames(3) + id3v1({.title = "\xCF\xF0\xE8\xE2\xE5\xF2"})},
            {"b.mp3", id3v2({}, 2) + mpegFrames(3)},
            {"a.flac", flac(100, {})},
            {"a.wav", wave(10)},
            {"a.aiff", aiff(10)},
            {"a.m4a", m4a({})}};
        for (const auto& [name, bytes] : files) {
            const QUrl url = folder.write(QLatin1StringView(name), bytes);
            ASSERT_EQ(failureOf(keeping(tags), url), QString());
            EXPECT_EQ(AudioMetadataLoader::load(url, {}).tags, tags) << name;
        }
    }
}

} // namespace
