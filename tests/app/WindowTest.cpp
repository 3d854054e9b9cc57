// The real program from end to end: a folder of real files is dropped on the window and worked with by mouse and keys.

#include "support/AppFixture.h"

#include "WaveformScrubber/cache/EnvelopeFile.h"
#include "WaveformScrubber/cache/EnvelopeFolder.h"
#include "WaveformScrubber/cache/EnvelopeKey.h"
#include "WaveformScrubber/shape/Envelope.h"
#include "app/AppPaths.h"
#include "app/ContentView.h"
#include "core/library/files/FileEvents.h"
#include "core/library/imports/Imports.h"
#include "core/library/order/Order.h"
#include "core/library/selection/Selection.h"
#include "support/Encoder.h"
#include "ui/sections/SectionView.h"
#include "ui/theme/Theme.h"
#include "ui/tracks/TrackDelegate.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/window/MainWindow.h"
#include "ui/window/Sidebar.h"
#include "ui/window/SidebarRow.h"

#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>

namespace {

/// A second of tone with tags.
bool encode(const QString& path, const char* title, const char* artist, const char* genre)
{
    return Encoder::encode(QStringLiteral("sine=440:d=1 -metadata title=%1 -metadata artist=%2 -metadata genre=%3")
                               .arg(QString::fromUtf8(title), QString::fromUtf8(artist), QString::fromUtf8(genre)),
                           path);
}

void drop(QWidget& target, const QList<QUrl>& urls)
{
    QMimeData data;
    data.setUrls(urls);
    const QPoint middle = target.rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent dropped(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &dropped);
}

class ProgramTest : public AppFixture {
protected:
    ProgramTest() { start(newPreferences()); }

    bool makeFiles()
    {
        QDir(folder.path()).mkpath(QStringLiteral("Сеты/глубже"));
        (void)file(QStringLiteral("broken.mp3"), "no music");
        return encode(folder.filePath(QStringLiteral("2.mp3")), "Два", "Ночь", "House") &&
               encode(folder.filePath(QStringLiteral("10.flac")), "Ten", "Duo", "Techno") &&
               encode(folder.filePath(QStringLiteral("Сеты/глубже/🎛 mix.wav")), "Mix", "Дом", "");
    }
    QStringList shownTitles(LibraryTab tab) const
    {
        QStringList titles;
        for (const Track& track : app->window().section(tab).model().rows())
            titles.append(track.displayTitle());
        return titles;
    }
    void click(QWidget& widget) { QTest::mouseClick(&widget, Qt::LeftButton); }
    void clickRow(QAbstractItemView& list, int row)
    {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(list.model()->index(row, 1)).center());
    }
};

} // namespace

TEST_F(ProgramTest, AFolderIsDroppedReadStarredAndUndone)
{
    if (QStandardPaths::findExecutable(QStringLiteral("ffmpeg")).isEmpty())
        GTEST_SKIP() << "ffmpeg is not installed";
    ASSERT_TRUE(makeFiles());
    app->open({});
    MainWindow& window = app->window();
    LibraryStore& library = app->store();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    SectionView& playlist = window.section(LibraryTab::Playlist);
    const QAbstractItemModelTester tester(&playlist.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);

    // Rows stand at once with what the names say; the tags come in behind.
    drop(window.sidebar().row(LibraryTab::Playlist), {QUrl::fromLocalFile(folder.path())});
    ASSERT_TRUE(waitFor([&] { return library.workspace().tracks().size() == 4; }));
    ASSERT_TRUE(waitFor([&] { return library.imports().metadataLoadOperationCount() == 0; }));
    ASSERT_TRUE(waitFor([&] { return shownTitles(LibraryTab::Playlist).contains(QStringLiteral("Mix")); }));
    EXPECT_EQ(shownTitles(LibraryTab::Playlist), QStringList({QStringLiteral("Два"), QStringLiteral("Ten"),
                                                              QStringLiteral("broken"), QStringLiteral("Mix")}));
    const Track two = playlist.model().track(0);
    EXPECT_EQ(two.tags().genre, QStringLiteral("House"));
    EXPECT_NEAR(two.duration(), 1, 0.1);
    EXPECT_GT(two.bitRate(), 0);
    EXPECT_EQ(playlist.model().track(1).bitDepth(), 16);
    EXPECT_EQ(playlist.model().track(2).duration(), 0) << "a text keeps what its name says";

    // A row is chosen with the mouse and starred with the key.
    clickRow(playlist.list(), 1);
    ASSERT_TRUE(waitFor([&] { return library.workspace().selectedID() == playlist.model().track(1).id(); }));
    QTest::keyClick(&playlist.list(), Qt::Key_F);
    ASSERT_TRUE(waitFor([&] { return library.order().favoriteTracks().size() == 1; }));
    click(window.sidebar().row(LibraryTab::Favorites));
    EXPECT_EQ(library.workspace().activeTab(), LibraryTab::Favorites);
    ASSERT_TRUE(waitFor([&] { return shownTitles(LibraryTab::Favorites) == QStringList({QStringLiteral("Ten")}); }));
    click(window.sidebar().row(LibraryTab::Covers));
    ASSERT_TRUE(waitFor([&] { return shownTitles(LibraryTab::Covers) == QStringList({QStringLiteral("Ten")}); }));

    // Undo empties both again.
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitFor([&] { return library.order().favoriteTracks().isEmpty(); }));
    ASSERT_TRUE(waitFor([&] { return shownTitles(LibraryTab::Covers).isEmpty(); }));
    QTest::keyClick(&window, Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(library.workspace().selectedID(), playlist.model().track(1).id()) << "the selection was remembered";
    ASSERT_TRUE(QApplication::focusWidget()) << "the keyboard goes on in the list";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_TRUE(waitFor([&] { return library.workspace().selectedID() == playlist.model().track(2).id(); }));
}

