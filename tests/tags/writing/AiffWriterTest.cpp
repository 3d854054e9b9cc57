#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/MetadataWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.aiff");

QByteArray file(const QByteArray& chunks, const char* kind = "AIFF", const QByteArray& trailing = {})
{
    return "FORM" + big(quint64(4 + chunks.size() + trailing.size()), 4) + kind + chunks + trailing;
}

const QByteArray kSound = aiffChunk("COMM", QByteArray(18, '\1')) + aiffChunk("SSND", QByteArray(999, '\x5a'));
const QByteArray kMarkers = aiffChunk("MARK", QByteArray(11, '\2'));
const QByteArray kCopyright = aiffChunk("(c) ", "me");
const QByteArray kTexts =
    aiffChunk("NAME", "n") + aiffChunk("AUTH", "a") + aiffChunk("ANNO", "x") + aiffChunk("COMT", "0123456789");

QByteArray id3(const QByteArray& frames, const char* id = "ID3 ")
{
    return aiffChunk(id, id3v2(frames));
}

TEST(AiffWriterTest, replacesTextsAndID3Alone)
{
    const Change write = writing(fullTags());
    const QByteArray own = aiffChunk("ID3 ", MetadataWriter::id3Tag(fullTags(), std::nullopt));
    const QByteArray pictured = aiffChunk("ID3 ", MetadataWriter::id3Tag(fullTags(), kPng));
    const QByteArray old = id3(textFrame("TIT2", "Old"));
    expectChanges(kName, {{"sound alone", write, file(kSound), file(kSound + own)},
                          {"compressed kind", write, file(kSound, "AIFC"), file(kSound + own, "AIFC")},
                          {"all kinds", write, file(kTexts + kMarkers + old + kSound + kTexts + kCopyright),
                           file(kMarkers + kSound + kCopyright + own)},
                          {"ID3v2 in small letters", write, file(kSound + id3(textFrame("TIT2", "Old"), "id3 ")),
                           file(kSound + own)},
                          {"nothing to write", writing({}), file(kTexts + kSound + old), file(kSound)},
                          {"trailing bytes", write, file(kSound, "AIFF", "7 bytes"), file(kSound + own)},
                          {"picture", assigning(kPng, fullTags()), file(kSound + old), file(kSound + pictured)}});
}

TEST(AiffWriterTest, cleansInPlace)
{
    using enum CleanerField;
    const Change rename = cleaning(Title, QStringLiteral("N"));
    const QByteArray artist = textFrame("TPE1", "a");
    const QByteArray tag = id3(textFrame("TIT2", "t") + artist);
    const QByteArray notes = aiffChunk("ANNO", "x") + aiffChunk("COMT", "0123456789");
    const QByteArray untitled = aiffChunk("AUTH", "a") + notes;
    const QByteArray ownTag =
        MetadataWriter::id3Tag(tagsWith({{&AudioTags::title, QStringLiteral("N")}}), std::nullopt);
    const QByteArray own = aiffChunk("ID3 ", ownTag);
    const QByteArray empty = aiffChunk("ID3 ", {});
    expectChanges(
        kName, {{"title", cleaning(Title), file(kTexts + tag + kSound + kMarkers, "AIFC", "rest"),
                 file(untitled + id3(artist) + kSound + kMarkers, "AIFC", "rest")},
                {"comment", cleaning(Comment), file(kTexts + kSound + tag),
                 file(aiffChunk("NAME", "n") + aiffChunk("AUTH", "a") + kSound + tag)},
                {"new title", rename, file(tag + kSound + tag),
                 file(aiffChunk("ID3 ", id3v2(artist + ownTag.mid(10))) + kSound + id3(artist))},
                {"new title, no ID3v2", rename, file(kTexts + kSound, "AIFF", "rest"), file(untitled + kSound + own)},
                {"new title, an empty ID3v2 chunk", rename, file(empty + kSound), file(empty + kSound + own)},
                {"nothing of it there", cleaning(Genre), file(kTexts + tag + kSound), file(kTexts + tag + kSound)}});
}

TEST(AiffWriterTest, refusesWhatItCannotRewrite)
{
    const QByteArray good = file(kSound);
    const QString unsupported = QStringLiteral("unsupportedFormat aiff");
    const Change write = writing(fullTags());
    const Change clean = cleaning(CleanerField::Title);
    expectRefusals(
        kName, {{"empty", {}, write, unsupported},
                {"other kind of FORM", "FORM" + good.mid(4, 4) + "8SVX" + good.mid(12), write, unsupported},
                {"WAV by another name", wave(10), clean, unsupported},
                {"cut in the sound", good.left(500), write, kCorrupt},
                {"chunk beyond the end", file(kSound + "ANNO" + big(0xFFFFFFFF, 4)), clean, kCorrupt},
                {"ID3v2 beyond its chunk", file(kSound + aiffChunk("ID3 ", id3v2("x").chopped(1))), clean, kCorrupt},
                {"no ID3v2 in its chunk", file(kSound + aiffChunk("ID3 ", "something else")), clean,
                 QStringLiteral("rewriteFailed ID3")}});
}

} // namespace
