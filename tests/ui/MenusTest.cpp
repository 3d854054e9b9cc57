#include "support/Machine.h"
#include "support/WindowFixture.h"

#include "ui/context/WindowContext.h"
#include "ui/player/OutputMenu.h"
#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/window/SettingsMenu.h"
#include "ui/window/TrackMenu.h"
#include "ui/window/WaveformMenu.h"

#include <QMenu>

class MenusTest : public WindowFixture {
protected:
    void build(QMenu& menu, LibraryTab tab, const QSet<TrackID>& ids, const std::optional<Track>& focused = {})
    {
        if (workspace().activeTab() != tab)
            dashboard.activateTab(tab);
        TrackMenu::build(menu, context(), window->section(tab).descriptor(), ids, focused);
    }
};

TEST_F(MenusTest, ATrackMenuOffersWhatWorks)
{
    Track plain = track(QStringLiteral("a.mp3"));
    plain.setIsInCoverWorkspace(true);
    const Track loved = favorite(QStringLiteral("b.mp3"));
    fill({plain, loved});
    workspace().setList(Track::MetadataDestination::Analysis, {plain});
    const QString add = QStringLiteral("Добавить в избранное");
    const QString remove = QStringLiteral("Убрать из избранного");
    const QString genre = QStringLiteral("Присвоить жанр");
    const QString uncover = QStringLiteral("Убрать из обложек");
    const struct {
        LibraryTab tab;
        QList<Track> rows;
        bool adds, removes, tags, uncovers;
    } kCases[]{
        {LibraryTab::Playlist, {plain}, true, false, false, false},
        {LibraryTab::Playlist, {loved}, false, true, true, false},
        {LibraryTab::Playlist, {plain, loved}, true, true, true, false},
        {LibraryTab::Covers, {plain}, true, false, false, true},
        {LibraryTab::Analysis, {plain}, false, false, false, false},
    };
    for (const auto& each : kCases) {
        QMenu menu;
        build(menu, each.tab, ids(each.rows));
        EXPECT_EQ(action(menu, add) != nullptr, each.adds);
        EXPECT_EQ(action(menu, remove) != nullptr, each.removes);
        EXPECT_EQ(action(menu, uncover) != nullptr, each.uncovers);
        EXPECT_EQ(action(menu, genre) && action(menu, genre)->isEnabled(), each.tags);
        EXPECT_TRUE(action(menu, VelmoraLocalization::string(QStringLiteral("Открыть в Finder"))));
        EXPECT_TRUE(action(menu, QStringLiteral("Переместить в Корзину")));
        EXPECT_FALSE(action(menu, QStringLiteral("Определить выбранные"))) << "another section's";
    }
}

TEST_F(MenusTest, FilesOfLibraryRowsGetCoversAndTheirFirstTagsBack)
{
    const Track kept = favorite(QStringLiteral("a.mp3"));
    const Track other = favorite(QStringLiteral("b.mp3"));
    fill({kept, other});
    workspace().setList(Track::MetadataDestination::MusicalKey, {kept});
    files.originals = {kept.url()};
    const QString cover = QStringLiteral("Присвоить обложку…");
    const QString restore = QStringLiteral("Вернуть исходные теги");
    const struct {
        LibraryTab tab;
        QList<Track> rows;
        QSet<TrackID> written;
        bool covers, restores;
    } kCases[]{
        {LibraryTab::Playlist, {kept, other}, {}, true, true},
        {LibraryTab::Favorites, {other}, {}, true, false},
        {LibraryTab::Covers, {kept}, {other.id()}, true, true},
        {LibraryTab::Covers, {kept, other}, {other.id()}, false, false},
        {LibraryTab::Converter, {kept}, {}, false, false},
        {LibraryTab::MusicalKey, {kept}, {}, false, true},
    };
    for (const auto& each : kCases) {
        workspace().setArtworkWritingIDs(each.written);
        QMenu menu;
        build(menu, each.tab, ids(each.rows));
        QAction* covers = action(menu, cover);
        QAction* restores = action(menu, restore);
        EXPECT_EQ(covers && covers->isEnabled(), each.covers);
        EXPECT_EQ(restores && restores->isEnabled(), each.restores);
        EXPECT_EQ(action(menu, QStringLiteral("Переместить в Корзину")) != nullptr, each.tab != LibraryTab::Converter);
        if (!each.restores)
            continue;
        if (each.covers) {
            covers->trigger();
            dashboard.imageChosen("picture");
            EXPECT_EQ(dashboard.assignedImage, "picture");
            EXPECT_EQ(dashboard.last("assignArtwork").ids, ids(each.rows));
        }
        restores->trigger();
        EXPECT_EQ(dashboard.last("restoreTags").ids, ids(each.rows));
    }
}

