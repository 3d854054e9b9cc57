#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/MetadataWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.aiff");
const QByteArray kPng = "\x89PNG picture";

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
    const AudioTags tags = fullTags();
    const QByteArray own = aiffChunk("ID3 ", MetadataWriter::id3Tag(tags, std::nullopt));
    const QByteArray old = id3(textFrame("TIT2", "Old"));
    const struct {
        const char* what;
        AudioTags tags;
        QByteArray before;
        QByteArray after;
    } cases[] = {
        {"sound alone", tags, file(kSound), file(kSound + own)},
        {"compressed kind", tags, file(kSound, "AIFC"), file(kSound + own, "AIFC")},
        {"all kinds", tags, file(kTexts + kMarkers + old + kSound + kTexts + kCopyright),
         file(kMarkers + kSound + kCopyright + own)},
        {"ID3v2 in small letters", tags, file(kSound + id3(textFrame("TIT2", "Old"), "id3 ")), file(kSound + own)},
        {"nothing to write", {}, file(kTexts + kSound + old), file(kSound)},
        {"trailing bytes", tags, file(kSound, "AIFF", "7 bytes"), file(kSound + own)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changed(kName, c.before, writing(c.tags)), c.after) << c.what;
    EXPECT_EQ(changed(QStringLiteral("SOUND.AIF"), file(kSound + old), assigning(kPng, tags)),
              file(kSound + aiffChunk("ID3 ", MetadataWriter::id3Tag(tags, kPng))));
}

TEST(AiffWriterTest, cleansInPlace)
{
    const QByteArray artist = textFrame("TPE1", "a");
    const QByteArray tag = id3(textFrame("TIT2", "t") + artist);
    const QByteArray ownTag =
        MetadataWriter::id3Tag(tagsWith({{&AudioTags::title, QStringLiteral("N")}}), std::nullopt);
    const struct {
        const char* what;
        CleanerFields fields;
        QString title;
        QByteArray before;
        QByteArray after;
    } cases[] = {
        {"title",
         CleanerField::Title,
         {},
         file(kTexts + tag + kSound + kMarkers, "AIFC", "rest"),
         file(aiffChunk("AUTH", "a") + aiffChunk("ANNO", "x") + aiffChunk("COMT", "0123456789") + id3(artist) + kSound +
                  kMarkers,
              "AIFC", "rest")},
        {"comment",
         CleanerField::Comment,
         {},
         file(kTexts + kSound + tag),
         file(aiffChunk("NAME", "n") + aiffChunk("AUTH", "a") + kSound + tag)},
        {"new title", CleanerField::Title, QStringLiteral("N"), file(tag + kSound + tag),
         file(aiffChunk("ID3 ", id3v2(artist + ownTag.mid(10))) + kSound + id3(artist))},
        {"new title, no ID3v2", CleanerField::Title, QStringLiteral("N"), file(kTexts + kSound, "AIFF", "rest"),
         file(aiffChunk("AUTH", "a") + aiffChunk("ANNO", "x") + aiffChunk("COMT", "0123456789") + kSound +
              aiffChunk("ID3 ", ownTag))},
        {"new title, an empty ID3v2 chunk", CleanerField::Title, QStringLiteral("N"),
         file(aiffChunk("ID3 ", {}) + kSound), file(aiffChunk("ID3 ", {}) + kSound + aiffChunk("ID3 ", ownTag))},
        {"nothing of it there", CleanerField::Genre, {}, file(kTexts + tag + kSound), file(kTexts + tag + kSound)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changed(kName, c.before, cleaning(c.fields, c.title)), c.after) << c.what;
}

TEST(AiffWriterTest, refusesWhatItCannotRewrite)
{
    const QByteArray good = file(kSound);
    const QString corrupt = QStringLiteral("fileReadCorruptFile");
    const QString unsupported = QStringLiteral("unsupportedFormat aiff");
    const Change write = writing(fullTags());
    const Change clean = cleaning(CleanerField::Title);
    const QString compressed = QStringLiteral("sound.aifc");
    const struct {
        const char* what;
        QString name;
        QByteArray bytes;
        Change change;
        QString failure;
    } cases[] = {
        {"empty", kName, {}, write, unsupported},
        {"other kind of FORM", kName, "FORM" + good.mid(4, 4) + "8SVX" + good.mid(12), write, unsupported},
        {"WAV by another name", kName, wave(10), clean, unsupported},
        {"extension of the compressed kind", compressed, good, write, QStringLiteral("unsupportedFormat aifc")},
        {"cut in the sound", kName, good.left(500), write, corrupt},
        {"chunk beyond the end", kName, file(kSound + "ANNO" + big(0xFFFFFFFF, 4)), clean, corrupt},
        {"ID3v2 beyond its chunk", kName, file(kSound + aiffChunk("ID3 ", id3v2("x").chopped(1))), clean, corrupt},
        {"no ID3v2 in its chunk", kName, file(kSound + aiffChunk("ID3 ", "something else")), clean,
         QStringLiteral("rewriteFailed ID3")},
    };
    for (const auto& c : cases)
        expectRefused(c.name, c.bytes, c.change, c.failure, c.what);
}

} // namespace
