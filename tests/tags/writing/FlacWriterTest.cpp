#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/MetadataWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.flac");
const QByteArray kPng = "\x89PNG picture";
const QByteArray kSound(5000, '\x5a');

QByteArray comments(const QByteArray& vendor, const QByteArrayList& list, const QByteArray& rest = {})
{
    QByteArray body = little(quint64(vendor.size()), 4) + vendor + little(quint64(list.size()), 4);
    for (const QByteArray& comment : list)
        body += little(quint64(comment.size()), 4) + comment;
    return body + rest;
}

struct Block {
    int type;
    QByteArray body;
};

/// A file of these blocks, the last one marked.
QByteArray file(const std::vector<Block>& blocks)
{
    QByteArray bytes = "fLaC";
    for (const Block& block : blocks)
        bytes += flacBlock(block.type, block.body, &block == &blocks.back());
    return bytes + kSound;
}

const Block kInfo{0, QByteArray(34, '\1')};
const Block kPadding{1, QByteArray(100, '\0')};
const Block kApplication{2, "appldata"};
const Block kSeekTable{3, QByteArray(18, '\2')};
const Block kUnknown{77, "?"};

TEST(FlacWriterTest, rewritesCommentsAndPicturesAlone)
{
    const AudioTags title =
        tagsWith({{&AudioTags::title, QStringLiteral("Ü")}, {&AudioTags::bpm, QStringLiteral(" ")}});
    const Block own{4, comments("Velmora", {"TITLE=\xC3\x9C", "BPM= "})};
    const Block old{4, comments("other", {"ARTIST=A", "X=Y"})};
    const Block picture{6, flacPicture("old")};
    const struct {
        const char* what;
        AudioTags tags;
        std::vector<Block> before;
        std::vector<Block> after;
    } cases[] = {
        {"stream info alone", title, {kInfo}, {kInfo, own}},
        {"all kinds",
         title,
         {kInfo, kSeekTable, old, kPadding, picture, kApplication, kUnknown, picture},
         {kInfo, kSeekTable, kPadding, kApplication, kUnknown, own}},
        {"comments last", title, {kInfo, kPadding, old}, {kInfo, kPadding, own}},
        {"several comment blocks", title, {kInfo, old, old}, {kInfo, own}},
        {"nothing to write", {}, {kInfo, old, picture}, {kInfo}},
        {"nothing to write, padding last", {}, {kInfo, old, kPadding}, {kInfo, kPadding}},
        {"no stream info", title, {old}, {own}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changed(kName, file(c.before), writing(c.tags)), file(c.after)) << c.what;
}

TEST(FlacWriterTest, writesEveryFieldInItsOrder)
{
    const QByteArrayList list{"TITLE=Название", "ARTIST=Ärtist", "ALBUM=専辑",      "ALBUMARTIST=Various",
                              "GENRE=House",    "DATE=1999",     "TRACKNUMBER=3/9", "COMMENT=Note",
                              "BPM=124.5",      "INITIALKEY=8A"};
    EXPECT_EQ(changed(kName, file({kInfo}), writing(fullTags())), file({kInfo, {4, comments("Velmora", list)}}));
}

TEST(FlacWriterTest, writesThePictureAndFindsIt)
{
    for (const auto& [picture, mime] : {std::pair<QByteArray, QByteArray>{kPng, "image/png"}, {"jpg", "image/jpeg"}}) {
        const auto assign = [&](const QUrl& url) {
            MetadataWriter::assignArtwork(picture, {}, url);
            EXPECT_TRUE(MetadataWriter::containsArtworkBytes(picture, url));
            EXPECT_FALSE(MetadataWriter::containsArtworkBytes("no such picture", url));
            // The bytes of another kind of block do not count.
            EXPECT_FALSE(MetadataWriter::containsArtworkBytes(kApplication.body, url));
        };
        const QByteArray body = big(3, 4) + big(quint64(mime.size()), 4) + mime + QByteArray(20, '\0') +
                                big(quint64(picture.size()), 4) + picture;
        EXPECT_EQ(changed(kName, file({kInfo, kApplication, {6, flacPicture("old")}}), assign),
                  file({kInfo, kApplication, {6, body}}));
    }
}

TEST(FlacWriterTest, cleansInPlace)
{
    const Block old{
        4, comments("vendor", {"title=T", "ARTIST=A", "Album=B", "DATE=1", "no name", "comment=C", "TITLE=2"}, "\1")};
    const Block picture{6, flacPicture("old")};
    const struct {
        const char* what;
        CleanerFields fields;
        QString title;
        QString album;
        std::vector<Block> before;
        std::vector<Block> after;
    } cases[] = {
        {"one field in any letters",
         CleanerField::Title,
         {},
         {},
         {kInfo, old, kPadding},
         {kInfo, {4, comments("vendor", {"ARTIST=A", "Album=B", "DATE=1", "no name", "comment=C"}, "\1")}, kPadding}},
        {"new texts",
         CleanerField::Title | CleanerField::Album,
         QStringLiteral("N"),
         QStringLiteral("M"),
         {kInfo, old, old},
         {kInfo,
          {4, comments("vendor", {"ARTIST=A", "DATE=1", "no name", "comment=C", "TITLE=N", "ALBUM=M"}, "\1")},
          {4, comments("vendor", {"ARTIST=A", "DATE=1", "no name", "comment=C"}, "\1")}}},
        {"texts of fields that are not chosen",
         CleanerField::Genre,
         QStringLiteral("N"),
         QStringLiteral("M"),
         {kInfo, old},
         {kInfo, old}},
        {"no comments yet",
         CleanerField::Album,
         {},
         QStringLiteral("M"),
         {kInfo, kPadding},
         {kInfo, kPadding, {4, comments("Velmora", {"ALBUM=M"})}}},
        {"no comments and no text", CleanerField::Album, {}, {}, {kInfo}, {kInfo}},
        {"pictures of both kinds",
         CleanerField::Artwork,
         {},
         {},
         {kInfo,
          {4, comments("v", {"METADATA_BLOCK_PICTURE=AAAA", "CoverArt=AAAA", "K=V"})},
          picture,
          kPadding,
          picture},
         {kInfo, {4, comments("v", {"K=V"})}, kPadding}},
        {"pictures that stay", CleanerField::Comment, {}, {}, {kInfo, picture}, {kInfo, picture}},
        {"last comment",
         CleanerField::Tempo,
         {},
         {},
         {kInfo, {4, comments("v", {"BPM=1", "Tempo=2"})}},
         {kInfo, {4, comments("v", {})}}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changed(kName, file(c.before), cleaning(c.fields, c.title, c.album)), file(c.after)) << c.what;
}

TEST(FlacWriterTest, refusesWhatItCannotRewrite)
{
    const QByteArray good = file({kInfo, {4, comments("v", {"A=B"})}});
    const QString corrupt = QStringLiteral("fileReadCorruptFile");
    const QString unsupported = QStringLiteral("unsupportedFormat flac");
    const QString failed = QStringLiteral("rewriteFailed flac");
    const Change writeFull = writing(fullTags());
    const Change huge = assigning(QByteArray(0x1000000, 'x'), {});
    const auto longTitle = [](int size) { return cleaning(CleanerField::Title, QString(size, u'x')); };
    const struct {
        const char* what;
        QByteArray bytes;
        Change change;
        QString failure;
    } cases[] = {
        {"empty", {}, writeFull, unsupported},
        {"other marker", "OggS" + good, writeFull, unsupported},
        {"ID3v2 in front", id3v2(textFrame("TIT2", "T")) + good, writeFull, unsupported},
        {"ID3v2 in front, cleaning", id3v2(textFrame("TIT2", "T")) + good, cleaning(CleanerField::Title), unsupported},
        {"marker alone", "fLaC", writeFull, corrupt},
        {"cut in a block", good.left(60), writeFull, corrupt},
        {"block beyond the end", "fLaC" + big(0x80FFFFFF, 4) + "few", writeFull, corrupt},
        {"no last block", "fLaC" + flacBlock(0, kInfo.body), writeFull, corrupt},
        {"nothing left", file({{4, comments("v", {"A=B"})}}), writing({}), QStringLiteral("fileWriteUnknown")},
        {"picture beyond 24 bits", good, huge, failed},
        {"comments beyond 24 bits", good, writing(tagsWith({{&AudioTags::comment, QString(0x1000000, u'x')}})), failed},
        {"comments beyond 24 bits, cleaning", good, longTitle(0x1000000), failed},
        {"comment beyond its block", file({kInfo, {4, little(0, 4) + little(1, 4) + little(0xFFFFFFFF, 4)}}),
         cleaning(CleanerField::Title), corrupt},
        {"more comments than there are", file({kInfo, {4, little(0, 4) + little(0xFFFFFFFF, 4)}}),
         cleaning(CleanerField::Title), corrupt},
    };
    for (const auto& c : cases)
        expectRefused(kName, c.bytes, c.change, c.failure, c.what);
}

} // namespace
