#include "tags/writing/Id3v2Filter.h"

#include "support/TagBytes.h"
#include "support/WrittenFiles.h"

#include <gtest/gtest.h>

namespace {

using namespace TagBytes;

const CleanerFields kAll(0x3ff);
const CleanerFields kNone;
const QString kRefused = QStringLiteral("rewriteFailed ID3");

QByteArray filtered(const QByteArray& tag, CleanerFields fields, const std::optional<QString>& title = {},
                    const std::optional<QString>& album = {})
{
    return Id3v2Filter::filtered(tag, fields, title, album, QStringLiteral("a.mp3"));
}

TEST(Id3v2FilterTest, takesTheFieldsFramesAlone)
{
    const struct {
        CleanerField field;
        QByteArrayList ids;
    } cases[] = {
        {CleanerField::Artwork, {"APIC", "PIC"}},
        {CleanerField::Comment, {"COMM", "COM"}},
        {CleanerField::Genre, {"TCON", "TCO"}},
        {CleanerField::Album, {"TALB", "TAL"}},
        {CleanerField::AlbumArtist, {"TPE2", "TP2"}},
        {CleanerField::Year, {"TYER", "TDRC", "TDAT", "TIME", "TYE", "TDA", "TIM"}},
        {CleanerField::Track, {"TRCK", "TRK"}},
        {CleanerField::Tempo, {"TBPM", "TBP"}},
        {CleanerField::Key, {"TKEY", "TKE"}},
        {CleanerField::Title, {"TIT2", "TT2"}},
    };
    QByteArrayList everyId{"TPE1", "TXXX", "PRIV", "TP1", "TXX"};
    for (const auto& c : cases)
        everyId += c.ids;
    for (const auto& c : cases) {
        for (const int version : {2, 3, 4}) {
            QByteArray before;
            QByteArray after;
            for (const QByteArray& id : everyId) {
                if ((id.size() == 3) != (version == 2))
                    continue;
                const QByteArray body(300, id.at(0)); // a size that its forms express differently
                const QByteArray one =
                    version == 2 ? shortFrame(id.constData(), body) : frame(id.constData(), body, version, 0x1234);
                before += one;
                after += c.ids.contains(id) ? QByteArray() : one;
            }
            EXPECT_EQ(filtered(id3v2(before, version), c.field), id3v2(after, version))
                << static_cast<int>(c.field) << " in version " << version;
        }
    }
}

TEST(Id3v2FilterTest, setsTitleAndAlbumInTheTagsOwnForm)
{
    const QString title(100, u'T'); // 203 bytes: seven bits differ from eight
    const QByteArray text = '\x01' + utf16(title);
    const QByteArray album = '\x01' + utf16(QStringLiteral("A"));
    const CleanerFields both = CleanerField::Title | CleanerField::Album;
    const std::tuple<int, QByteArray, QByteArray> cases[] = {
        {2, shortFrame("TT2", "old") + shortFrame("TP1", "kept"),
         shortFrame("TP1", "kept") + shortFrame("TT2", text) + shortFrame("TAL", album)},
        {3, frame("TIT2", "old") + frame("TPE1", "kept"),
         frame("TPE1", "kept") + frame("TIT2", text) + frame("TALB", album)},
        {4, frame("TIT2", "old", 4) + frame("TPE1", "kept", 4),
         frame("TPE1", "kept", 4) + frame("TIT2", text, 4) + frame("TALB", album, 4)},
    };
    for (const auto& [version, old, expected] : cases)
        EXPECT_EQ(filtered(id3v2(old, version), both, title, QStringLiteral("A")), id3v2(expected, version));

    const QByteArray untouched = id3v2(frame("TPE1", "kept"));
    EXPECT_EQ(filtered(untouched, both, QString(), QStringLiteral("")), untouched);
    EXPECT_EQ(filtered(untouched, CleanerField::Album, title), untouched) << "the title's bit is not set";
    EXPECT_EQ(filtered(untouched, both), untouched);
}

TEST(Id3v2FilterTest, dropsPaddingAndKeepsAnEmptyTag)
{
    EXPECT_EQ(filtered(id3v2(textFrame("TIT2", "x") + QByteArray(50, '\0')), CleanerField::Title), id3v2({}));
    EXPECT_EQ(filtered(id3v2(QByteArray(3, '\0')), kAll), id3v2({}));
    EXPECT_EQ(filtered(id3v2({}), kAll), id3v2({}));
    QByteArray revision = id3v2(textFrame("TPE1", "x") + QByteArray(1, '\0'));
    revision[4] = '\x07';
    QByteArray expected = id3v2(textFrame("TPE1", "x"));
    expected[4] = '\x07';
    EXPECT_EQ(filtered(revision, kNone), expected);
}

TEST(Id3v2FilterTest, refusesWhatItDoesNotUnderstand)
{
    const QByteArray good = textFrame("TIT2", "x");
    QByteArray badSize = id3v2(good);
    badSize[9] = static_cast<char>(badSize.at(9) | 0x80);
    const std::tuple<const char*, QByteArray, QString> cases[] = {
        {"unsynchronisation", id3v2(good, 3, 0x80), kRefused},
        {"extended header", id3v2(good, 3, 0x40), kRefused},
        {"footer", id3v2(good, 4, 0x10), kRefused},
        {"version 1", id3v2(good, 1), kRefused},
        {"version 5", id3v2(good, 5), kRefused},
        {"version 255", id3v2(good, 255), kRefused},
        {"no tag", QByteArray(20, 'x'), kRefused},
        {"short", id3v2({}).first(9), kRefused},
        {"high bit in the size", badSize, kCorrupt},
        {"bytes behind", id3v2(good) + 'x', kCorrupt},
        {"bytes missing", id3v2(good).chopped(1), kCorrupt},
        {"padding with something in it", id3v2(good + QByteArray("\0\0x\0", 4)), kCorrupt},
        {"header cut off", id3v2(good + "TALB\0\0"), kCorrupt},
        {"frame past the end", id3v2("TIT2" + big(4, 4) + big(0, 2) + "abc"), kCorrupt},
        {"frame of 4 GiB", id3v2("TIT2" + big(0xffffffff, 4) + big(0, 2) + "abc"), kCorrupt},
        {"short frame past the end", id3v2("TT2" + big(4, 3) + "abc", 2), kCorrupt},
        {"high bit in a frame's size", id3v2("TIT2" + big(0x80, 4) + big(0, 2) + QByteArray(128, 'a'), 4), kCorrupt},
    };
    for (const auto& [what, tag, error] : cases)
        EXPECT_EQ(errorOf([&] { filtered(tag, kAll); }), error) << what;
}

TEST(Id3v2FilterTest, knowsTheLimitOfTheSizeField)
{
    constexpr qsizetype kTitleFrame = 15; // one letter
    for (const bool fits : {true, false}) {
        const qsizetype kept = (1 << 28) - kTitleFrame - (fits ? 1 : 0);
        const QByteArray tag = id3v2(frame("PRIV", QByteArray(kept - 10, 'x')));
        qsizetype size = 0;
        const QString error = errorOf([&] { size = filtered(tag, CleanerField::Title, QStringLiteral("x")).size(); });
        EXPECT_EQ(error, fits ? QString() : QStringLiteral("fileWriteOutOfSpace"));
        EXPECT_EQ(size, fits ? tag.size() + kTitleFrame : 0);
    }
}

} // namespace
