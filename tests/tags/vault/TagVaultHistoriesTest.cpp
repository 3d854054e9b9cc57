#include "tags/vault/TagVault.h"

#include "support/TagBytes.h"
#include "support/WrittenFiles.h"

#include <gtest/gtest.h>

#include <random>

using namespace TagBytes;

namespace {

const QByteArray kPicture = "\x89PNG" + QByteArray(5000, 'p');
const QByteArray kLyrics = "LYRICSBEGININD0000200LYR00005Words000034LYRICS200";

/// Everything that may stand behind the sound, in usual and in odd orders.
std::vector<QByteArray> trailers()
{
    const QByteArray first = ape({"Title=Three", "Mood=odd", "Comment=long enough"});
    const QByteArray second = ape({"Album=Four", "Year=1999"});
    const QByteArray old = id3v1({.title = "four", .artist = "five", .genre = 3});
    return {
        {},
        old,
        first,
        kLyrics,
        first + old,
        kLyrics + old,
        first + kLyrics + old,
        kLyrics + first + old,
        first + kLyrics + second,
        old + first,
        first + second,
        ape({"Title=" + QByteArray(131 - 64 - 14, 't')}),
        first.last(32) + kLyrics + old,
    };
}

std::vector<std::pair<const char*, Change>> changes()
{
    AudioTags few;
    few.title = QStringLiteral("Стало");
    AudioTags cyrillic = fullTags();
    cyrillic.year = QStringLiteral("2024");
    return {
        {"plain", writing(fullTags())},
        {"plain, few", writing(few)},
        {"plain, empty", writing({})},
        {"keeping", keeping(cyrillic)},
        {"keeping, one", keeping(few, TagField::Title)},
        {"keeping, empty", keeping({})},
        {"cleaning", cleaning(CleanerFields::fromInt(1023), QStringLiteral("New"), QStringLiteral("Album"))},
        {"cleaning some", cleaning(CleanerFields::fromInt(7))},
        {"picture", assigning(kPicture, fullTags())},
        {"keeping picture", keepingWithPicture(kPicture, few, TagField::Title)},
    };
}

QByteArray encoded(const QString& name, const QString& arguments = {})
{
    const FileFolder folder;
    const QString tags = QStringLiteral("-metadata title=Было -metadata comment=Old -metadata genre=Dub ");
    return contentOf(makeSound(folder, name, tags + arguments));
}

/// Files of every container, made by an encoder and with tags of many kinds around the sound.
std::vector<std::pair<QString, QByteArray>> samples()
{
    const QString mp3 = QStringLiteral("a.mp3");
    const QString flacName = QStringLiteral("a.flac");
    const QString wav = QStringLiteral("a.WAV");
    const QString aif = QStringLiteral("a.aif");
    const QString m4aName = QStringLiteral("a.m4a");
    const QByteArray first = id3v2(textFrame("TIT2", "one") + pictureFrame(kPicture) + QByteArray(500, '\0'));
    const QByteArray second = id3v2(textFrame("TIT2", "two", 4), 4);
    const QByteArray trailer = ape({"Title=three", "Mood=odd"}) + id3v1({.title = "four", .genre = 3});
    const QByteArray plainMp3 = encoded(mp3, QStringLiteral("-write_xing 1"));
    const QByteArray sound = encoded(QStringLiteral("a.aiff"));
    const QByteArray front = encoded(m4aName, QStringLiteral("-movflags +faststart"));
    const QByteArray wave = encoded(QStringLiteral("a.wav"));
    QByteArray tailed = wave + riffChunk("odd ", "123") + riffChunk("id3 ", second) + "tail";
    qToLittleEndian(quint32(tailed.size() - 8), tailed.data() + 4);
    std::vector<std::pair<QString, QByteArray>> all{
        {mp3, plainMp3},
        {mp3, first + second + plainMp3 + trailer},
        {mp3, mpegFrames(30)},
        {mp3, first},
        {flacName, encoded(flacName)},
        {flacName,
         flac(44100, {"TITLE=x", "MOOD=odd"},
              flacBlock(1, QByteArray(900, '\0')) + flacBlock(6, flacPicture(kPicture)) + flacBlock(2, "appl1234"))},
        {wav, wave},
        {wav, tailed},
        {QStringLiteral("a.wav"), TagBytes::wave(400, info(riffChunk("INAM", "odd")) + riffChunk("data", "more"))},
        {QStringLiteral("a.aiff"), sound},
        {aif, aiff(300, aiffChunk("NAME", "odd") + aiffChunk("MARK", "12345") + aiffChunk("id3 ", second))},
        {m4aName, encoded(m4aName)},
        {m4aName, front},
        {m4aName, m4a(itemAtom("\251nam", 1, "old") + itemAtom("covr", 14, kPicture)) + atom("free", "room") +
                      atom("mdat", "second")},
    };
    for (const QByteArray& behind : trailers()) {
        all.emplace_back(mp3, first + mpegFrames(3) + behind);
        all.emplace_back(mp3, mpegFrames(3) + behind);
        all.emplace_back(flacName, flac(100, {"TITLE=x", "MOOD=odd"}, flacBlock(6, flacPicture(kPicture))) + behind);
    }
    return all;
}

// Whatever was saved in whatever order: the first tags come back, byte for byte.
TEST(TagVaultHistoriesTest, everyHistoryCanBeTakenBack)
{
    std::vector<std::pair<const char*, Change>> all = changes();
    std::mt19937 generator(5);
    for (const auto& [name, original] : samples()) {
        const FileFolder folder;
        const QUrl url = folder.write(name, original);
        const QString vaultPath = folder.path(QStringLiteral("vault"));
        TagVault vault(vaultPath);
        std::string history = name.toStdString() + " " + original.right(200).toPercentEncoding().toStdString() + ":";
        std::ranges::shuffle(all, generator);
        for (const auto& [label, change] : all) {
            history += std::string(" ") + label + ";";
            vault.keep(url);
            EXPECT_TRUE(vault.holds(url));
            failureOf(change, url); // some refuse some of these files, which stay as they are
            const QByteArray present = contentOf(url);
            TagVault later(vaultPath); // since the first instance may remember
            ASSERT_EQ(failureOf([&](const QUrl& file) { later.restore(file); }, url), QString()) << history;
            ASSERT_TRUE(contentOf(url) == original) << history;
            folder.write(name, present);
        }
        ASSERT_EQ(filesBelow(vaultPath).size(), 1) << history;
    }
}

TEST(TagVaultHistoriesTest, putsBackWhatAnotherTaggerWrote)
{
    const QString script = QStringLiteral("import sys, mutagen, mutagen.id3\n"
                                          "file = mutagen.File(sys.argv[1])\n"
                                          "if file.tags is None: file.add_tags()\n"
                                          "kind = type(file).__name__\n"
                                          "text = 'Другое' * int(sys.argv[2])\n"
                                          "if kind == 'MP4': file['\\xa9nam'] = text\n"
                                          "elif kind == 'FLAC': file['title'] = text\n"
                                          "else: file.tags.add(mutagen.id3.TIT2(encoding=1, text=text))\n"
                                          "file.save()\n");
    for (const char* extension : {"mp3", "flac", "wav", "aiff", "m4a"}) {
        for (const char* length : {"1", "9000"}) { // within the old tag's room, and far beyond it
            SCOPED_TRACE(std::string(extension) + " " + length);
            const QString name = QStringLiteral("a.") + QLatin1StringView(extension);
            const QByteArray original = encoded(name);
            const FileFolder folder;
            TagVault vault(folder.path(QStringLiteral("vault")));
            const QUrl url = folder.write(name, original);
            vault.keep(url);
            ASSERT_TRUE(runProgram(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), script, url.toLocalFile(),
                                                                        QString(QLatin1StringView(length))}));
            ASSERT_TRUE(contentOf(url) != original);
            vault.keep(url);
            EXPECT_EQ(failureOf([&](const QUrl& file) { vault.restore(file); }, url), QString());
            EXPECT_TRUE(contentOf(url) == original);
        }
    }
}

