#include "support/WindowFixture.h"

#include "ui/window/Banner.h"
#include "ui/window/Sidebar.h"
#include "ui/window/StatusStrip.h"

/// What the window tells and asks of writes to files.
class MessagesTest : public WindowFixture {
protected:
    Banner& banner() { return *window->findChild<Banner*>(); }
    StatusStrip& strip() { return *window->findChild<StatusStrip*>(); }
    ThemeButton& stop() { return *button(strip(), QStringLiteral("Остановить")); }
    QString work() { return strip().accessibleDescription(); }
    void write(const QList<Track>& tracks)
    {
        QList<Track> rows = workspace().tracks().rows();
        QList<TagSaver::Item> items;
        for (const Track& each : tracks) {
            Track& row = rows[*workspace().tracks().indexOf(each.id())];
            row.edit(row.tags(), TagField::Genre);
            items.append(TagSaver::Item{row});
        }
        workspace().setTracks(rows);
        store->tagWriting().saver().writeBatch(items);
    }
};

TEST_F(MessagesTest, TheQuestionComesFirstAndStaysUntilItIsAnswered)
{
    const QString question = QStringLiteral("Что оставить в файлах при сохранении?");
    const std::pair<QString, QString> kAnswers[]{
        {QStringLiteral("Сохранять обложку и прочие поля"), QStringLiteral("keep")},
        {QStringLiteral("Только десять полей"), QStringLiteral("drop")}};
    show();
    for (const auto& [text, answer] : kAnswers) {
        workspace().setNotice(QStringLiteral("Заметка"));
        workspace().setAskingWhatSavesKeep(true);
        workspace().setLastError(QStringLiteral("Диск полон"));
        EXPECT_EQ(banner().accessibleName(), question);
        ThemeButton* choice = button(banner(), text);
        EXPECT_FALSE(button(banner(), QStringLiteral("Закрыть"))->isVisible());
        for (Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space})
            QTest::keyClick(window->focusWidget(), key);
        EXPECT_EQ(banner().accessibleName(), question) << "a key that was meant for something else answers nothing";
        EXPECT_TRUE(workspace().isAskingWhatSavesKeep());
        EXPECT_TRUE(banner().rect().contains(choice->geometry()));

        QTest::mouseClick(choice, Qt::LeftButton);
        EXPECT_EQ(dashboard.last("answerWhatSavesKeep").text, answer);
        EXPECT_EQ(banner().accessibleDescription(), QStringLiteral("Диск полон"));
        EXPECT_FALSE(choice->isVisible());
        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        EXPECT_EQ(banner().accessibleDescription(), QStringLiteral("Заметка"));
        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        EXPECT_FALSE(banner().isVisible());
    }
}

TEST_F(MessagesTest, ALinkThatHidesGivesTheFocusBack)
{
    fill({fullTrack(QStringLiteral("a")), fullTrack(QStringLiteral("b"))});
    show();
    for (const bool isListThere : {true, false}) {
        table().setFocus();
        const QSet<TrackID> gone{workspace().tracks().at(0).id()};
        store->removal().removeTracksFromPlaylist(gone);
        ThemeButton* const undo = button(strip(), QStringLiteral("Отменить: Убрать из плейлиста"));
        ASSERT_TRUE(undo && undo->isVisible());
        undo->setFocus(Qt::TabFocusReason);
        if (!isListThere)
            fill({}); // the empty state takes its place
        store->history().clear();
        EXPECT_FALSE(undo->isVisible());
        EXPECT_TRUE(window->section(LibraryTab::Playlist).isAncestorOf(window->focusWidget()));
    }
}

TEST_F(MessagesTest, AMessageGivesTheFocusBackAndNamesWhatFailed)
{
    showRows(2);
    const struct {
        QString error, title, shown, shownTitle;
    } kCases[]{
        {QStringLiteral("Диск полон"), {}, QStringLiteral("Диск полон"), QStringLiteral("Не удалось сохранить теги")},
        {{}, QStringLiteral("Не удалось"), QStringLiteral("Неизвестная ошибка"), QStringLiteral("Не удалось")}};
    table().setFocus();
    for (const auto& each : kCases) {
        workspace().setLastError(each.error, each.title);
        EXPECT_EQ(banner().accessibleName(), each.shownTitle);
        EXPECT_EQ(banner().accessibleDescription(), each.shown);
        QTest::keyClick(window->focusWidget(), Qt::Key_Return);
        EXPECT_FALSE(banner().isVisible());
        EXPECT_EQ(window->focusWidget(), &table());
    }
    window->sidebar().setFocus();
    table().setFocus();
    workspace().setNotice(QStringLiteral("Заметка"));
    fill({}); // the list that had the focus gives way to the empty state
    turn();
    QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(window->section(LibraryTab::Playlist).isAncestorOf(window->focusWidget()));
}

