#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/MetadataWriter.h"

#include <QFile>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.m4a");

QByteArray meta(const QByteArray& items, const QByteArray& behind = {})
{
    const QByteArray handler = big(0, 8) + "mdirappl" + QByteArray(9, '\0');
    return atom("meta", big(0, 4) + atom("hdlr", handler) + atom("ilst", items) + behind);
}

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
    const QByteArray own = meta(text("\251nam", "N"));
    const QByteArray old =
        meta(text("\251nam", "Old") + text("\251day", "1999") + itemAtom("covr", 14, "png"), atom("free", "room"));
    const AudioTags title =
        tagsWith({{&AudioTags::title, QStringLiteral("N")}, {&AudioTags::year, QStringLiteral("1")}});
    const struct {
        const char* what;
        AudioTags tags;
        QByteArray before;
        QByteArray after;
    } cases[] = {
        {"no tags yet", title, file({}), file(userData(own))},
        {"other tags", title, file(userData(old)), file(userData(own))},
        {"beside chapters", title, file(userData(chapters + old)), file(userData(chapters + own))},
        {"texts of other kinds", title, file(userData(atom("\251nam", "Old") + atom("titl", "Old")) + meta({})),
         file(userData(own))},
        {"zeros at the end", title, file(userData(old + big(0, 4))), file(userData(own + big(0, 4)))},
        {"nothing to write", {}, file(userData(old)), file({})},
        {"nothing to write, chapters", {}, file(userData(chapters + old)), file(userData(chapters))},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changed(kName, c.before, writing(c.tags)), c.after) << c.what;
}

TEST(M4aWriterTest, cleansInPlace)
{
    const QByteArray artist = text("\251ART", "A");
    const QByteArray freeTempo = freeformAtom("com.apple.iTunes", "Tempo", "120");
    const QByteArray freeKey = freeformAtom("com.apple.iTunes", "initialkey", "8A");
    const QByteArray all = text("\251nam", "T") + artist + itemAtom("covr", 14, "png") + itemAtom("tmpo", 21, "\0\1") +
                           freeTempo + freeKey + itemAtom("trkn", 0, "12345678");
    const QByteArray room = atom("free", "room");
    const QString title = QStringLiteral("N");
    const struct {
        const char* what;
        CleanerFields fields;
        QString title;
        QByteArray before;
        QByteArray after;
    } cases[] = {
        {"several",
         CleanerField::Artwork | CleanerField::Tempo | CleanerField::Track,
         {},
         file(userData(meta(all, room)), room),
         file(userData(meta(text("\251nam", "T") + artist + freeKey, room)), room)},
        {"free item", CleanerField::Key, {}, file(userData(meta(artist + freeKey))), file(userData(meta(artist)))},
        {"new title", CleanerField::Title, title, file(userData(meta(text("\251nam", "T") + artist))),
         file(userData(meta(artist + text("\251nam", "N"))))},
        {"new title, no list", CleanerField::Title, title, file(userData(room)),
         file(userData(meta(text("\251nam", "N")) + room))},
        {"new title, no user data", CleanerField::Title, title, file({}), file(userData(meta(text("\251nam", "N"))))},
        {"nothing of it there", CleanerField::Comment, title, file(userData(meta(all))), file(userData(meta(all)))},
        {"new title, zeros at the end", CleanerField::Title, title, file({}, QByteArray(12, '\0')),
         file(userData(meta(text("\251nam", "N"))), QByteArray(12, '\0'))},
        {"no tags", CleanerField::Comment, {}, file({}), file({})},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changed(kName, c.before, cleaning(c.fields, c.title)), c.after) << c.what;
}