// An entry that has lost bytes is no safety: the present tags take its place, once it is looked at.
TEST(TagVaultHistoriesTest, aDamagedEntryIsReplaced)
{
    for (const bool isLabel : {true, false}) {
        const FileFolder folder;
        const QString vaultPath = folder.path(QStringLiteral("vault"));
        const QUrl url = folder.write(QStringLiteral("a.mp3"), id3v2(textFrame("TIT2", "one")) + mpegFrames(3));
        TagVault(vaultPath).keep(url);
        ASSERT_EQ(failureOf(writing(fullTags()), url), QString());
        const QByteArray present = contentOf(url);
        const QString entry = filesBelow(vaultPath).first();
        QByteArray bytes = readFile(entry);
        const qsizetype place = isLabel ? 30 : bytes.size() - 9;
        bytes[place] = static_cast<char>(~bytes[place]);
        writeFile(entry, bytes);
        TagVault vault(vaultPath);
        EXPECT_EQ(failureOf([&](const QUrl& path) { vault.restore(path); }, url), QStringLiteral("damaged"));
        EXPECT_TRUE(contentOf(url) == present);
        vault.keep(url);
        ASSERT_EQ(failureOf(writing({}), url), QString());
        EXPECT_EQ(failureOf([&](const QUrl& path) { vault.restore(path); }, url), QString());
        EXPECT_TRUE(contentOf(url) == present);
    }
}

TEST(TagVaultHistoriesTest, aVaultThatCannotBeWrittenSaysSo)
{
    const FileFolder folder;
    const QByteArray original = id3v2(textFrame("TIT2", "one")) + mpegFrames(3);
    const QUrl url = folder.write(QStringLiteral("a.mp3"), original);
    folder.write(QStringLiteral("file"), "in the way");
    TagVault vault(folder.path(QStringLiteral("file/vault")));
    EXPECT_EQ(failureOf([&](const QUrl& path) { vault.keep(path); }, url), QStringLiteral("cannotKeep"));
    TagVault small(folder.path(QStringLiteral("vault")), 10);
    EXPECT_EQ(failureOf([&](const QUrl& path) { small.keep(path); }, url), QStringLiteral("cannotKeep"));
    EXPECT_TRUE(contentOf(url) == original);
}

} // namespace
