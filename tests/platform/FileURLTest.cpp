#include "platform/FileURL.h"

#include "support/Utf8.h"

#include <QDir>
#include <gtest/gtest.h>

TEST(FileURL, CutsAndStandardizesPaths)
{
    const struct {
        const char* path;
        const char* standardized;
        const char* folder;
        const char* name;
        const char* extension;
    } rows[] = {
        {"/music/a.mp3", "/music/a.mp3", "/music", "a.mp3", "mp3"},
        {"/music/./x/..//a.MP3", "/music/a.MP3", "/music", "a.MP3", "MP3"},
        {"//music//a.b.flac", "/music/a.b.flac", "/music", "a.b.flac", "flac"},
        {"/music/set/", "/music/set", "/music", "set", ""},
        {"/music/set/.", "/music/set", "/music", "set", ""},
        {"/../../a.wav", "/a.wav", "/", "a.wav", "wav"},
        {"/music/..", "/", "/", "", ""},
        {"/", "/", "/", "", ""},
        {"/music/.mp3", "/music/.mp3", "/music", ".mp3", ""},
        {"/music/..mp3", "/music/..mp3", "/music", "..mp3", "mp3"},
        {"/music/a.", "/music/a.", "/music", "a.", ""},
        {"/music/100%41 #1?;&+ \\.mp3", "/music/100%41 #1?;&+ \\.mp3", "/music", "100%41 #1?;&+ \\.mp3", "mp3"},
        {"/c:/a:b.mp3", "/c:/a:b.mp3", "/c:", "a:b.mp3", "mp3"},
        {"/music/line\nend.mp3", "/music/line\nend.mp3", "/music", "line\nend.mp3", "mp3"},
        {"/Музыка/Ёлка 🎧.m4a", "/Музыка/Ёлка 🎧.m4a", "/Музыка", "Ёлка 🎧.m4a", "m4a"},
        {"/\xEF\xBB\xBFmark/\xEF\xBF\xBF.mp3", "/\xEF\xBB\xBFmark/\xEF\xBF\xBF.mp3", "/\xEF\xBB\xBFmark",
         "\xEF\xBF\xBF.mp3", "mp3"},
        {":/i18n/a.mp3", nullptr, nullptr, "a.mp3", "mp3"}, // a relative path, not one of the program's resources
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        const QUrl url = FileURL::fromPath(text(row.path));
        EXPECT_TRUE(url.isValid());
        const QString standardized =
            row.standardized ? text(row.standardized) : QDir::currentPath() + u'/' + text(row.path);
        EXPECT_EQ(url.toLocalFile(), standardized);
        EXPECT_EQ(FileURL::standardized(url), url);
        EXPECT_EQ(FileURL::standardizedPath(url), standardized);
        if (row.folder) {
            EXPECT_EQ(FileURL::folderPath(url), text(row.folder));
        }
        EXPECT_EQ(FileURL::lastPathComponent(url), text(row.name));
        EXPECT_EQ(FileURL::pathExtension(url), text(row.extension));
    }
}

TEST(FileURL, StandardizesUrlsThatCameFromElsewhere)
{
    const QUrl expected = FileURL::fromPath(QStringLiteral("/music/a b.mp3"));
    for (const char* foreign : {"file:///music/a%20b.mp3", "file:///music//x/../a%20b.mp3",
                                "file://localhost/music/a%20b.mp3", "file:///music/./a%20b.mp3/"}) {
        SCOPED_TRACE(foreign);
        const QUrl url{QString::fromLatin1(foreign)};
        EXPECT_EQ(FileURL::standardized(url), expected);
        EXPECT_EQ(FileURL::lastPathComponent(url), QStringLiteral("a b.mp3"));
        EXPECT_EQ(FileURL::folderPath(url), QStringLiteral("/music"));
    }
}

TEST(FileURL, KeepsTheNormalisationFormOfLetters)
{
    const QString composed = text("/й.mp3").normalized(QString::NormalizationForm_C);
    const QString decomposed = composed.normalized(QString::NormalizationForm_D);
    ASSERT_NE(composed, decomposed);
    EXPECT_EQ(FileURL::standardizedPath(FileURL::fromPath(composed)), composed);
    EXPECT_EQ(FileURL::standardizedPath(FileURL::fromPath(decomposed)), decomposed);
    EXPECT_NE(FileURL::fromPath(composed), FileURL::fromPath(decomposed));
}
