#include "support/WindowFixture.h"

#include "ui/window/Banner.h"
#include "ui/window/Sidebar.h"
#include "ui/window/StatusStrip.h"

/// What the window tells and asks of writes to files.
class MessagesTest : public WindowFixture {
protected:
    static ThemeButton* button(QWidget& parent, const QString& text)
    {
        for (ThemeButton* each : parent.findChildren<ThemeButton*>()) {
            if (each->text() == text)
                return each;
        }
        return nullptr;
    }
    Banner& banner() { return *window->findChild<Banner*>(); }
    StatusStrip& strip() { return *window->findChild<StatusStrip*>(); }
    TagSaver& saver() { return store->tagWriting().saver(); }
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
        saver().writeBatch(items);
    }
};

TEST_F(MessagesTest, TheQuestionComesFirstAndStaysUntilItIsAnswered)
{
    const QString question = QStringLiteral("Что оставить в файлах при сохранении?");
    const struct {
        QString button;
        QString answer;
    } kCases[]{{QStringLiteral("Сохранять обложку и прочие поля"), QStringLiteral("keep")},
               {QStringLiteral("Только десять полей"), QStringLiteral("drop")}};
    show();
    for (const auto& each : kCases) {
        workspace().setNotice(QStringLiteral("Заметка"));
        workspace().setAskingWhatSavesKeep(true);
        workspace().setLastError(QStringLiteral("Диск полон"));
        EXPECT_EQ(banner().accessibleName(), question);
        ThemeButton* choice = button(banner(), each.button);
        EXPECT_FALSE(button(banner(), QStringLiteral("Закрыть"))->isVisible());
        for (Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space})
            QTest::keyClick(window->focusWidget(), key);
        EXPECT_EQ(banner().accessibleName(), question) << "a key that was meant for something else answers nothing";
        EXPECT_TRUE(workspace().isAskingWhatSavesKeep());
        EXPECT_TRUE(banner().rect().contains(choice->geometry()));

        QTest::mouseClick(choice, Qt::LeftButton);
        EXPECT_EQ(dashboard.last("answerWhatSavesKeep").text, each.answer);
        EXPECT_EQ(banner().accessibleDescription(), QStringLiteral("Диск полон"));
        EXPECT_FALSE(choice->isVisible());
        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        EXPECT_EQ(banner().accessibleDescription(), QStringLiteral("Заметка"));
        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        EXPECT_FALSE(banner().isVisible());
    }
}