TEST_F(MessagesTest, TheQuestionSpeaksTheLanguageOfTheInterface)
{
    show();
    workspace().setAskingWhatSavesKeep(true);
    speakEnglish();
    EXPECT_EQ(banner().accessibleName(), QStringLiteral("What should saving keep in files?"));
    EXPECT_TRUE(button(banner(), QStringLiteral("Only the Ten Fields"))->isVisible());
}

TEST_F(MessagesTest, RoundsOfFilesShowHowFarTheyAreAndCanBeStopped)
{
    const QList<Track> tracks = showRows(3);
    write({tracks[0]});
    EXPECT_FALSE(stop().isVisible()) << "a single file is written before anyone could read of it";
    settle();
    const std::pair<std::function<void()>, QString> kRounds[]{
        {[&] { write(tracks); }, QStringLiteral("Запись тегов: 0 из 3")},
        {[&] { store->removal().trashTracks(ids(tracks)); }, QStringLiteral("Перемещение в Корзину: 0 из 3")}};
    for (const auto& [begin, text] : kRounds) {
        begin();
        EXPECT_EQ(work(), text);
        ASSERT_TRUE(stop().isVisible());
        EXPECT_LE(stop().geometry().right(), strip().width());
        QTest::mouseClick(&stop(), Qt::LeftButton);
        settle();
        EXPECT_FALSE(stop().isVisible());
        EXPECT_EQ(work(), QString());
    }
    EXPECT_LT(trashCan.asked.size(), 3) << "the file in hand is finished, the others stay";
}

TEST_F(MessagesTest, EditsThatAreNotInTheirFilesAreOfferedAndAskedAboutAtTheEnd)
{
    const QList<Track> tracks = showRows(2);
    filesHold();
    files.fail();
    typeForAll(tracks, {{&AudioTags::comment, "prime"}});
    settle();
    workspace().setLastError(std::nullopt);
    ThemeButton* again = button(strip(), QStringLiteral("Записать ещё раз: 2"));
    ASSERT_TRUE(again && again->isVisible());
    const QString spoken = cell(0, TrackColumn::Title).data(Qt::AccessibleTextRole).toString();
    EXPECT_EQ(spoken.count(QStringLiteral("Не записано в файл")), 1);
    files.before = {};
    QTest::mouseClick(again, Qt::LeftButton);
    settle();
    EXPECT_FALSE(again->isVisible());

    filesHold({{&AudioTags::comment, "prime"}});
    files.fail();
    typeForAll(tracks, {{&AudioTags::comment, ""}});
    settle();
    workspace().setLastError(std::nullopt);
    EXPECT_FALSE(window->close());
    EXPECT_EQ(banner().accessibleName(), QStringLiteral("Есть правки, которых ещё нет в файлах"));
    QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(banner().isVisible()) << "the user stays";
    EXPECT_FALSE(window->close());
    files.before = {};
    QTest::mouseClick(button(banner(), QStringLiteral("Дописать и выйти")), Qt::LeftButton);
    EXPECT_TRUE(window->isVisible()) << "until they are written";
    settle();
    turn();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MessagesTest, KeysComeBeforeTemposWhileTheyAreFound)
{
    const QList<Track> tracks = rows(3);
    fill(tracks);
    workspace().setList(Track::MetadataDestination::MusicalKey, tracks);
    show();
    store->tempo().detectBPM(ids(tracks));
    clock.advance(async::seconds(0.1));
    store->keys().analyzeMusicalKey(ids(tracks));
    EXPECT_EQ(work(), QStringLiteral("Определение тональности: 0 из 3"));
    store->playback().playbackStateDidChange(true, std::nullopt);
    EXPECT_EQ(work(), QStringLiteral("Анализ BPM: 0 из 3")) << "keys wait for the end";
    dashboard.activateTab(LibraryTab::MusicalKey);
    EXPECT_EQ(work(), QStringLiteral("Определение тональности: 0 из 3"));
    dashboard.activateTab(LibraryTab::Playlist);
    EXPECT_EQ(work(), QStringLiteral("Анализ BPM: 0 из 3"));
    QTest::mouseClick(&stop(), Qt::LeftButton);
    clock.advance(async::seconds(1));
    EXPECT_EQ(work(), QStringLiteral("Определение тональности: 0 из 3"));
    EXPECT_FALSE(store->tempo().isQueueing());
    QTest::mouseClick(&stop(), Qt::LeftButton);
    EXPECT_EQ(work(), QString());
}

TEST_F(MessagesTest, WritesComeBeforeReads)
{
    const QList<Track> tracks = showRows(3);
    store->imports().importURLs({file(QStringLiteral("a.mp3")), file(QStringLiteral("b.mp3"))}, {});
    while (!store->board().first() && executor.runOne()) {
    }
    ASSERT_EQ(work(), QStringLiteral("Чтение тегов: 0 из 2"));
    write(tracks);
    EXPECT_EQ(work(), QStringLiteral("Запись тегов: 0 из 3"));
    store->tagWriting().saver().cancelBatches();
    settle();
    EXPECT_EQ(work(), QString());
}
