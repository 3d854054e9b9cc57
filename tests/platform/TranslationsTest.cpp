#include "SourceTexts.h"
#include "TranslationFile.h"

#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

const QList<SourceTexts::Text>& sources()
{
    static const QList<SourceTexts::Text> kSources =
        SourceTexts::cyrillicBelow(QStringLiteral(VELMORA_SOURCE_DIR "/src"));
    return kSources;
}

QStringList placeholders(const QString& text)
{
    static const QRegularExpression kPlaceholder(QStringLiteral("%[dn@]"));
    QStringList found;
    for (const auto& match : kPlaceholder.globalMatch(text))
        found.append(match.captured());
    return found;
}

bool namesTheOtherSystem(const QString& text)
{
    static const QRegularExpression kNames(QStringLiteral("macOS|Finder|brew"),
                                           QRegularExpression::CaseInsensitiveOption);
    return text.contains(kNames);
}

class TranslationsTest : public testing::Test {
protected:
    TranslationFile english = TranslationFile::read(QStringLiteral("velmora_en.ts"));
    TranslationFile russian = TranslationFile::read(QStringLiteral("velmora_ru.ts"));
    TranslationFile systemEnglish = TranslationFile::read(QStringLiteral("velmora_system_en.ts"));
    TranslationFile systemRussian = TranslationFile::read(QStringLiteral("velmora_system_ru.ts"));

    std::array<const TranslationFile*, 4> files() const { return {&english, &russian, &systemEnglish, &systemRussian}; }
};

} // namespace

TEST_F(TranslationsTest, EveryTextOfTheSourcesIsThereInEnglish)
{
    ASSERT_GT(sources().size(), 10);
    for (const SourceTexts::Text& text : sources()) {
        const TranslationFile::Message* message = english.find(text.text);
        const bool isDone = message && message->isFinished && !message->forms.contains(QString());
        EXPECT_TRUE(isDone) << qPrintable(text.file) << ':' << text.line << ": no finished English text for \""
                            << qPrintable(text.text) << '"';
    }
}

TEST_F(TranslationsTest, EveryCountedTextHasAllItsForms)
{
    for (const SourceTexts::Text& text : sources()) {
        if (!text.text.contains(QLatin1StringView("%n")))
            continue;
        const TranslationFile::Message* inEnglish = english.find(text.text);
        const TranslationFile::Message* inRussian = russian.find(text.text);
        EXPECT_TRUE(inEnglish && inEnglish->isCounted && inRussian && inRussian->isCounted && inRussian->isFinished)
            << qPrintable(text.file) << ':' << text.line << ": \"" << qPrintable(text.text) << "\" lacks counted forms";
    }
    for (const TranslationFile* file : files()) {
        const bool isRussian = file == &russian || file == &systemRussian;
        for (const TranslationFile::Message& message : file->messages) {
            const qsizetype expected = !message.isCounted ? 1 : isRussian ? 3 : 2;
            EXPECT_EQ(message.forms.size(), expected) << qPrintable(file->name + u' ' + message.key);
            EXPECT_EQ(message.isCounted, message.key.contains(QLatin1StringView("%n"))) << qPrintable(message.key);
        }
    }
}

TEST_F(TranslationsTest, PlaceholdersSurviveInTheirOrder)
{
    for (const TranslationFile* file : files()) {
        for (const TranslationFile::Message& message : file->messages) {
            for (const QString& form : message.forms)
                EXPECT_EQ(placeholders(form), placeholders(message.key)) << qPrintable(file->name + u' ' + message.key);
        }
    }
}

TEST_F(TranslationsTest, NoTextOutlivesItsUse)
{
    QSet<QString> used;
    for (const SourceTexts::Text& text : sources())
        used.insert(text.text);
    for (const TranslationFile::Message& message : english.messages) {
        EXPECT_NE(used.contains(message.key), message.isVanished)
            << qPrintable(message.key)
            << (message.isVanished ? ": is used again, so it is not vanished"
                                   : ": no source uses it, mark it as vanished");
    }
    for (const TranslationFile* file : files()) {
        for (const TranslationFile::Message& message : file->messages)
            EXPECT_TRUE(english.find(message.key)) << qPrintable(file->name + u' ' + message.key) << ": has no English";
    }
}

TEST_F(TranslationsTest, TextsThatNameAnotherSystemHaveTheirOwnWording)
{
    QStringList keys;
    for (const TranslationFile::Message& message : english.messages)
        keys.append(message.key);
    for (const SourceTexts::Text& text : sources())
        keys.append(text.text);
    for (const QString& key : keys) {
        if (!namesTheOtherSystem(key))
            continue;
        for (const TranslationFile* file : {&systemEnglish, &systemRussian}) {
            const TranslationFile::Message* message = file->find(key);
            EXPECT_TRUE(message && message->isFinished) << qPrintable(file->name) << " lacks: " << qPrintable(key);
        }
    }
    for (const TranslationFile* file : {&systemEnglish, &systemRussian}) {
        for (const TranslationFile::Message& message : file->messages)
            EXPECT_FALSE(namesTheOtherSystem(message.forms.join(u'\n'))) << qPrintable(file->name + u' ' + message.key);
    }
}

TEST_F(TranslationsTest, FilesAreInOrderAndInTheirLanguage)
{
    static const QRegularExpression kCyrillic(QStringLiteral("[\\x{0400}-\\x{04FF}]"));
    for (const TranslationFile* file : files()) {
        const auto& messages = file->messages;
        EXPECT_FALSE(messages.isEmpty()) << qPrintable(file->name);
        const auto unordered =
            std::ranges::adjacent_find(messages, std::ranges::greater_equal(), &TranslationFile::Message::key);
        EXPECT_TRUE(unordered == messages.end())
            << qPrintable(file->name) << ": out of order or twice, at " << qPrintable(unordered->key);
        for (const TranslationFile::Message& message : messages) {
            const bool isRussian = file == &russian || file == &systemRussian;
            const bool isLanguageName = message.key == QStringLiteral("Русский"); // each language names itself
            EXPECT_EQ(message.forms.join(QString()).contains(kCyrillic), isRussian || isLanguageName)
                << qPrintable(file->name + u' ' + message.key);
        }
    }
}