TEST_F(MessagesTest, AMessageGivesTheFocusBackAndNamesWhatFailed)
{
    fill(rows(2));
    show();
    const struct {
        QString title;
        QString shown;
    } kCases[]{{{}, QStringLiteral("Не удалось сохранить теги")},
               {QStringLiteral("Не удалось открыть «a.mp3»"), QStringLiteral("Не удалось открыть «a.mp3»")}};
    table().setFocus();
    for (const auto& each : kCases) {
        workspace().setLastError(QStringLiteral("Диск полон"), each.title);
        EXPECT_EQ(banner().accessibleName(), each.shown);
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
    VelmoraLocalization::setLanguage(AppLanguage::English);
    emit notifications.velmoraLanguageDidChange();
    EXPECT_EQ(banner().accessibleName(), QStringLiteral("What should saving keep in files?"));
    EXPECT_TRUE(button(banner(), QStringLiteral("Only the Ten Fields"))->isVisible());
}

TEST_F(MessagesTest, WritesShowHowFarTheyAreAndCanBeStopped)
{
    const QList<Track> tracks = rows(3);
    fill(tracks);
    show();
    ThemeButton* stop = button(strip(), QStringLiteral("Остановить"));
    write({tracks[0]});
    EXPECT_FALSE(stop->isVisible()) << "a single file is written before anyone could read of it";
    settle();
    write(tracks);
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Запись тегов: 0 из 3"));
    ASSERT_TRUE(stop->isVisible());
    EXPECT_LE(stop->geometry().right(), strip().width());
    QTest::mouseClick(stop, Qt::LeftButton);
    settle();
    EXPECT_FALSE(stop->isVisible());
    EXPECT_EQ(strip().accessibleDescription(), QString());
}

TEST_F(MessagesTest, EditsThatAreNotInTheirFilesAreOfferedAndAskedAboutAtTheEnd)
{
    const QList<Track> tracks = rows(2);
    fill(tracks);
    show();
    reader = [](const QUrl&, const AudioTags& fallback) {
        LoadedTrackMetadata metadata;
        metadata.tags = fallback;
        return std::optional(metadata);
    };
    files.before = [](const FakeTagFiles::Call&) { throw TagFileError(QStringLiteral("disk full"), false); };
    AudioTags typed;
    typed.comment = QStringLiteral("prime");
    store->tagWriting().saveFields(typed, TagField::Comment, ids(tracks));
    settle();
    workspace().setLastError(std::nullopt);
    ThemeButton* again = button(strip(), QStringLiteral("Записать ещё раз: 2"));
    ASSERT_TRUE(again && again->isVisible());
    EXPECT_EQ(table()
                  .model()
                  ->index(0, 1)
                  .data(Qt::AccessibleTextRole)
                  .toString()
                  .count(QStringLiteral("Не записано в файл")),
              1);
    files.before = {};
    QTest::mouseClick(again, Qt::LeftButton);
    settle();
    EXPECT_FALSE(again->isVisible());

    files.before = [](const FakeTagFiles::Call&) { throw TagFileError(QStringLiteral("disk full"), false); };
    store->tagWriting().saveFields(AudioTags(), TagField::Comment, ids(tracks));
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

TEST_F(MessagesTest, MovesToTheTrashCanBeStopped)
{
    const QList<Track> tracks = rows(3);
    fill(tracks);
    show();
    ThemeButton* stop = button(strip(), QStringLiteral("Остановить"));
    store->removal().trashTracks(ids(tracks));
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Перемещение в Корзину: 0 из 3"));
    ASSERT_TRUE(stop->isVisible());
    QTest::mouseClick(stop, Qt::LeftButton);
    settle();
    EXPECT_LT(trashCan.asked.size(), 3) << "the file in hand is finished, the others stay";
    EXPECT_FALSE(stop->isVisible());
}

TEST_F(MessagesTest, TempoAnalysisIsToldWhileNothingElseIs)
{
    const QList<Track> tracks = rows(3);
    fill(tracks);
    show();
    store->tempo().detectBPM(ids(tracks));
    clock.advance(async::seconds(0.1));
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Анализ BPM: 0 из 3"));
    QTest::mouseClick(button(strip(), QStringLiteral("Остановить")), Qt::LeftButton);
    clock.advance(async::seconds(0.2));
    EXPECT_EQ(strip().accessibleDescription(), QString());
    write(tracks);
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Запись тегов: 0 из 3"));
    settle();
    clock.advance(async::seconds(0.1));
    EXPECT_EQ(strip().accessibleDescription(), QString());
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
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Определение тональности: 0 из 3"));
    store->playback().playbackStateDidChange(true, std::nullopt);
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Анализ BPM: 0 из 3")) << "keys wait for the end";
    dashboard.activateTab(LibraryTab::MusicalKey);
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Определение тональности: 0 из 3"));
    dashboard.activateTab(LibraryTab::Playlist);
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Анализ BPM: 0 из 3"));
    store->tempo().dropBPMQueue();
    clock.advance(async::seconds(1));
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Определение тональности: 0 из 3"));
    QTest::mouseClick(button(strip(), QStringLiteral("Остановить")), Qt::LeftButton);
    EXPECT_EQ(strip().accessibleDescription(), QString());
}

TEST_F(MessagesTest, WritesComeBeforeReads)
{
    const QList<Track> tracks = rows(3);
    fill(tracks);
    show();
    store->imports().importURLs({file(QStringLiteral("a.mp3")), file(QStringLiteral("b.mp3"))}, {});
    while (store->imports().metadataProgress().total == 0 && executor.runOne()) {
    }
    ASSERT_EQ(strip().accessibleDescription(), QStringLiteral("Чтение тегов: 0 из 2"));
    write(tracks);
    EXPECT_EQ(strip().accessibleDescription(), QStringLiteral("Запись тегов: 0 из 3"));
    saver().cancelBatches();
    settle();
    EXPECT_EQ(strip().accessibleDescription(), QString());
}
