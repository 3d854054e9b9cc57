#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/AudioMetadataLoader.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const TagFields kTitle = TagField::Title;
const AudioTags kNew = tagsWith({{&AudioTags::title, QStringLiteral("N")}});
const AudioTags kArtist = tagsWith({{&AudioTags::albumArtist, QStringLiteral("V")}});
const QByteArray kPng = "\x89PNG picture";
const QByteArray kNewFrame = frame("TIT2", QByteArray("\1\xFF\xFEN\0", 5));
const QByteArray kArtistFrame = frame("TPE2", QByteArray("\1\xFF\xFEV\0", 5));
const QByteArray kPrivate = frame("PRIV", "owner");

/// Bytes of a file before and after a keeping save.
struct Case {
    const char* what;
    Change change;
    QByteArray before;
    QByteArray after;
};

template <std::size_t size>
void expectChanges(const QString& name, const Case (&cases)[size])
{
    for (const Case& c : cases) {
        const QByteArray after = changed(name, c.before, c.change);
        EXPECT_EQ(after.toHex(' '), c.after.toHex(' ')) << c.what;
        EXPECT_EQ(changed(name, after, c.change), after) << c.what;
    }
}

QByteArray comments(const QByteArray& vendor, const QByteArrayList& list)
{
    QByteArray body = little(quint64(vendor.size()), 4) + vendor + little(quint64(list.size()), 4);
    for (const QByteArray& comment : list)
        body += little(quint64(comment.size()), 4) + comment;
    return body;
}

QByteArray flacFile(std::vector<std::pair<int, QByteArray>> blocks, const QByteArray& trailer = {})
{
    QByteArray bytes = "fLaC" + flacBlock(0, QByteArray(34, '\1'), blocks.empty());
    for (std::size_t index = 0; index < blocks.size(); ++index)
        bytes += flacBlock(blocks[index].first, blocks[index].second, index + 1 == blocks.size());
    return bytes + QByteArray(500, '\x5a') + trailer;
}

TEST(KeepingContainersTest, flacChangesCommentsInTheirPlace)
{
    const QByteArray seek(18, '\2');
    const QByteArray cover = flacPicture("old");
    QByteArray back = flacPicture("back");
    back[3] = 4;
    const QByteArray picture = "METADATA_BLOCK_PICTURE=" + cover.toBase64();
    const QByteArray mixed = comments("Lavf", {"title=O", "Mood=x", "ALBUM=L", "no sign", "Title=P"});
    const Case cases[] = {
        {"one title", keeping(kNew, kTitle), flacFile({{4, mixed}, {6, cover}, {3, seek}}),
         flacFile({{4, comments("Lavf", {"Mood=x", "ALBUM=L", "no sign", "TITLE=N"})}, {6, cover}, {3, seek}})},
        {"several blocks", keeping(kNew, kTitle), flacFile({{4, mixed}, {4, mixed}}),
         flacFile({{4, comments("Lavf", {"Mood=x", "ALBUM=L", "no sign", "TITLE=N"})},
                   {4, comments("Lavf", {"Mood=x", "ALBUM=L", "no sign"})}})},
        {"other names of the fields", keeping({}, TagField::Comment | TagFields(TagField::MusicalKey)),
         flacFile({{4, comments("v", {"DESCRIPTION=d", "initial key=8A", "COMMENT=c", "KEY=A", "X=y"})}}),
         flacFile({{4, comments("v", {"X=y"})}})},
        {"no comments", keeping(kNew, kTitle), flacFile({{3, seek}}),
         flacFile({{3, seek}, {4, comments("Velmora", {"TITLE=N"})}})},
        {"no comments and none to come", keeping({}), flacFile({}), flacFile({})},
        {"tags behind the sound", keeping({}, kTitle), flacFile({}, ape({"Title=O", "X=y"}) + id3v1({.title = "O"})),
         flacFile({}, ape({"X=y"}) + id3v1({}))},
        {"new cover", keepingWithPicture(kPng, {}, {}),
         flacFile({{6, cover}, {4, comments("v", {picture, "COVERART=AAAA"})}, {6, back}}),
         flacFile({{4, comments("v", {})}, {6, back}, {6, flacPicture(kPng)}})},
    };
    expectChanges(QStringLiteral("sound.flac"), cases);
}

