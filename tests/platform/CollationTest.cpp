#include "platform/Collation.h"

#include "platform/Localization.h"
#include "support/LanguageSwitching.h"
#include "support/Utf8.h"

#include <QSet>
#include <gtest/gtest.h>

namespace {

int sign(int value)
{
    return (value > 0) - (value < 0);
}

class CollationTest : public testing::TestWithParam<AppLanguage> {
protected:
    void SetUp() override { VelmoraLocalization::setLanguage(GetParam()); }
    void TearDown() override { VelmoraLocalization::setLanguage(AppLanguage::Russian); }
};

} // namespace

TEST_P(CollationTest, OrdersPairs)
{
    const struct {
        const char* left;
        const char* right;
        int standard;
        int withoutNumbers;
    } rows[] = {
        {"a 2", "a 10", -1, 1},
        {"Track 9.mp3", "track 10.mp3", -1, 1},
        {"a 007", "a 7", 0, -1},
        {"99999999999999999999998", "99999999999999999999999", -1, -1},
        {"ABBA", "abba", 0, 0},
        {"ПЛЯЖ", "пляж", 0, 0},
        {"елка", "ёлка", -1, -1},
        {"ёлка", "елки", -1, -1},               // ё differs from е only where all else is equal
        {"\xD0\xB9", "\xD0\xB8\xCC\x86", 0, 0}, // й composed and decomposed
        {"a-b", "ab", -1, -1},
        {"a b", "a-b", -1, -1},
        {"_a", "a", -1, -1},
        {"resume", "résumé", -1, -1},
        {"", "a", -1, -1},
        {"", "", 0, 0},
        {"/music/a/z.mp3", "/music/a b/a.mp3", 1, 1}, // whole paths: a blank goes before a slash
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.left) + " | " + row.right);
        const QString left = text(row.left);
        const QString right = text(row.right);
        EXPECT_EQ(sign(Collation::standardCompare(left, right)), row.standard);
        EXPECT_EQ(sign(Collation::standardCompare(right, left)), -row.standard);
        EXPECT_EQ(sign(Collation::caseInsensitiveCompare(left, right)), row.withoutNumbers);
        EXPECT_EQ(sign(Collation::caseInsensitiveCompare(right, left)), -row.withoutNumbers);
    }
}

TEST_P(CollationTest, TheScriptOfTheLanguageComesFirst)
{
    const int expected = GetParam() == AppLanguage::Russian ? 1 : -1;
    EXPECT_EQ(sign(Collation::standardCompare(text("zebra"), text("арбуз"))), expected);
    EXPECT_EQ(sign(Collation::caseInsensitiveCompare(text("zebra"), text("арбуз"))), expected);
    EXPECT_LT(Collation::standardCompare(text("7"), text("арбуз")), 0);
    EXPECT_LT(Collation::standardCompare(text("7"), text("zebra")), 0);
}

TEST_P(CollationTest, SortKeysOrderLikeTheCompare)
{
    QStringList texts;
    for (const char* each : {"",       "a",      "A",    "a 2",    "a 10", "a 007", "ab", "a-b",       "a b",
                             "zebra",  "арбуз",  "елка", "ёлка",   "Ёлка", "елки",  "й",  "и\xCC\x86", "🎧",
                             "résumé", "resume", "/a/b", "/a b/c", "128",  "1",     "01"})
        texts.append(text(each));
    texts.append(QString(600, u'я') + u'1'); // longer than the first try of a key
    texts.append(QString(600, u'я') + u'2');
    texts.append(QString(QChar(0)) + u'a');
    texts.append(QString(QChar(0xD800))); // half of a pair
    for (const QString& left : texts) {
        EXPECT_FALSE(Collation::standardSortKey(left).contains('\0'));
        for (const QString& right : texts) {
            SCOPED_TRACE(qPrintable(left + u'|' + right));
            EXPECT_EQ(sign(Collation::standardSortKey(left).compare(Collation::standardSortKey(right))),
                      sign(Collation::standardCompare(left, right)));
            EXPECT_EQ(sign(Collation::caseInsensitiveSortKey(left).compare(Collation::caseInsensitiveSortKey(right))),
                      sign(Collation::caseInsensitiveCompare(left, right)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, CollationTest, testing::Values(AppLanguage::Russian, AppLanguage::English),
                         [](const auto& info) {
                             return std::string(info.param == AppLanguage::Russian ? "ru" : "en");
                         });

TEST(CollationThreads, ManyThreadsMayCompareWhileTheLanguageSwitches)
{
    const QString left = QStringLiteral("a 2");
    const QString right = QStringLiteral("A 10");
    QSet<QByteArray> keys;
    for (const AppLanguage language : {AppLanguage::English, AppLanguage::Russian}) {
        VelmoraLocalization::setLanguage(language);
        keys.insert(Collation::standardSortKey(left));
    }
    std::atomic<int> wrong = 0;
    LanguageSwitching::whileOthersSwitch([&] {
        wrong += Collation::standardCompare(left, right) >= 0;
        wrong += !keys.contains(Collation::standardSortKey(left));
    });
    EXPECT_EQ(wrong, 0);
}
