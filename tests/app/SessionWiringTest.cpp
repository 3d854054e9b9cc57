// The workspace over several starts of the whole program.

#include "support/AppFixture.h"

#include "ui/controls/ThemeButton.h"
#include "ui/sections/SectionView.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/window/MainWindow.h"

#include <QMenu>

namespace {

class SessionWiringTest : public AppFixture {
protected:
    /// A start of the program, with files handed over by the desktop.
    void start(const QList<QUrl>& files = {})
    {
        AppFixture::start(newPreferences(), std::make_unique<WorkspaceSessionStorage>(
                                                folder.filePath(QStringLiteral("data")),
                                                WorkspaceSessionStorage::Options{.skipInTests = false}));
        app->open(files);
    }
    bool waitForRows(int count)
    {
        return waitFor([&] { return workspace().tracks().size() == count; });
    }
    ThemeButton* restoreLink()
    {
        for (ThemeButton* button : app->window().findChildren<ThemeButton*>()) {
            if (button->text() == QStringLiteral("Вернуть из копии…"))
                return button;
        }
        return nullptr;
    }
};

} // namespace

TEST_F(SessionWiringTest, TheNextStartShowsTheRowsAndTakesFilesOnTop)
{
    start({file(QStringLiteral("a.mp3")), file(QStringLiteral("b.mp3"))});
    ASSERT_TRUE(waitForRows(2));
    workspace().switchTo(LibraryTab::Covers, {}, std::nullopt);
    quit();

    start({file(QStringLiteral("c.mp3"))});
    ASSERT_TRUE(waitForRows(3)) << "the file that opened the program does not push the last session out";
    app->openAgain({file(QStringLiteral("d.mp3"))});
    ASSERT_TRUE(waitForRows(4));
    quit();

    start();
    ASSERT_TRUE(waitForRows(4));
    EXPECT_EQ(app->window().section(LibraryTab::Playlist).model().rowCount(), 4);
}

TEST_F(SessionWiringTest, AnEndBeforeTheRestoreLosesNothing)
{
    start({file(QStringLiteral("a.mp3"))});
    ASSERT_TRUE(waitForRows(1));
    quit();
    for (int round = 0; round < 20; ++round) {
        start();
        if (round % 2 == 1)
            QCoreApplication::processEvents();
        quit();
    }
    start();
    EXPECT_TRUE(waitForRows(1));
}

TEST_F(SessionWiringTest, TheStatusLineOffersCopiesWhenFilesAreGone)
{
    start({file(QStringLiteral("a.mp3")), file(QStringLiteral("b.mp3"))});
    ASSERT_TRUE(waitForRows(2));
    quit();
    QFile::remove(folder.filePath(QStringLiteral("b.mp3")));
    start();
    ASSERT_TRUE(waitFor([&] { return !workspace().isRestoringWorkspaceSession(); }));
    ASSERT_EQ(workspace().tracks().size(), 1);
    ThemeButton* const link = restoreLink();
    ASSERT_TRUE(link && link->isVisible());
    QTest::mouseClick(link, Qt::LeftButton);
    QMenu* menu = nullptr;
    ASSERT_TRUE(
        waitFor([&] { return (menu = app->window().findChild<QMenu*>(QStringLiteral("checkpoints"))) != nullptr; }));
    EXPECT_FALSE(link->isVisible());
    QAction* copy = nullptr;
    for (QAction* action : menu->actions()) {
        if (action->text().contains(QStringLiteral("2 трека")))
            copy = action;
    }
    ASSERT_TRUE(copy);
    copy->trigger();
    menu->close();
    (void)file(QStringLiteral("b.mp3"));
    ASSERT_TRUE(waitFor(
        [&] { return QFile::exists(folder.filePath(QStringLiteral("data/workspace-session-restore-pending.json"))); }));
    quit();
    start();
    EXPECT_TRUE(waitForRows(2));
}

TEST_F(SessionWiringTest, AnEditMadeLastIsThereAtTheNextStart)
{
    start({file(QStringLiteral("a.mp3"))});
    ASSERT_TRUE(waitForRows(1));
    for (const char* genre : {"House", "Techno"}) { // the second while the first is being noted
        QList<Track> rows = workspace().tracks().rows();
        AudioTags tags = rows.first().tags();
        tags.genre = QLatin1StringView(genre);
        rows.first().edit(tags, TagField::Genre);
        workspace().setTracks(std::move(rows));
    }
    quit();
    start();
    EXPECT_TRUE(waitFor([&] {
        const TrackList& rows = workspace().tracks();
        return rows.size() == 1 && rows.at(0).editedFields() && rows.at(0).tags().genre == QLatin1StringView("Techno");
    }));
}