TEST(KeepingContainersTest, wavChangesTheListAndTheTag)
{
    const QByteArray other = riffChunk("ISFT", "Lavf") + riffChunk("IART", "A");
    const QByteArray old = riffChunk("INAM", "O");
    const QByteArray fresh = riffChunk("INAM", "N");
    const QByteArray tag = riffChunk("id3 ", id3v2(textFrame("TIT2", "O") + kPrivate) + "room");
    const QByteArray newTag = riffChunk("id3 ", id3v2(kPrivate + kNewFrame) + "room");
    const QByteArray more = riffChunk("bext", "odd");
    const Case cases[] = {
        {"list", keeping(kNew, kTitle), wave(3, info(old + other) + more), wave(3, info(other + fresh) + more)},
        {"list and tag", keeping(kNew, kTitle), wave(3, tag + more + info(other + old)),
         wave(3, newTag + more + info(other + fresh))},
        {"of several lists the last is read", keeping(kNew, kTitle), wave(3, info(old) + info(old + other)),
         wave(3, info({}) + info(other + fresh))},
        {"no list", keeping(kNew, kTitle), wave(3, more), wave(3, more + info(fresh))},
        {"nothing to say", keeping({}, kTitle), wave(3, more), wave(3, more)},
        {"album artist", keeping(kArtist, TagField::AlbumArtist), wave(3, info(other)),
         wave(3, info(other) + riffChunk("id3 ", id3v2(kArtistFrame)))},
        {"album artist and a tag", keeping(kArtist, TagField::AlbumArtist), wave(3, riffChunk("ID3 ", id3v2(kPrivate))),
         wave(3, riffChunk("ID3 ", id3v2(kPrivate + kArtistFrame)))},
        {"an empty album artist makes no tag", keeping({}, TagField::AlbumArtist), wave(3, info(other)),
         wave(3, info(other))},
        {"picture", keepingWithPicture(kPng, {}, {}), wave(3, info(other)),
         wave(3, info(other) + riffChunk("id3 ", id3v2(pictureFrame(kPng))))},
    };
    expectChanges(QStringLiteral("sound.wav"), cases);
}

TEST(KeepingContainersTest, aiffChangesTheTagAndTheTextsThatAreRead)
{
    const QByteArray texts = aiffChunk("AUTH", "A") + aiffChunk("COMT", "binary") + aiffChunk("(c) ", "me");
    const QByteArray name = aiffChunk("NAME", "O");
    const Case cases[] = {
        {"text", keeping(kNew, kTitle), aiff(3, name + texts), aiff(3, texts + aiffChunk("ID3 ", id3v2(kNewFrame)))},
        {"tag in small letters", keeping(kNew, kTitle), aiff(3, aiffChunk("id3 ", id3v2(kPrivate)) + name + texts),
         aiff(3, aiffChunk("id3 ", id3v2(kPrivate + kNewFrame)) + texts)},
        {"several tags", keeping(kNew, kTitle),
         aiff(3, aiffChunk("ID3 ", {}) + aiffChunk("ID3 ", id3v2(textFrame("TIT2", "O") + kPrivate))),
         aiff(3, aiffChunk("ID3 ", id3v2(kNewFrame)) + aiffChunk("ID3 ", id3v2(kPrivate)))},
        {"comments", keeping({}, TagField::Comment), aiff(3, aiffChunk("ANNO", "n") + texts), aiff(3, texts)},
        {"picture", keepingWithPicture(kPng, {}, {}), aiff(3, texts),
         aiff(3, texts + aiffChunk("ID3 ", id3v2(pictureFrame(kPng))))},
    };
    expectChanges(QStringLiteral("sound.aiff"), cases);
}

QByteArray item(const char* type, const QByteArray& text)
{
    return itemAtom(type, 1, text);
}

