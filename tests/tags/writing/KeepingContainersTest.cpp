#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const TagFields kTitle = TagField::Title;
const AudioTags kNew = tagsWith({{&AudioTags::title, QStringLiteral("N")}});
const Change kRename = keeping(kNew, kTitle);
const Change kCredit = keeping(tagsWith({{&AudioTags::albumArtist, QStringLiteral("V")}}), TagField::AlbumArtist);
const QByteArray kNewFrame = frame("TIT2", QByteArray("\1\xFF\xFEN\0", 5));
const QByteArray kArtistFrame = frame("TPE2", QByteArray("\1\xFF\xFEV\0", 5));
const QByteArray kPrivate = frame("PRIV", "owner");

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
    expectChanges(
        QStringLiteral("sound.flac"),
        {{"one title", kRename, flacFile({{4, mixed}, {6, cover}, {3, seek}}),
          flacFile({{4, comments("Lavf", {"Mood=x", "ALBUM=L", "no sign", "TITLE=N"})}, {6, cover}, {3, seek}})},
         {"several blocks", kRename, flacFile({{4, mixed}, {4, mixed}}),
          flacFile({{4, comments("Lavf", {"Mood=x", "ALBUM=L", "no sign", "TITLE=N"})},
                    {4, comments("Lavf", {"Mood=x", "ALBUM=L", "no sign"})}})},
         {"other names of the fields", keeping({}, TagField::Comment | TagFields(TagField::MusicalKey)),
          flacFile({{4, comments("v", {"DESCRIPTION=d", "initial key=8A", "COMMENT=c", "KEY=A", "X=y"})}}),
          flacFile({{4, comments("v", {"X=y"})}})},
         {"no comments", kRename, flacFile({{3, seek}}), flacFile({{3, seek}, {4, comments("Velmora", {"TITLE=N"})}})},
         {"no comments and none to come", keeping({}), flacFile({}), flacFile({})},
         {"tags behind the sound", keeping({}, kTitle), flacFile({}, ape({"Title=O", "X=y"}) + id3v1({.title = "O"})),
          flacFile({}, ape({"X=y"}) + id3v1({}))},
         {"new cover", keepingWithPicture(kPng, {}, {}),
          flacFile({{6, cover}, {4, comments("v", {picture, "COVERART=AAAA"})}, {6, back}}),
          flacFile({{4, comments("v", {})}, {6, back}, {6, flacPicture(kPng)}})}});
}

TEST(KeepingContainersTest, wavChangesTheListAndTheTag)
{
    const QByteArray other = riffChunk("ISFT", "Lavf") + riffChunk("IART", "A");
    const QByteArray old = riffChunk("INAM", "O");
    const QByteArray fresh = riffChunk("INAM", "N");
    const QByteArray tag = riffChunk("id3 ", id3v2(textFrame("TIT2", "O") + kPrivate) + "room");
    const QByteArray newTag = riffChunk("id3 ", id3v2(kPrivate + kNewFrame) + "room");
    const QByteArray more = riffChunk("bext", "odd");
    expectChanges(
        QStringLiteral("sound.wav"),
        {{"list", kRename, wave(3, info(old + other) + more), wave(3, info(other + fresh) + more)},
         {"list and tag", kRename, wave(3, tag + more + info(other + old)),
          wave(3, newTag + more + info(other + fresh))},
         {"of several lists the last is read", kRename, wave(3, info(old) + info(old + other)),
          wave(3, info({}) + info(other + fresh))},
         {"no list", kRename, wave(3, more), wave(3, more + info(fresh))},
         {"nothing to say", keeping({}, kTitle), wave(3, more), wave(3, more)},
         {"album artist", kCredit, wave(3, info(other)), wave(3, info(other) + riffChunk("id3 ", id3v2(kArtistFrame)))},
         {"album artist and a tag", kCredit, wave(3, riffChunk("ID3 ", id3v2(kPrivate))),
          wave(3, riffChunk("ID3 ", id3v2(kPrivate + kArtistFrame)))},
         {"an empty album artist makes no tag", keeping({}, TagField::AlbumArtist), wave(3, info(other)),
          wave(3, info(other))},
         {"picture", keepingWithPicture(kPng, {}, {}), wave(3, info(other)),
          wave(3, info(other) + riffChunk("id3 ", id3v2(pictureFrame(kPng))))}});
}

