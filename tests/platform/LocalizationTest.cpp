#include "platform/Localization.h"
#include "support/LanguageSwitching.h"
#include "support/Utf8.h"

#include <gtest/gtest.h>

namespace {

class LocalizationTest : public testing::Test {
protected:
    void TearDown() override { VelmoraLocalization::setLanguage(AppLanguage::Russian); }
};

} // namespace

TEST_F(LocalizationTest, LanguagesHaveStableRawValues)
{
    EXPECT_EQ(rawValue(AppLanguage::Russian), QStringLiteral("ru"));
    EXPECT_EQ(rawValue(AppLanguage::English), QStringLiteral("en"));
    EXPECT_EQ(appLanguageFromRawValue(QStringLiteral("en")), AppLanguage::English);
    for (const char* other : {"ru", "", "EN", "de"})
        EXPECT_EQ(appLanguageFromRawValue(text(other)), AppLanguage::Russian) << other;
}

TEST_F(LocalizationTest, TextsFollowTheLanguageAtOnce)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"Плейлист", "Плейлист", "Playlist"},
        {"По BPM", "По BPM", "By BPM"},
        {"нет такого ключа", "нет такого ключа", "нет такого ключа"},
        {"", "", ""},
    };
    for (int round = 0; round < 2; ++round) {
        for (const auto& [key, russian, english] : rows) {
            VelmoraLocalization::setLanguage(AppLanguage::English);
            EXPECT_EQ(VelmoraLocalization::string(text(key)), text(english));
            EXPECT_EQ(VelmoraLocalization::locale().language(), QLocale::English);
            VelmoraLocalization::setLanguage(AppLanguage::Russian);
            EXPECT_EQ(VelmoraLocalization::string(text(key)), text(russian));
            EXPECT_EQ(VelmoraLocalization::locale().language(), QLocale::Russian);
        }
    }
}

TEST_F(LocalizationTest, FillsPlaceholdersInOrder)
{
    const struct {
        const char* key;
        std::initializer_list<QVariant> arguments;
        const char* russian;
        const char* english;
    } rows[] = {
        {"Добавлено в плейлист: %d", {1234567}, "Добавлено в плейлист: 1 234 567", "Added to playlist: 1,234,567"},
        {"Добавлено в плейлист: %d", {-5LL}, "Добавлено в плейлист: -5", "Added to playlist: -5"},
        {"Добавлено в плейлист: %d", {}, "Добавлено в плейлист: %d", "Added to playlist: %d"},
        {"Жанр «%@» присвоен: %d", {text("%d и %@"), 3}, "Жанр «%d и %@» присвоен: 3", "Genre “%d и %@” assigned: 3"},
        {"Жанр «%@» присвоен: %d", {text("Pop")}, "Жанр «Pop» присвоен: %d", "Genre “Pop” assigned: %d"},
        {"%%@ 100% %", {text("x"), 1}, "%x 100% %", "%x 100% %"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.key);
        VelmoraLocalization::setLanguage(AppLanguage::Russian);
        // Groups are parted by a blank that does not break.
        EXPECT_EQ(VelmoraLocalization::format(text(row.key), row.arguments).replace(QChar::Nbsp, u' '),
                  text(row.russian));
        VelmoraLocalization::setLanguage(AppLanguage::English);
        EXPECT_EQ(VelmoraLocalization::format(text(row.key), row.arguments), text(row.english));
    }
}

TEST_F(LocalizationTest, CountsByTheRuleOfTheLanguage)
{
    const std::tuple<qint64, const char*, const char*> rows[] = {
        {0, "0 треков", "0 tracks"},
        {1, "1 трек", "1 track"},
        {2, "2 трека", "2 tracks"},
        {5, "5 треков", "5 tracks"},
        {11, "11 треков", "11 tracks"},
        {21, "21 трек", "21 tracks"},
        {112, "112 треков", "112 tracks"},
        {1248, "1 248 треков", "1,248 tracks"},
        {1'000'001, "1 000 001 трек", "1,000,001 tracks"},
        {5'000'000'002, "5 000 000 002 трека", "5,000,000,002 tracks"},
        {-1, "-1 трек", "-1 track"},
    };
    for (const auto& [count, russian, english] : rows) {
        SCOPED_TRACE(count);
        VelmoraLocalization::setLanguage(AppLanguage::Russian);
        EXPECT_EQ(VelmoraLocalization::plural(text("%n треков"), count).replace(QChar::Nbsp, u' '), text(russian));
        VelmoraLocalization::setLanguage(AppLanguage::English);
        EXPECT_EQ(VelmoraLocalization::plural(text("%n треков"), count), text(english));
    }
    EXPECT_EQ(VelmoraLocalization::plural(text("%n нигде"), 1000), QStringLiteral("1,000 нигде"));
}

#ifndef Q_OS_MACOS
TEST_F(LocalizationTest, NamesTheSystemThatRuns)
{
    const QString key = text("Файлы будут перемещены в Корзину macOS. Количество: %d.");
    EXPECT_EQ(VelmoraLocalization::format(key, {2}), text("Файлы будут перемещены в Корзину. Количество: 2."));
    VelmoraLocalization::setLanguage(AppLanguage::English);
    EXPECT_FALSE(VelmoraLocalization::string(key).contains(QStringLiteral("macOS")));
    EXPECT_TRUE(VelmoraLocalization::format(key, {2}).contains(u'2'));
}
#endif

TEST_F(LocalizationTest, ManyThreadsReadWhileTheLanguageSwitches)
{
    std::atomic<int> wrong = 0;
    LanguageSwitching::whileOthersSwitch([&wrong] {
        const QString found = VelmoraLocalization::string(text("Обложки"));
        wrong += found != text("Обложки") && found != QStringLiteral("Covers");
    });
    EXPECT_EQ(wrong, 0);
}