TEST_F(MenusTest, WhatSavesKeepIsASetting)
{
    for (const bool isOn : {true, false}) {
        QMenu menu;
        SettingsMenu::build(menu, context());
        QAction* keep = action(menu, QStringLiteral("Сохранять обложку и прочие поля файла"));
        EXPECT_EQ(keep->isChecked(), !isOn);
        preferences.keepsOtherTagEntriesAsked.set(false);
        keep->trigger();
        EXPECT_EQ(preferences.keepsOtherTagEntries.get(), isOn);
        EXPECT_TRUE(preferences.keepsOtherTagEntriesAsked.get()) << "who has chosen is not asked";
    }
}

TEST_F(MenusTest, ItsCommandsReachTheDashboard)
{
    const Track plain = track(QStringLiteral("a.mp3"));
    const Track loved = favorite(QStringLiteral("b.mp3"));
    fill({plain, loved});
    preferences.recentGenres.set(QStringLiteral("Drum & Bass"));
    QMenu menu;
    build(menu, LibraryTab::Playlist, ids({plain, loved}));
    action(menu, QStringLiteral("Добавить в избранное"))->trigger();
    EXPECT_TRUE(workspace().tracks().find(plain.id())->isFavorite());
    EXPECT_TRUE(workspace().tracks().find(loved.id())->isFavorite()) << "favourites among them stay";
    QAction* genre = action(*action(menu, QStringLiteral("Присвоить жанр"))->menu(), QStringLiteral("Drum && Bass"));
    ASSERT_TRUE(genre) << "an ampersand is shown, not taken for a mnemonic";
    genre->trigger();
    EXPECT_EQ(dashboard.last("assignGenre").text, QStringLiteral("Drum & Bass"));
    action(menu, QStringLiteral("Отправить в конвертер"))->trigger();
    EXPECT_EQ(dashboard.last("sendToConversion").ids, ids({plain, loved}));
}

TEST_F(MenusTest, ATrackMenuPlaysFirst)
{
    const Track first = track(QStringLiteral("a.mp3"));
    const Track second = track(QStringLiteral("b.mp3"));
    fill({first, second});
    play(first);
    const std::pair<Track, QString> kCases[] = {{first, QStringLiteral("Пауза")},
                                                {second, QStringLiteral("Воспроизвести")}};
    for (const auto& [focused, text] : kCases) {
        QMenu menu;
        build(menu, LibraryTab::Playlist, ids({first, second}), focused);
        QAction* action = menu.actions().first();
        EXPECT_EQ(action->text().section(u'\t', 0, 0), text);
        action->trigger();
        EXPECT_EQ(dashboard.last("playRow").ids, ids({focused}));
    }
}

