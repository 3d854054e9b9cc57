#include "core/model/AudioTags.h"
#include "support/TagBytes.h"
#include "support/WrittenFiles.h"
#include "tags/writing/MetadataWriter.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const QString kName = QStringLiteral("sound.flac");
const QByteArray kSound(5000, '\x5a');

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

Block commentBlock(const QByteArray& vendor, const QByteArrayList& list, const QByteArray& rest = {})
{
    return {4, comments(vendor, list) + rest};
}

const Block kInfo{0, QByteArray(34, '\1')};
const Block kPadding{1, QByteArray(100, '\0')};
const Block kApplication{2, "appldata"};
const Block kSeekTable{3, QByteArray(18, '\2')};
const Block kUnknown{77, "?"};
const Block kPicture{6, flacPicture("old")};

TEST(FlacWriterTest, rewritesCommentsAndPicturesAlone)
{
    const Change title =
        writing(tagsWith({{&AudioTags::title, QStringLiteral("Ü")}, {&AudioTags::bpm, QStringLiteral(" ")}}));
    const Block own = commentBlock("Velmora", {"TITLE=\xC3\x9C", "BPM= "});
    const Block old = commentBlock("other", {"ARTIST=A", "X=Y"});
    const Block full =
        commentBlock("Velmora", {"TITLE=Название", "ARTIST=Ärtist", "ALBUM=専辑", "ALBUMARTIST=Various", "GENRE=House",
                                 "DATE=1999", "TRACKNUMBER=3/9", "COMMENT=Note", "BPM=124.5", "INITIALKEY=8A"});
    const auto withPicture = [](const QByteArray& picture, const QByteArray& mime) {
        const QByteArray body = big(3, 4) + big(quint64(mime.size()), 4) + mime + QByteArray(20, '\0') +
                                big(quint64(picture.size()), 4) + picture;
        return file({kInfo, kApplication, {6, body}});
    };
    const QByteArray pictured = file({kInfo, kApplication, kPicture});
    expectChanges(kName, {{"stream info alone", title, file({kInfo}), file({kInfo, own})},
                          {"all kinds", title,
                           file({kInfo, kSeekTable, old, kPadding, kPicture, kApplication, kUnknown, kPicture}),
                           file({kInfo, kSeekTable, kPadding, kApplication, kUnknown, own})},
                          {"comments last", title, file({kInfo, kPadding, old}), file({kInfo, kPadding, own})},
                          {"several comment blocks", title, file({kInfo, old, old}), file({kInfo, own})},
                          {"nothing to write", writing({}), file({kInfo, old, kPicture}), file({kInfo})},
                          {"nothing, padding last", writing({}), file({kInfo, old, kPadding}), file({kInfo, kPadding})},
                          {"no stream info", title, file({old}), file({own})},
                          {"every field in its order", writing(fullTags()), file({kInfo}), file({kInfo, full})},
                          {"PNG", assigning(kPng, {}), pictured, withPicture(kPng, "image/png")},
                          {"JPEG", assigning("jpg", {}), pictured, withPicture("jpg", "image/jpeg")}});
}

TEST(FlacWriterTest, findsPicturesInTheirBlocksAlone)
{
    const FileFolder folder;
    const QUrl url = folder.write(kName, file({kInfo, kApplication, {6, flacPicture(kPng)}}));
    EXPECT_TRUE(MetadataWriter::containsArtworkBytes(kPng, url));
    EXPECT_FALSE(MetadataWriter::containsArtworkBytes("no such picture", url));
    EXPECT_FALSE(MetadataWriter::containsArtworkBytes(kApplication.body, url)) << "another kind of block";
}

TEST(FlacWriterTest, cleansInPlace)
{
    using enum CleanerField;
    const QString title = QStringLiteral("N");
    const QString album = QStringLiteral("M");
    const Block old =
        commentBlock("vendor", {"title=T", "ARTIST=A", "Album=B", "DATE=1", "no name", "comment=C", "TITLE=2"}, "\1");
    const Block untitled = commentBlock("vendor", {"ARTIST=A", "Album=B", "DATE=1", "no name", "comment=C"}, "\1");
    const Block renamed =
        commentBlock("vendor", {"ARTIST=A", "DATE=1", "no name", "comment=C", "TITLE=N", "ALBUM=M"}, "\1");
    const Block bare = commentBlock("vendor", {"ARTIST=A", "DATE=1", "no name", "comment=C"}, "\1");
    const Block pictures = commentBlock("v", {"METADATA_BLOCK_PICTURE=AAAA", "CoverArt=AAAA", "K=V"});
    expectChanges(
        kName,
        {{"one field in any letters", cleaning(Title), file({kInfo, old, kPadding}), file({kInfo, untitled, kPadding})},
         {"new texts", cleaning(Title | Album, title, album), file({kInfo, old, old}), file({kInfo, renamed, bare})},
         {"texts of fields that are not chosen", cleaning(Genre, title, album), file({kInfo, old}), file({kInfo, old})},
         {"no comments yet", cleaning(Album, {}, album), file({kInfo, kPadding}),
          file({kInfo, kPadding, commentBlock("Velmora", {"ALBUM=M"})})},
         {"no comments and no text", cleaning(Album, {}, QString()), file({kInfo}), file({kInfo})},
         {"pictures of both kinds", cleaning(Artwork), file({kInfo, pictures, kPicture, kPadding, kPicture}),
          file({kInfo, commentBlock("v", {"K=V"}), kPadding})},
         {"pictures that stay", cleaning(Comment), file({kInfo, kPicture}), file({kInfo, kPicture})},
         {"last comment", cleaning(Tempo), file({kInfo, commentBlock("v", {"BPM=1", "Tempo=2"})}),
          file({kInfo, commentBlock("v", {})})}});
}

TEST(FlacWriterTest, refusesWhatItCannotRewrite)
{
    const QByteArray good = file({kInfo, commentBlock("v", {"A=B"})});
    const QByteArray tagged = id3v2(textFrame("TIT2", "T")) + good;
    const QString unsupported = QStringLiteral("unsupportedFormat flac");
    const QString failed = QStringLiteral("rewriteFailed flac");
    const QString large(0x1000000, u'x');
    const Change write = writing(fullTags());
    const Change clean = cleaning(CleanerField::Title);
    expectRefusals(
        kName,
        {{"empty", {}, write, unsupported},
         {"other marker", "OggS" + good, write, unsupported},
         {"ID3v2 in front", tagged, write, unsupported},
         {"ID3v2 in front, cleaning", tagged, clean, unsupported},
         {"marker alone", "fLaC", write, kCorrupt},
         {"cut in a block", good.left(60), write, kCorrupt},
         {"block beyond the end", "fLaC" + big(0x80FFFFFF, 4) + "few", write, kCorrupt},
         {"no last block", "fLaC" + flacBlock(0, kInfo.body), write, kCorrupt},
         {"nothing left", file({commentBlock("v", {"A=B"})}), writing({}), QStringLiteral("fileWriteUnknown")},
         {"picture beyond 24 bits", good, assigning(large.toLatin1(), {}), failed},
         {"comments beyond 24 bits", good, writing(tagsWith({{&AudioTags::comment, large}})), failed},
         {"comments beyond 24 bits, cleaning", good, cleaning(CleanerField::Title, large), failed},
         {"comment beyond its block", file({kInfo, {4, little(0, 4) + little(1, 4) + little(0xFFFFFFFF, 4)}}), clean,
          kCorrupt},
         {"more comments than there are", file({kInfo, {4, little(0, 4) + little(0xFFFFFFFF, 4)}}), clean, kCorrupt}});
}

} // namespace