TEST(M4aWriterTest, refusesWhatItCannotRewrite)
{
    const QByteArray good = file(userData(meta({})));
    const QString corrupt = QStringLiteral("fileReadCorruptFile");
    const QString unsupported = QStringLiteral("unsupportedFormat m4a");
    const QString failed = QStringLiteral("rewriteFailed m4a");
    const Change write = writing(fullTags());
    const Change clean = cleaning(CleanerField::Title);
    const QByteArray begin = atom("ftyp", "M4A ");
    const QByteArray keys =
        atom("meta", atom("hdlr", big(0, 8) + "mdta" + QByteArray(9, '\0')) + atom("keys", big(0, 8)));
    const QByteArray references = atom("dref", big(0, 4) + big(1, 4) + atom("url ", big(0, 4) + "file:other"));
    const auto movie = [&](const QByteArray& tables) {
        return begin + atom("moov", track(tables)) + atom("mdat", "x");
    };
    const struct {
        const char* what;
        QString name;
        QByteArray bytes;
        Change change;
        QString failure;
    } cases[] = {
        {"empty", kName, {}, write, unsupported},
        {"other file", kName, wave(10), write, unsupported},
        {"picture", kName, good, assigning("png", {}), unsupported},
        {"raw sound", QStringLiteral("sound.aac"), good, write, QStringLiteral("unsupportedFormat aac")},
        {"other container", QStringLiteral("sound.ogg"), good, clean, QStringLiteral("unsupportedFormat ogg")},
        {"cut in the sound", kName, good.chopped(1), write, corrupt},
        {"no movie", kName, begin + atom("mdat", "x"), write, corrupt},
        {"two movies", kName, good + atom("moov", {}), write, corrupt},
        {"fragments", kName, good + atom("moof", {}), write, failed},
        {"fragments to come", kName, file({}, atom("mvex", {})), write, failed},
        {"child beyond the movie", kName, begin + atom("moov", big(100, 4) + "udta"), write, corrupt},
        {"no size", kName, file({}, big(0, 4) + "udta"), clean, corrupt},
        {"list beyond its parent", kName, file(userData(atom("meta", big(0, 4) + big(9, 4) + "ilst"))), clean, corrupt},
        {"size below its header", kName, file(userData(big(7, 4) + "meta")), clean, corrupt},
        {"table beyond its end", kName, movie(atom("stco", big(0, 4) + big(0xFFFFFFFF, 4))), write, corrupt},
        {"place beyond 32 bits", kName, movie(atom("stco", big(0, 4) + big(1, 4) + big(0xFFFFFFFF, 4))), write, failed},
        {"places of encryption", kName, movie(atom("saio", big(0, 4))), write, failed},
        {"places in a compressed movie", kName, file({}, atom("cmov", {})), write, failed},
        {"sound in another file", kName,
         file({}, atom("trak", atom("mdia", atom("minf", atom("dinf", references) + atom("stbl", {}))))), write,
         failed},
        {"places outside of the movie", kName, good + atom("meta", big(0, 4)), write, failed},
        {"numbered keys", kName, file(userData(keys)), clean, failed},
    };
    for (const auto& c : cases)
        expectRefused(c.name, c.bytes, c.change, c.failure, c.what);
}

TEST(M4aWriterTest, keepsTheChaptersOfRealFiles)
{
    const FileFolder folder;
    const QUrl chapters =
        folder.write(QStringLiteral("chapters.txt"), ";FFMETADATA1\nartist=Old\ndate=1999\n"
                                                     "[CHAPTER]\nTIMEBASE=1/10\nSTART=0\nEND=5\ntitle=One\n"
                                                     "[CHAPTER]\nTIMEBASE=1/10\nSTART=5\nEND=10\ntitle=Two\n");
    const QUrl url = makeSound(folder, kName,
                               {QStringLiteral("-i"), chapters.toLocalFile(), QStringLiteral("-map_metadata"),
                                QStringLiteral("1"), QStringLiteral("-c:a"), QStringLiteral("aac")});
    ASSERT_TRUE(contentOf(url).contains("chpl"));
    MetadataWriter::write(fullTags(), false, url);
    EXPECT_TRUE(contentOf(url).contains("chpl"));
    EXPECT_EQ(foreignTag(url, QStringLiteral("\251day")), QString());
}

} // namespace