TEST(KeepingContainersTest, m4aChangesItems)
{
    const QByteArray rest = itemAtom("covr", 14, "png") + freeformAtom("com.apple.iTunes", "iTunSMPB", "0") +
                            item("desc", "d") + item("\251too", "Lavf");
    const QByteArray key = freeformAtom("com.apple.iTunes", "initialkey", "8A");
    const auto tempo = [](const char* text) { return freeformAtom("com.apple.iTunes", "BPM", text); };
    const auto withTempo = [](const char* text) {
        return keeping(tagsWith({{&AudioTags::bpm, QString::fromLatin1(text)}}), TagField::Tempo);
    };
    const auto withTrack = [](const char* text) {
        return keeping(tagsWith({{&AudioTags::track, QString::fromLatin1(text)}}), TagField::Track);
    };
    const QByteArray bare = atom("ftyp", "M4A ") + atom("moov", atom("mvhd", {})) + atom("mdat", "x");
    const QByteArray handler = big(0, 8) + "mdirappl" + QByteArray(9, '\0');
    const QByteArray meta = atom("meta", big(0, 4) + atom("hdlr", handler) + atom("ilst", item("\251nam", "N")));
    const Case cases[] = {
        {"title", keeping(kNew, kTitle), m4a(item("\251nam", "Old") + rest), m4a(rest + item("\251nam", "N"))},
        {"genre in both forms", keeping(tagsWith({{&AudioTags::genre, QStringLiteral("House")}}), TagField::Genre),
         m4a(itemAtom("gnre", 0, QByteArray("\0\x12", 2)) + rest), m4a(rest + item("\251gen", "House"))},
        {"key", keeping(tagsWith({{&AudioTags::musicalKey, QStringLiteral("8A")}}), TagField::MusicalKey),
         m4a(freeformAtom("org.other", "INITIALKEY", "1A") + rest), m4a(rest + key)},
        {"whole tempo", withTempo("124"), m4a(itemAtom("tmpo", 21, QByteArray("\0\1", 2)) + tempo("1")),
         m4a(itemAtom("tmpo", 21, QByteArray("\0\x7c", 2)))},
        {"tempo with a fraction", withTempo("124.4"), m4a({}),
         m4a(itemAtom("tmpo", 21, QByteArray("\0\x7c", 2)) + tempo("124.4"))},
        {"tempo that is none", withTempo("fast"), m4a({}), m4a(tempo("fast"))},
        {"track of all", withTrack("3/12"), m4a(itemAtom("trkn", 0, QByteArray(8, '\1'))),
         m4a(itemAtom("trkn", 0, QByteArray("\0\0\0\3\0\x0c\0\0", 8)))},
        {"track that is none", withTrack("A1"), m4a({}), m4a(freeformAtom("com.apple.iTunes", "TRACKNUMBER", "A1"))},
        {"no user data", keeping(kNew, kTitle), bare,
         atom("ftyp", "M4A ") + atom("moov", atom("mvhd", {}) + atom("udta", meta)) + atom("mdat", "x")},
    };
    expectChanges(QStringLiteral("sound.m4a"), cases);
}

TEST(KeepingContainersTest, leaveWhatTheyDoNotUnderstand)
{
    const QString corrupt = QStringLiteral("fileReadCorruptFile");
    const QByteArray large(1 << 24, 'x');
    const QByteArray keys =
        atom("meta", atom("hdlr", big(0, 8) + "mdta" + QByteArray(9, '\0')) + atom("keys", big(0, 8)));
    const AudioTags huge = tagsWith({{&AudioTags::title, QString::fromLatin1(large)}});
    const struct {
        const char* what;
        const char* name;
        QByteArray bytes;
        Change change;
        QString failure;
    } cases[] = {
        {"comments beyond their block", "a.flac", flacFile({{4, comments("v", {"A=b"}).chopped(1)}}), keeping(kNew),
         corrupt},
        {"more comments than there are", "a.flac", flacFile({{4, big(0, 4) + little(0xFFFFFFFF, 4)}}), keeping(kNew),
         corrupt},
        {"block beyond the file", "a.flac", "fLaC" + flacBlock(0, "x", true).chopped(1), keeping(kNew), corrupt},
        {"texts too large", "a.flac", flacFile({}), keeping(huge, kTitle), QStringLiteral("rewriteFailed flac")},
        {"picture too large", "a.flac", flacFile({}), keepingWithPicture(large, {}),
         QStringLiteral("rewriteFailed flac")},
        {"tag in front", "a.flac", id3v2(kPrivate) + flacFile({}), keeping(kNew),
         QStringLiteral("unsupportedFormat flac")},
        {"chunk in the list", "a.wav", wave(3, info("INAM" + little(99, 4))), keeping(kNew), corrupt},
        {"no tag in its chunk", "a.wav", wave(3, riffChunk("id3 ", "none at all")), keeping(kNew),
         QStringLiteral("rewriteFailed ID3")},
        {"tag beyond its chunk", "a.wav", wave(3, riffChunk("id3 ", id3v2(kPrivate).chopped(1))), keeping(kNew),
         corrupt},
        {"chunk beyond the file", "a.aiff", aiff(3, "NAME" + big(99, 4)), keeping(kNew), corrupt},
        {"another file", "a.aif", wave(3), keeping(kNew), QStringLiteral("unsupportedFormat aiff")},
        {"numbered keys", "a.m4a", atom("ftyp", "M4A ") + atom("moov", atom("udta", keys)), keeping(kNew),
         QStringLiteral("rewriteFailed m4a")},
        {"list beyond its end", "a.m4a", m4a(big(99, 4) + "\251nam"), keeping(kNew), corrupt},
        {"picture", "a.m4a", m4a({}), keepingWithPicture(kPng, {}), QStringLiteral("unsupportedFormat m4a")},
        {"another kind", "a.ogg", "OggS", keeping(kNew), QStringLiteral("unsupportedFormat ogg")},
        {"raw sound", "a.aac", "\xFF\xF1", keeping(kNew), QStringLiteral("unsupportedFormat aac")},
    };
    for (const auto& c : cases)
        expectRefused(QLatin1StringView(c.name), c.bytes, c.change, c.failure, c.what);
}

} // namespace