TEST(KeepingContainersTest, aiffChangesTheTagAndTheTextsThatAreRead)
{
    const QByteArray texts = aiffChunk("AUTH", "A") + aiffChunk("COMT", "binary") + aiffChunk("(c) ", "me");
    const QByteArray name = aiffChunk("NAME", "O");
    expectChanges(
        QStringLiteral("sound.aiff"),
        {{"text", kRename, aiff(3, name + texts), aiff(3, texts + aiffChunk("ID3 ", id3v2(kNewFrame)))},
         {"tag in small letters", kRename, aiff(3, aiffChunk("id3 ", id3v2(kPrivate)) + name + texts),
          aiff(3, aiffChunk("id3 ", id3v2(kPrivate + kNewFrame)) + texts)},
         {"several tags", kRename,
          aiff(3, aiffChunk("ID3 ", {}) + aiffChunk("ID3 ", id3v2(textFrame("TIT2", "O") + kPrivate))),
          aiff(3, aiffChunk("ID3 ", id3v2(kNewFrame)) + aiffChunk("ID3 ", id3v2(kPrivate)))},
         {"comments", keeping({}, TagField::Comment), aiff(3, aiffChunk("ANNO", "n") + texts), aiff(3, texts)},
         {"picture", keepingWithPicture(kPng, {}, {}), aiff(3, texts),
          aiff(3, texts + aiffChunk("ID3 ", id3v2(pictureFrame(kPng))))}});
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
    expectChanges(
        QStringLiteral("sound.m4a"),
        {{"title", kRename, m4a(item("\251nam", "Old") + rest), m4a(rest + item("\251nam", "N"))},
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
         {"no user data", kRename, bare,
          atom("ftyp", "M4A ") + atom("moov", atom("mvhd", {}) + atom("udta", metaAtom(item("\251nam", "N")))) +
              atom("mdat", "x")}});
}

TEST(KeepingContainersTest, leaveWhatTheyDoNotUnderstand)
{
    const QString failed = QStringLiteral("rewriteFailed flac");
    const QByteArray large(1 << 24, 'x');
    const QByteArray keys =
        atom("meta", atom("hdlr", big(0, 8) + "mdta" + QByteArray(9, '\0')) + atom("keys", big(0, 8)));
    const Change keep = keeping(kNew);
    const Change huge = keeping(tagsWith({{&AudioTags::title, QString::fromLatin1(large)}}), kTitle);
    expectRefusals(
        QStringLiteral("a.flac"),
        {{"comments beyond their block", flacFile({{4, comments("v", {"A=b"}).chopped(1)}}), keep, kCorrupt},
         {"more comments than there are", flacFile({{4, big(0, 4) + little(0xFFFFFFFF, 4)}}), keep, kCorrupt},
         {"block beyond the file", "fLaC" + flacBlock(0, "x", true).chopped(1), keep, kCorrupt},
         {"texts too large", flacFile({}), huge, failed},
         {"picture too large", flacFile({}), keepingWithPicture(large, {}), failed},
         {"tag in front", id3v2(kPrivate) + flacFile({}), keep, QStringLiteral("unsupportedFormat flac")}});
    expectRefusals(
        QStringLiteral("a.wav"),
        {{"chunk in the list", wave(3, info("INAM" + little(99, 4))), keep, kCorrupt},
         {"no tag in its chunk", wave(3, riffChunk("id3 ", "none at all")), keep, QStringLiteral("rewriteFailed ID3")},
         {"tag beyond its chunk", wave(3, riffChunk("id3 ", id3v2(kPrivate).chopped(1))), keep, kCorrupt}});
    expectRefusals(QStringLiteral("a.aif"),
                   {{"chunk beyond the file", aiff(3, "NAME" + big(99, 4)), keep, kCorrupt},
                    {"another file", wave(3), keep, QStringLiteral("unsupportedFormat aiff")}});
    expectRefusals(QStringLiteral("a.m4a"),
                   {{"numbered keys", atom("ftyp", "M4A ") + atom("moov", atom("udta", keys)), keep,
                     QStringLiteral("rewriteFailed m4a")},
                    {"list beyond its end", m4a(big(99, 4) + "\251nam"), keep, kCorrupt},
                    {"picture", m4a({}), keepingWithPicture(kPng, {}), QStringLiteral("unsupportedFormat m4a")}});
    expectRefusals(QStringLiteral("a.ogg"), {{"another kind", "OggS", keep, QStringLiteral("unsupportedFormat ogg")}});
    expectRefusals(QStringLiteral("a.aac"), {{"raw sound", "\xFF\xF1", keep, QStringLiteral("unsupportedFormat aac")}});
}

} // namespace
