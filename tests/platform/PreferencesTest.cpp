#include "platform/Preferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

class PreferencesTest : public testing::Test {
protected:
    Preferences inMemory{std::make_unique<MemoryPreferenceStore>()};
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("new folder/velmora.ini"));

    Preferences onDisk() const { return Preferences(std::make_unique<SettingsFile>(path)); }
};

} // namespace

TEST_F(PreferencesTest, UnsetValuesAreTheDefaults)
{
    const std::pair<const char*, QVariant> rows[] = {
        {"appLanguage", text("ru")},
        {"appAppearance", text("dark")},
        {"workspaceLayout", text("full")},
        {"sidebarCollapsed", false},
        {"compactSidebarCollapsed", true},
        {"dashboardPlayerOnTop", false},
        {"tableDensity", 1.0},
        {"renameFilters", text("")},
        {"titleFilters", text("")},
        {"favoriteGenreFilter", text("")},
        {"favoriteOnlyUntagged", false},
        {"playlistSortField", text("original")},
        {"playlistSortDirection", text("descending")},
        {"favoriteSortField", text("original")},
        {"favoriteSortDirection", text("ascending")},
        {"seekStep", 15.0},
        {"waveformHeight", 42.0},
        {"waveformColorPreset", text("white")},
        {"waveformCustomRed", 1.0},
        {"waveformCustomGreen", 1.0},
        {"waveformCustomBlue", 1.0},
        {"waveformScrollAction", text("volume")},
        {"converterBitrate", 320},
        {"analysisDFTWindow", 4096},
        {"analysisDensityRange", 100.0},
        {"exportFavoritesByGenre", false},
        {"cleanerAskBeforeApplying", true},
        {"playlistPopularityEnabled", true},
        {"voiceInputDeviceUID", text("")},
        {"lastUpdatePromptVersion", text("")},
        {"lastUpdatePromptDate", 0.0},
        {"genreList", text("Afro House, Afro Tech, Indie Dance, Pop, House, Melodic House & Techno, Tech House, "
                           "Deep House, Progressive House, Trance, Techno, Drum & Bass, Hip-Hop, R&B, Disco, Funk")},
        {"quickGenreSlots",
         text("Afro House\nAfro Tech\nIndie Dance\nPop\nHouse\nTech House\nDeep House\nHip-Hop\nR&B")},
        {"recentGenres", text("")},
        {"quickCommentList", text("preparty\nprime\nafterparty")},
        {"albumList", text("#PRIMETIME\n#WARM UP\n#PREPARTY")},
    };
    QHash<QString, QVariant> found;
    const auto noteOne = [&found](const auto& value) {
        EXPECT_FALSE(value.isSet());
        found.insert(value.key(), QVariant::fromValue(value.get()));
    };
    const auto note = [&noteOne](const auto&... values) { (noteOne(values), ...); };
    const Preferences& p = inMemory;
    note(p.appLanguage, p.appAppearance, p.workspaceLayout, p.sidebarCollapsed, p.compactSidebarCollapsed,
         p.dashboardPlayerOnTop, p.tableDensity, p.renameFilters, p.titleFilters, p.favoriteGenreFilter,
         p.favoriteOnlyUntagged, p.playlistSortField, p.playlistSortDirection, p.favoriteSortField,
         p.favoriteSortDirection, p.seekStep, p.waveformHeight, p.waveformColorPreset, p.waveformCustomRed,
         p.waveformCustomGreen, p.waveformCustomBlue, p.waveformScrollAction, p.converterBitrate, p.analysisDFTWindow,
         p.analysisDensityRange, p.exportFavoritesByGenre, p.cleanerAskBeforeApplying, p.playlistPopularityEnabled,
         p.voiceInputDeviceUID, p.lastUpdatePromptVersion, p.lastUpdatePromptDate, p.genreList, p.quickGenreSlots,
         p.recentGenres, p.quickCommentList, p.albumList);
    EXPECT_EQ(size_t(found.size()), std::size(rows));
    for (const auto& [key, value] : rows)
        EXPECT_EQ(found.value(text(key)), value) << key;
}