TEST_F(MenusTest, TheOutputIsChosenFromTheDevicesThereAre)
{
    const AudioDevice deck{QStringLiteral("a"), QStringLiteral("Deck & Booth")};
    const AudioDevice phones{QStringLiteral("b"), QStringLiteral("Phones")};
    audio.setDevices({deck, phones});
    preferences.audioOutputDevice.set(QStringLiteral("gone"));
    const auto texts = [](const QMenu& menu) {
        QStringList result;
        for (const QAction* each : menu.actions()) {
            if (!each->isSeparator())
                result += each->isChecked() ? u'*' + each->text() : each->text();
        }
        return result;
    };
    OutputMenu menu(context(), nullptr);
    EXPECT_EQ(audio.refreshes, 1);
    EXPECT_EQ(texts(menu), (QStringList{QStringLiteral("*Системное устройство"), QStringLiteral("Deck && Booth"),
                                        QStringLiteral("Phones")}))
        << "a device that is not there counts as the default";
    menu.actions().last()->trigger();
    EXPECT_EQ(preferences.audioOutputDevice.get(), phones.id);
    audio.setDevices({phones}); // the search that the menu began has come to its end
    clock.advance(async::seconds(1));
    EXPECT_EQ(texts(menu).size(), 2);
    EXPECT_EQ(texts(menu).last(), QStringLiteral("*Phones"));
}

TEST_F(MenusTest, SettingsAreWrittenAndTakeEffect)
{
    QMenu menu;
    SettingsMenu::build(menu, context());
    const auto choose = [&](const QString& submenu, const QString& choice) {
        action(*action(menu, submenu)->menu(), choice)->trigger();
    };
    choose(QStringLiteral("Тема"), QStringLiteral("Светлая"));
    EXPECT_EQ(window->theme().appearance(), Appearance::Light);
    choose(QStringLiteral("Компоновка"), QStringLiteral("Компактная"));
    EXPECT_EQ(window->size(), QSize(1040, 700));
    choose(QStringLiteral("Язык"), QStringLiteral("English"));
    EXPECT_EQ(preferences.appLanguage.get(), QStringLiteral("en"));
    action(menu, QStringLiteral("Плеер сверху"))->trigger();
    EXPECT_TRUE(preferences.dashboardPlayerOnTop.get());
}

TEST_F(MenusTest, TheWaveformsHaveAMenuOfTheirOwn)
{
    QMenu menu;
    SettingsMenu::build(menu, context());
    QMenu* waveform = action(menu, QStringLiteral("Волна"))->menu();
    const std::tuple<const char*, const char*, QString, QString> kCases[] = {
        {"Вид волны", "Точки", preferences.waveformDrawer.key(), QStringLiteral("dots")},
        {"Цвет волны", "Мятный", preferences.waveformColorPreset.key(), QStringLiteral("mint")},
        {"Высота волны", "Высокая", preferences.waveformHeight.key(), QStringLiteral("60")},
        {"Колесо мыши над волной", "Перемотка", preferences.waveformScrollAction.key(), QStringLiteral("seek")},
    };
    for (const auto& [submenu, choice, key, value] : kCases) {
        QMenu* choices = action(*waveform, QString::fromUtf8(submenu))->menu();
        const auto checked = std::ranges::count_if(choices->actions(), &QAction::isChecked);
        EXPECT_EQ(checked, 1) << submenu;
        action(*choices, QString::fromUtf8(choice))->trigger();
        EXPECT_EQ(preferences.store().value(key).toString(), value);
    }
}

TEST_F(MenusTest, TheWaveformCacheIsMeasuredAndEmptied)
{
    const QString entry = QStringLiteral("waveforms/") + QString(64, u'a') + QStringLiteral(".waveform");
    const QString path = writeFile(folder.filePath(entry), QByteArray(16384, '\0'));
    {
        WaveformMenu menu(context(), nullptr);
        QAction* size = menu.actions()[menu.actions().size() - 2];
        EXPECT_EQ(size->text(), WaveformMenu::cacheText(std::nullopt));
        turn();
        EXPECT_EQ(size->text(), WaveformMenu::cacheText(EnvelopeCacheSize{16384, 1}));
        menu.actions().last()->trigger();
    }
    turn(); // the menu is gone by now
    EXPECT_FALSE(QFile::exists(path));
    WaveformMenu menu(context(), nullptr);
    turn();
    EXPECT_FALSE(menu.actions().last()->isEnabled()) << "nothing to empty";
}
