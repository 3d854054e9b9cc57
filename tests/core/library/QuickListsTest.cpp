#include "support/StoreFixture.h"

namespace {
QStringList list(const char* text)
{
    return QString::fromUtf8(text).split(u'|');
}
} // namespace

TEST_F(StoreFixture, QuickSlotsAreAlwaysNine)
{
    QuickLists& lists = store->quickLists();
    preferences.quickGenreSlots.set(QStringLiteral("a\n\nc\nd\ne\nf\ng"));
    EXPECT_EQ(lists.quickGenreSlots(), list("a||c|d|e|f|g||"));
    preferences.quickGenreSlots.set(QStringLiteral("1\n2\n3\n4\n5\n6\n7\n8\n9\n10"));
    EXPECT_EQ(lists.quickGenreSlots(), list("1|2|3|4|5|6|7|8|9"));
    preferences.quickGenreSlots.set(QStringLiteral("1\r\n2\r\n3\n4\n5\n6\n7\n8\n9"));
    EXPECT_EQ(lists.quickGenreSlots(), list("1|2|3|4|5|6|7|8|9"));
    lists.setQuickGenre(QStringLiteral(" Po\np "), 8);
    lists.setQuickGenre(QStringLiteral("never"), 9);
    lists.setQuickGenre(QStringLiteral("never"), -1);
    EXPECT_EQ(lists.quickGenreSlots(), list("1|2|3|4|5|6|7|8|Po p"));
}

TEST_F(StoreFixture, RecentGenresAreFiveNewestFirst)
{
    QuickLists& lists = store->quickLists();
    for (const QString& genre : list("a|b|c|d|e|f|b||f"))
        lists.recordRecentGenre(genre);
    EXPECT_EQ(lists.recentGenres(), list("f|b|e|d|c"));
}

TEST_F(StoreFixture, ListsAreSplitAtCommasAndLineEnds)
{
    QuickLists& lists = store->quickLists();
    EXPECT_EQ(lists.albums(), list("#PRIMETIME|#WARM UP|#PREPARTY"));
    preferences.genreList.set(QStringLiteral(" House ,, Pop\nR&B\r\n,"));
    EXPECT_EQ(lists.genres(), list("House|Pop|R&B"));
    preferences.genreList.set(QString());
    EXPECT_TRUE(lists.genres().isEmpty()) << "empty is no default";
}

TEST_F(StoreFixture, NormalisingDropsRepeats)
{
    QuickLists& lists = store->quickLists();
    preferences.quickCommentList.set(QStringLiteral("Prime\nprime\nПик\nпик\nlate"));
    lists.normalizeQuickCommentList();
    EXPECT_EQ(preferences.quickCommentList.get(), QStringLiteral("Prime\nПик\nlate"));
    preferences.genreList.set(QStringLiteral("Afro House, afro house, POP"));
    preferences.quickGenreSlots.set(QStringLiteral("AFRO HOUSE\n\npop\nOther"));
    lists.normalizeGenreList();
    EXPECT_EQ(lists.genres(), list("Afro House|POP"));
    EXPECT_EQ(lists.quickGenreSlots(), list("Afro House||POP|Other|||||"));
}