TEST_F(ProgramTest, TheDialogTakesFoldersToo)
{
    (void)file(QStringLiteral("Папка/Artist - Title.mp3"));
    app->open({});
    app->contentView().commands().perform(CommandID::AddFiles);
    auto* dialog = app->window().findChild<QFileDialog*>();
    ASSERT_TRUE(dialog);
    dialog->setDirectory(folder.path());
    auto* list = dialog->findChild<QAbstractItemView*>(QStringLiteral("treeView"));
    auto* add = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
    ASSERT_TRUE(list && add);
    ASSERT_TRUE(waitFor([&] { return list->model()->rowCount(list->rootIndex()) == 1; }));
    EXPECT_FALSE(add->isEnabled()) << "nothing is chosen yet";
    list->selectionModel()->select(list->model()->index(0, 0, list->rootIndex()),
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ASSERT_TRUE(waitFor([&] { return add->isEnabled(); }));
    add->click();
    ASSERT_TRUE(waitFor([&] { return app->store().workspace().tracks().size() == 1; }));
    EXPECT_EQ(app->store().workspace().tracks().at(0).tags().artist, QStringLiteral("Artist"));
}

TEST_F(ProgramTest, TheListKeepsItsPlaceWhileRowsAndTagsStreamIn)
{
    for (const auto& [name, count] : {std::pair(QStringLiteral("b"), 600), {QStringLiteral("a"), 300}}) {
        for (int i = 0; i < count; ++i)
            (void)file(QStringLiteral("%1/Artist - Title %2.mp3").arg(name).arg(i));
    }
    app->open({QUrl::fromLocalFile(folder.path() + QStringLiteral("/b"))});
    LibraryStore& library = app->store();
    QAbstractItemView& list = app->window().section(LibraryTab::Playlist).list();
    TrackListModel& model = app->window().section(LibraryTab::Playlist).model();
    ASSERT_TRUE(
        waitFor([&] { return model.rowCount() == 600 && library.imports().metadataLoadOperationCount() == 0; }));
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);

    const TrackID chosen = model.track(200).id();
    app->contentView().select({chosen}, chosen);
    list.scrollTo(model.index(200, 0), QAbstractItemView::PositionAtTop);
    waitFor([&] { return !library.order().playlistIsScrolling(); });
    const int yBefore = list.visualRect(model.index(200, 0)).top();
    app->contentView().receiveDroppedTracks({QUrl::fromLocalFile(folder.path() + QStringLiteral("/a"))},
                                            LibraryTab::Playlist);
    ASSERT_TRUE(
        waitFor([&] { return model.rowCount() == 900 && library.imports().metadataLoadOperationCount() == 0; }));
    EXPECT_EQ(resets.size(), 0);
    EXPECT_EQ(model.track(500).id(), chosen) << "300 rows came before it";
    EXPECT_EQ(list.visualRect(model.index(500, 0)).top(), yBefore) << "the row under the hand did not move";
    EXPECT_EQ(library.workspace().selectedIDs(), QSet<TrackID>({chosen}));
}

TEST_F(ProgramTest, DroppedFilesGetTheirWaveformsWithoutBeingPlayed)
{
    if (QStandardPaths::findExecutable(QStringLiteral("ffmpeg")).isEmpty())
        GTEST_SKIP() << "no encoder";
    ASSERT_TRUE(makeFiles());
    app->open({});
    app->window().resize(1440, 900);
    app->contentView().receiveDroppedTracks({QUrl::fromLocalFile(folder.path())}, LibraryTab::Playlist);
    SectionView& playlist = app->window().section(LibraryTab::Playlist);
    const int column = *playlist.model().columnOf(TrackColumn::Waveform);
    const QColor grey = app->window().theme().colours().text3;
    const auto isDrawn = [&](int row) {
        const QRect cell = playlist.list().visualRect(playlist.model().index(row, column));
        const QImage image = playlist.list().viewport()->grab(TrackDelegate::waveformRect(cell)).toImage();
        int count = 0;
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, image.height() / 2) == grey;
        return count > image.width() / 2;
    };
    const auto drawn = [&] {
        int count = 0;
        for (int row = 0; row < playlist.model().rowCount(); ++row)
            count += isDrawn(row);
        return count;
    };
    EXPECT_TRUE(waitFor([&] { return drawn() == 3; })) << "three can be read, one is no music: " << drawn();
    const QDir kept(AppPaths::waveformFolder());
    EXPECT_GE(kept.entryList(QDir::Files).size(), 3);
}

TEST_F(ProgramTest, EnvelopesGoAlongWithFilesThatTheStoreRewrites)
{
    app->open({});
    const QUrl url = file(QStringLiteral("a.mp3"), "old");
    const auto entry = [&](const FileStamp& stamp) {
        return EnvelopeFolder::entryPath(AppPaths::waveformFolder(), envelopeKey(url, stamp));
    };
    const FileStamp before = FileStamp::of(url).value();
    ASSERT_TRUE(EnvelopeFile::write(entry(before), std::vector<float>(kEnvelopeSampleCount, 0.5F)));
    const FileStamp after = FileStamp::of(file(QStringLiteral("a.mp3"), "new one")).value();
    app->store().fileEvents().tell({FileChange::Kind::Rewritten, url, url, before, after});
    EXPECT_TRUE(waitFor([&] { return QFile::exists(entry(after)); }));
}
