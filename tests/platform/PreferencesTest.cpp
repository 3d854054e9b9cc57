#include "platform/Preferences.h"

#include "support/Machine.h"
#include "support/Utf8.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>

namespace {

class PreferencesTest : public testing::Test {
protected:
    Preferences inMemory{std::make_unique<MemoryPreferenceStore>()};
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("new folder/velmora.ini"));

    Preferences onDisk() const { return Preferences(std::make_unique<SettingsFile>(path)); }
};

} // namespace

TEST_F(PreferencesTest, WhatTheDiskRefusesIsToldAndWrittenWithTheNextChange)
{
    const QString file = folder.filePath(text("no folder"));
    writeFile(file);
    Preferences refused(std::make_unique<SettingsFile>(file + text("/settings.ini")));
    QSignalSpy told(&refused, &Preferences::saved);
    refused.genreList.set(text("House"));
    ASSERT_TRUE(told.wait());
    EXPECT_EQ(told.takeFirst().first(), false);
    ASSERT_TRUE(QFile::remove(file));
    refused.seekStep.set(0.5);
    ASSERT_TRUE(told.wait());
    EXPECT_EQ(told.takeFirst().first(), true);
    const Preferences reading(std::make_unique<SettingsFile>(file + text("/settings.ini")));
    EXPECT_EQ(reading.genreList.get(), text("House"));
}

TEST_F(PreferencesTest, EveryKeyBelongsToOneValue)
{
    // What shares a key with another value would overwrite it.
    QStringList keys;
    QObject::connect(&inMemory, &Preferences::changed, [&](const QString& key) { keys.append(key); });
    for (int action = int(HotkeyAction::SeekBack); action <= int(HotkeyAction::AlbumPalette); ++action) {
        HotkeyPreference& hotkey = inMemory.hotkey(HotkeyAction(action));
        EXPECT_FALSE(hotkey.primary.get().isEmpty());
        EXPECT_EQ(hotkey.secondary.get(), QString());
        hotkey.primary.set(hotkey.primary.get());
        hotkey.secondary.set(QString());
    }
    EXPECT_EQ(inMemory.hotkey(HotkeyAction::PlayPause).primary.key(), text("hotkeyPlayPause"));
    EXPECT_EQ(inMemory.hotkey(HotkeyAction::AlbumPalette).secondary.key(), text("hotkeyAlbumPaletteSecondary"));
    EXPECT_EQ(QSet<QString>(keys.cbegin(), keys.cend()).size(), keys.size());
}

TEST_F(PreferencesTest, WhatIsWrittenIsThereAtOnceAndOnDiskAtTheEnd)
{
    const QByteArray geometry("\x00\x01\xff,;=\"\n", 8);
    const QString awkward = text("Дом, \"R&B\"; a=b %41 \\ @x\n\n #1\t🎧 ");
    auto written = std::make_unique<Preferences>(std::make_unique<SettingsFile>(path));
    Preferences& writing = *written;
    EXPECT_FALSE(QFile::exists(path));
    const auto visit = [&](Preferences& preferences, const auto& use) {
        use(preferences.genreList, awkward);
        use(preferences.quickGenreSlots, text("\n\nPop\n"));
        use(preferences.favoriteGenreFilter, text("@Invalid()"));
        use(preferences.windowGeometry, geometry);
        use(preferences.seekStep, 0.1);
        use(preferences.converterBitrate, -256);
        use(preferences.sidebarCollapsed, true);
        use(preferences.compactSidebarCollapsed, false);
        use(preferences.playlistScrollOffset, 1e9 + 0.5);
        use(preferences.hotkey(HotkeyAction::Trash).secondary, text("⌘⇧Delete"));
    };
    const auto expect = [](const auto& preference, const auto& value) { EXPECT_EQ(preference.get(), value); };
    visit(writing, [](auto& preference, const auto& value) { preference.set(value); });
    visit(writing, expect);
    written.reset();
    Preferences reading = onDisk();
    visit(reading, expect);
    EXPECT_EQ(reading.store().keys().size(), 10);

    {
        Preferences removing = onDisk();
        removing.seekStep.remove();
        EXPECT_FALSE(removing.seekStep.isSet());
    }
    EXPECT_FALSE(onDisk().seekStep.isSet());
    EXPECT_EQ(onDisk().seekStep.get(), 15.0);
}

TEST_F(PreferencesTest, AnEmptyTextIsAValue)
{
    onDisk().genreList.set(QString());
    onDisk().albumList.set(text(""));
    Preferences reading = onDisk();
    EXPECT_TRUE(reading.genreList.isSet());
    EXPECT_EQ(reading.genreList.get(), QString());
    EXPECT_EQ(reading.albumList.get(), QString());
    inMemory.genreList.set(QString());
    EXPECT_EQ(inMemory.genreList.get(), QString());
}

TEST_F(PreferencesTest, UnreadableValuesAreTheDefaults)
{
    writeFile(path, "[General]\nseekStep=soon\nwaveformHeight=nan\nconverterBitrate=many\nsidebarCollapsed=perhaps\n"
                    "compactSidebarCollapsed=\ncleanerAskBeforeApplying=0\ndashboardPlayerOnTop=1\ntableDensity=1,5\n"
                    "analysisDFTWindow=8192\n");
    const Preferences p = onDisk();
    EXPECT_EQ(p.seekStep.get(), 15.0);
    EXPECT_EQ(p.waveformHeight.get(), 42.0);
    EXPECT_EQ(p.converterBitrate.get(), 320);
    EXPECT_FALSE(p.sidebarCollapsed.get());
    EXPECT_TRUE(p.compactSidebarCollapsed.get());
    EXPECT_FALSE(p.cleanerAskBeforeApplying.get());
    EXPECT_TRUE(p.dashboardPlayerOnTop.get());
    EXPECT_EQ(p.tableDensity.get(), 1.0);
    EXPECT_EQ(p.analysisDFTWindow.get(), 8192);
}

TEST_F(PreferencesTest, ReportsEachChangeWithItsKeyAfterTheWrite)
{
    QStringList seen;
    QObject::connect(&inMemory, &Preferences::changed,
                     [&](const QString& key) { seen.append(key + u'=' + inMemory.store().value(key).toString()); });
    inMemory.appLanguage.set(text("en"));
    inMemory.hotkey(HotkeyAction::Undo).primary.set(QString());
    inMemory.appLanguage.remove();
    EXPECT_EQ(seen, (QStringList{text("appLanguage=en"), text("hotkeyUndo="), text("appLanguage=")}));
}
