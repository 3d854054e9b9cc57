#include "core/model/Track.h"
#include "platform/FileURL.h"

#include <gtest/gtest.h>

TEST(FallbackTags, AreGuessedFromTheFileName)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        // No prefix.
        {"Artist - Title.mp3", "Artist", "Title"},
        {"Title.mp3", "", "Title"},
        {"Artist-Title.mp3", "", "Artist-Title"},
        {"Artist - Title - Remix.mp3", "Artist", "Title - Remix"},
        {"Artist – Title.mp3", "Artist", "Title"},
        {"Artist — Title.mp3", "Artist", "Title"},
        {"Мумий Тролль — Владивосток 2000.mp3", "Мумий Тролль", "Владивосток 2000"},
        // The separators have a rank, whatever their place.
        {"Artist – Title - Remix.flac", "Artist – Title", "Remix"},
        {"Artist — Title – Remix.flac", "Artist — Title", "Remix"},
        {"Artist — Title - Remix.flac", "Artist — Title", "Remix"},
        // What stands around a separator stays.
        {"Artist  -  Title.mp3", "Artist ", " Title"},
        {"Artist - .mp3", "Artist", ""},
        {" - Title.mp3", "", "- Title"}, // blanks at the start match the prefix and are trimmed
        // A tempo, a key, both.
        {"128 - 8A - Artist - Title.mp3", "Artist", "Title"},
        {"128 Artist - Title.mp3", "Artist", "Title"},
        {"128.5_Artist - Title.mp3", "Artist", "Title"},
        {"128.Artist - Title.mp3", "Artist", "Title"},
        {"8A Artist - Title.mp3", "Artist", "Title"},
        {"12b - Artist - Title.mp3", "Artist", "Title"},
        {"F#m - Artist - Title.mp3", "Artist", "Title"},
        {"Bb_Title.mp3", "", "Title"},
        {"99 Problems.mp3", "", "Problems"},
        {"A Song.mp3", "", "Song"},
        {"  Artist - Title.mp3", "Artist", "Title"},
        {"128 - 8A -   Artist - Title  .mp3", "Artist", "Title"},
        // Nearly a prefix.
        {"7 Artist - Title.mp3", "7 Artist", "Title"},
        {"1999 - Prince.mp3", "1999", "Prince"},
        {"128Artist - Title.mp3", "128Artist", "Title"},
        {"Abba - Title.mp3", "Abba", "Title"},
        {"H - Title.mp3", "H", "Title"},
        {"a - Title.mp3", "a", "Title"},
        {"8C - Title.mp3", "8C", "Title"},
        {"8A 128 - Title.mp3", "128", "Title"}, // a tempo behind the key is no prefix
        // Nothing but a prefix.
        {"128 - 8A - .mp3", "", ""},
        {"128 .mp3", "", ""},
        {"128.mp3", "", "128"},
        {"128 - 8A.mp3", "", "8A"},
        {"Am.mp3", "", "Am"},
        // Extensions and their lack.
        {"Artist - Title", "Artist", "Title"},
        {"Artist - Mr. Title.mp3", "Artist", "Mr. Title"},
        {".mp3", "", ".mp3"},
    };
    for (const auto& [name, artist, title] : rows) {
        AudioTags expected;
        expected.artist = QString::fromUtf8(artist);
        expected.title = QString::fromUtf8(title);
        const QUrl url = FileURL::fromPath(QStringLiteral("/128 - 8A - folder/") + QString::fromUtf8(name));
        EXPECT_EQ(Track::fallbackTags(url), expected) << name;
    }
}