TEST_F(PreferencesTest, HotkeysHaveAPrimaryAndAnEmptySecondary)
{
    const std::tuple<HotkeyAction, const char*, const char*> rows[] = {
        {HotkeyAction::SeekBack, "hotkeySeekBack", "←"},
        {HotkeyAction::SeekForward, "hotkeySeekForward", "→"},
        {HotkeyAction::PreviousTrack, "hotkeyPreviousTrack", "↑"},
        {HotkeyAction::NextTrack, "hotkeyNextTrack", "↓"},
        {HotkeyAction::PlayPause, "hotkeyPlayPause", "Space"},
        {HotkeyAction::VoiceControl, "hotkeyVoiceControl", "V"},
        {HotkeyAction::Favorite, "hotkeyFavorite", "F"},
        {HotkeyAction::Remove, "hotkeyRemove", "Delete"},
        {HotkeyAction::Trash, "hotkeyTrash", "⌘Delete"},
        {HotkeyAction::Undo, "hotkeyUndo", "⌘Z"},
        {HotkeyAction::Clean, "hotkeyClean", "⌘B"},
        {HotkeyAction::GenrePalette, "hotkeyGenrePalette", "G"},
        {HotkeyAction::CommentPalette, "hotkeyCommentPalette", "C"},
        {HotkeyAction::AlbumPalette, "hotkeyAlbumPalette", "A"},
    };
    for (const auto& [action, key, primary] : rows) {
        HotkeyPreference& hotkey = inMemory.hotkey(action);
        EXPECT_EQ(hotkey.primary.key(), text(key));
        EXPECT_EQ(hotkey.primary.get(), text(primary));
        EXPECT_EQ(hotkey.secondary.key(), text(key) + QStringLiteral("Secondary"));
        EXPECT_EQ(hotkey.secondary.get(), QString());
    }
}

TEST_F(PreferencesTest, WhatIsWrittenIsOnDiskAtOnce)
{
    const QByteArray geometry("\x00\x01\xff,;=\"\n", 8);
    const QString awkward = text("Дом, \"R&B\"; a=b %41 \\ @x\n\n #1\t🎧 ");
    Preferences writing = onDisk();
    EXPECT_FALSE(QFile::exists(path));
    writing.genreList.set(awkward);
    writing.quickGenreSlots.set(text("\n\nPop\n"));
    writing.favoriteGenreFilter.set(text("@Invalid()"));
    writing.windowGeometry.set(geometry);
    writing.seekStep.set(0.1);
    writing.converterBitrate.set(-256);
    writing.sidebarCollapsed.set(true);
    writing.compactSidebarCollapsed.set(false);
    writing.playlistScrollOffset.set(1e9 + 0.5);
    writing.hotkey(HotkeyAction::Trash).secondary.set(text("⌘⇧Delete"));

    Preferences reading = onDisk(); // while the first object still lives
    EXPECT_EQ(reading.genreList.get(), awkward);
    EXPECT_EQ(reading.quickGenreSlots.get(), text("\n\nPop\n"));
    EXPECT_EQ(reading.favoriteGenreFilter.get(), text("@Invalid()"));
    EXPECT_EQ(reading.windowGeometry.get(), geometry);
    EXPECT_EQ(reading.seekStep.get(), 0.1);
    EXPECT_EQ(reading.converterBitrate.get(), -256);
    EXPECT_TRUE(reading.sidebarCollapsed.get());
    EXPECT_FALSE(reading.compactSidebarCollapsed.get());
    EXPECT_EQ(reading.playlistScrollOffset.get(), 1e9 + 0.5);
    EXPECT_EQ(reading.hotkey(HotkeyAction::Trash).secondary.get(), text("⌘⇧Delete"));
    EXPECT_EQ(reading.store().keys().size(), 10);

    reading.seekStep.remove();
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
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General]\nseekStep=soon\nwaveformHeight=nan\nconverterBitrate=many\nsidebarCollapsed=perhaps\n"
               "compactSidebarCollapsed=\ncleanerAskBeforeApplying=0\ndashboardPlayerOnTop=1\ntableDensity=1,5\n"
               "analysisDFTWindow=8192\n");
    file.close();
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
