#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/MetadataWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.m4a");

QByteArray text(const char* type, const QByteArray& value)
{
    return itemAtom(type, 1, value);
}

QByteArray track(const QByteArray& tables)
{
    return atom("trak", atom("mdia", atom("minf", atom("stbl", tables))));
}

/// A movie in front of its sound, whose places are those of the two tables.
QByteArray file(const QByteArray& userData, const QByteArray& furtherChildren = {})
{
    const auto movie = [&](quint64 place) {
        return atom("moov", track(atom("stco", big(0, 4) + big(2, 4) + big(4, 4) + big(place, 4))) +
                                track(atom("co64", big(0, 4) + big(1, 4) + big(place + 2, 8))) + userData +
                                furtherChildren);
    };
    const QByteArray begin = atom("ftyp", "M4A ");
    return begin + movie(quint64(begin.size() + movie(0).size() + 8)) + atom("mdat", "sound!");
}

QByteArray userData(const QByteArray& children)
{
    return atom("udta", children);
}

TEST(M4aWriterTest, replacesAllTagsAndMovesThePlacesOfTheSound)
{
    const QByteArray chapters = atom("chpl", "chapters");
    const QByteArray own = metaAtom(text("\251nam", "N"));
    const QByteArray old =
        metaAtom(text("\251nam", "Old") + text("\251day", "1999") + itemAtom("covr", 14, "png"), atom("free", "room"));
    const QByteArray foreign = userData(atom("\251nam", "Old") + atom("titl", "Old")) + metaAtom({});
    const Change title =
        writing(tagsWith({{&AudioTags::title, QStringLiteral("N")}, {&AudioTags::year, QStringLiteral("1")}}));
    expectChanges(
        kName, {{"no tags yet", title, file({}), file(userData(own))},
                {"other tags", title, file(userData(old)), file(userData(own))},
                {"beside chapters", title, file(userData(chapters + old)), file(userData(chapters + own))},
                {"texts of other kinds", title, file(foreign), file(userData(own))},
                {"zeros at the end", title, file(userData(old + big(0, 4))), file(userData(own + big(0, 4)))},
                {"nothing to write", writing({}), file(userData(old)), file({})},
                {"nothing to write, chapters", writing({}), file(userData(chapters + old)), file(userData(chapters))}});
}

TEST(M4aWriterTest, cleansInPlace)
{
    using enum CleanerField;
    const Change rename = cleaning(Title, QStringLiteral("N"));
    const QByteArray title = text("\251nam", "T");
    const QByteArray artist = text("\251ART", "A");
    const QByteArray freeTempo = freeformAtom("com.apple.iTunes", "Tempo", "120");
    const QByteArray freeKey = freeformAtom("com.apple.iTunes", "initialkey", "8A");
    const QByteArray all = title + artist + itemAtom("covr", 14, "png") + itemAtom("tmpo", 21, "\0\1") + freeTempo +
                           freeKey + itemAtom("trkn", 0, "12345678");
    const QByteArray room = atom("free", "room");
    const QByteArray own = metaAtom(text("\251nam", "N"));
    const QByteArray zeros(12, '\0');
    expectChanges(kName, {{"several", cleaning(Artwork | Tempo | Track), file(userData(metaAtom(all, room)), room),
                           file(userData(metaAtom(title + artist + freeKey, room)), room)},
                          {"free item", cleaning(Key), file(userData(metaAtom(artist + freeKey))),
                           file(userData(metaAtom(artist)))},
                          {"new title", rename, file(userData(metaAtom(title + artist))),
                           file(userData(metaAtom(artist + text("\251nam", "N"))))},
                          {"new title, no list", rename, file(userData(room)), file(userData(own + room))},
                          {"new title, no user data", rename, file({}), file(userData(own))},
                          {"nothing of it there", cleaning(Comment, QStringLiteral("N")), file(userData(metaAtom(all))),
                           file(userData(metaAtom(all)))},
                          {"new title, zeros at the end", rename, file({}, zeros), file(userData(own), zeros)},
                          {"no tags", cleaning(Comment), file({}), file({})}});
}

TEST(M4aWriterTest, refusesWhatItCannotRewrite)
{
    const QByteArray good = file(userData(metaAtom({})));
    const QString unsupported = QStringLiteral("unsupportedFormat m4a");
    const QString failed = QStringLiteral("rewriteFailed m4a");
    const Change write = writing(fullTags());
    const Change clean = cleaning(CleanerField::Title);
    const QByteArray begin = atom("ftyp", "M4A ");
    const QByteArray keys =
        atom("meta", atom("hdlr", big(0, 8) + "mdta" + QByteArray(9, '\0')) + atom("keys", big(0, 8)));
    const QByteArray references = atom("dref", big(0, 4) + big(1, 4) + atom("url ", big(0, 4) + "file:other"));
    const QByteArray elsewhere = atom("trak", atom("mdia", atom("minf", atom("dinf", references) + atom("stbl", {}))));
    const auto movie = [&](const QByteArray& tables) {
        return begin + atom("moov", track(tables)) + atom("mdat", "x");
    };
    expectRefusals(
        kName,
        {{"empty", {}, write, unsupported},
         {"other file", wave(10), write, unsupported},
         {"cut in the sound", good.chopped(1), write, kCorrupt},
         {"no movie", begin + atom("mdat", "x"), write, kCorrupt},
         {"two movies", good + atom("moov", {}), write, kCorrupt},
         {"fragments", good + atom("moof", {}), write, failed},
         {"fragments to come", file({}, atom("mvex", {})), write, failed},
         {"child beyond the movie", begin + atom("moov", big(100, 4) + "udta"), write, kCorrupt},
         {"no size", file({}, big(0, 4) + "udta"), clean, kCorrupt},
         {"list beyond its parent", file(userData(atom("meta", big(0, 4) + big(9, 4) + "ilst"))), clean, kCorrupt},
         {"size below its header", file(userData(big(7, 4) + "meta")), clean, kCorrupt},
         {"table beyond its end", movie(atom("stco", big(0, 4) + big(0xFFFFFFFF, 4))), write, kCorrupt},
         {"place beyond 32 bits", movie(atom("stco", big(0, 4) + big(1, 4) + big(0xFFFFFFFF, 4))), write, failed},
         {"places of encryption", movie(atom("saio", big(0, 4))), write, failed},
         {"places in a compressed movie", file({}, atom("cmov", {})), write, failed},
         {"sound in another file", file({}, elsewhere), write, failed},
         {"places outside of the movie", good + atom("meta", big(0, 4)), write, failed},
         {"numbered keys", file(userData(keys)), clean, failed}});
}

TEST(M4aWriterTest, keepsTheChaptersOfRealFiles)
{
    const FileFolder folder;
    const QUrl chapters =
        folder.write(QStringLiteral("chapters.txt"), ";FFMETADATA1\nartist=Old\ndate=1999\n"
                                                     "[CHAPTER]\nTIMEBASE=1/10\nSTART=0\nEND=5\ntitle=One\n"
                                                     "[CHAPTER]\nTIMEBASE=1/10\nSTART=5\nEND=10\ntitle=Two\n");
    const QUrl url =
        makeSound(folder, kName, QStringLiteral("-i %1 -map_metadata 1 -c:a aac").arg(chapters.toLocalFile()));
    ASSERT_TRUE(contentOf(url).contains("chpl"));
    MetadataWriter::write(fullTags(), false, url);
    EXPECT_TRUE(contentOf(url).contains("chpl"));
    EXPECT_EQ(foreignTag(url, QStringLiteral("\251day")), QString());
}

} // namespace
