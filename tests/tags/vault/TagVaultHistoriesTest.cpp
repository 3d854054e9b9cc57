#include "tags/vault/TagVault.h"

#include "support/TagBytes.h"
#include "support/WrittenFiles.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <random>

using namespace TagBytes;

namespace {

const QByteArray kPicture = "\x89PNG" + QByteArray(300, 'p');
const QByteArray kLyrics = "LYRICSBEGININD0000200LYR00005Words000034LYRICS200";

/// Everything that may stand behind the sound, in usual and in odd orders.
std::vector<std::pair<const char*, QByteArray>> trailers()
{
    const QByteArray first = ape({"Title=Three", "Mood=odd", "Comment=long enough"});
    const QByteArray second = ape({"Album=Four", "Year=1999"});
    const QByteArray old = id3v1({.title = "four", .artist = "five", .genre = 3});
    return {
        {"nothing", {}},
        {"ID3v1", old},
        {"APEv2", first},
        {"Lyrics3", kLyrics},
        {"APEv2, ID3v1", first + old},
        {"Lyrics3, ID3v1", kLyrics + old},
        {"APEv2, Lyrics3, ID3v1", first + kLyrics + old},
        {"Lyrics3, APEv2, ID3v1", kLyrics + first + old},
        {"APEv2, Lyrics3, APEv2", first + kLyrics + second},
        {"ID3v1, APEv2", old + first},
        {"two APEv2", first + second},
        {"APEv2 of 131 bytes", ape({"Title=" + QByteArray(131 - 64 - 14, 't')})},
        {"broken APEv2, Lyrics3, ID3v1", first.last(32) + kLyrics + old},
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

// Whatever was saved in whatever order: the first tags come back, byte for byte.
TEST(TagVaultHistoriesTest, everyHistoryCanBeTakenBack)
{
    std::vector<std::pair<const char*, Change>> all = changes();
    std::mt19937 generator(5);
    const std::pair<QString, QByteArray> sounds[] = {
        {QStringLiteral("a.mp3"), id3v2(textFrame("TIT2", "one") + pictureFrame(kPicture)) + mpegFrames(3)},
        {QStringLiteral("a.mp3"), mpegFrames(3)},
        {QStringLiteral("a.flac"), flac(100, {"TITLE=x", "MOOD=odd"}, flacBlock(6, flacPicture(kPicture)))},
    };
    for (const auto& [name, sound] : sounds) {
        for (const auto& [what, trailer] : trailers()) {
            const FileFolder folder;
            const QByteArray original = sound + trailer;
            const QUrl url = folder.write(name, original);
            TagVault vault(folder.path(QStringLiteral("vault")));
            std::string history = name.toStdString() + ", " + what + ":";
            std::ranges::shuffle(all, generator);
            for (const auto& [label, change] : all) {
                history += std::string(" ") + label + ";";
                vault.keep(url);
                failureOf(change, url); // some refuse some of these files, which stay as they are
                const QByteArray present = contentOf(url);
                ASSERT_EQ(failureOf([&](const QUrl& file) { vault.restore(file); }, url), QStringLiteral("none"))
                    << history;
                ASSERT_TRUE(contentOf(url) == original) << history;
                folder.write(name, present);
            }
            ASSERT_EQ(filesBelow(folder.path(QStringLiteral("vault"))).size(), 1) << history;
        }
    }
}

// The writers do take such files: else the test above would show nothing.
TEST(TagVaultHistoriesTest, savesReachTheTagsBehindTheSound)
{
    AudioTags tags;
    tags.title = QStringLiteral("Changed");
    const QByteArray trailer = ape({"Title=Three"}) + kLyrics + id3v1({.title = "four"});
    for (const auto& [name, sound] : {std::pair(QStringLiteral("a.mp3"), mpegFrames(3)),
                                      std::pair(QStringLiteral("a.flac"), flac(100, {"TITLE=x"}))}) {
        const QByteArray kept = changed(name, sound + trailer, keeping(tags, TagField::Title));
        EXPECT_FALSE(kept.contains("Three")) << name.toStdString();
        EXPECT_TRUE(kept.contains(kLyrics)) << name.toStdString();
        EXPECT_TRUE(kept.last(128).startsWith("TAGChanged")) << name.toStdString();
    }
}

// An entry that has lost bytes is no safety: the present tags take its place, once it is looked at.
TEST(TagVaultHistoriesTest, aDamagedEntryIsReplaced)
{
    const FileFolder folder;
    const QString vaultPath = folder.path(QStringLiteral("vault"));
    const QUrl url = folder.write(QStringLiteral("a.mp3"), id3v2(textFrame("TIT2", "one")) + mpegFrames(3));
    TagVault(vaultPath).keep(url);
    ASSERT_EQ(failureOf(writing(fullTags()), url), QStringLiteral("none"));
    const QByteArray present = contentOf(url);
    const QString entry = filesBelow(vaultPath).first();
    QByteArray bytes = contentOf(QUrl::fromLocalFile(entry));
    bytes[bytes.size() - 9] = static_cast<char>(~bytes[bytes.size() - 9]); // behind the label
    QFile file(entry);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    TagVault vault(vaultPath);
    EXPECT_EQ(failureOf([&](const QUrl& path) { vault.restore(path); }, url), QStringLiteral("damaged"));
    EXPECT_TRUE(contentOf(url) == present);
    vault.keep(url);
    ASSERT_EQ(failureOf(writing({}), url), QStringLiteral("none"));
    EXPECT_EQ(failureOf([&](const QUrl& path) { vault.restore(path); }, url), QStringLiteral("none"));
    EXPECT_TRUE(contentOf(url) == present);
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
