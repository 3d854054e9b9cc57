#include "support/Machine.h"
#include "support/Pictures.h"
#include "support/WindowFixture.h"

#include "ui/covers/CoverAssignment.h"
#include "ui/covers/CoverChoiceCard.h"
#include "ui/covers/CoverGrid.h"
#include "ui/sections/SectionHeader.h"

#include <QClipboard>
#include <QMimeData>

class CoverAssignmentTest : public WindowFixture {
protected:
    CoverAssignmentTest()
    {
        tracks = coverRows(4);
        open(LibraryTab::Covers);
    }
    ~CoverAssignmentTest() override { QGuiApplication::clipboard()->clear(); }

    SectionView& section() { return window->section(LibraryTab::Covers); }
    CoverAssignment& covers() { return static_cast<CoverAssignment&>(*section().parts()); }
    CoverChoiceCard& card() { return covers().card(); }
    ThemeButton& main() { return section().header().mainButton(); }
    ThemeButton& cardButton(const QString& start)
    {
        for (ThemeButton* each : card().findChildren<ThemeButton*>()) {
            if (each->text().startsWith(start))
                return *each;
        }
        ADD_FAILURE() << "no button " << qPrintable(start);
        return main();
    }
    void choose(const QByteArray& image)
    {
        covers().choose();
        dashboard.imageChosen(image);
        turn();
    }
    void selectRows(int count)
    {
        QSet<TrackID> chosen;
        for (int i = 0; i < count; ++i)
            chosen.insert(tracks[i].id());
        workspace().setSelection(chosen, count > 0 ? std::optional(tracks[0].id()) : std::nullopt);
        turn();
    }
    bool drop(LibraryTab tab, const QMimeData& data) { return drop(*window->section(tab).list().viewport(), data); }
    bool drop(QWidget& target, const QMimeData& data)
    {
        enter(target, data);
        const bool isTaken = WindowFixture::drop(target, data);
        turn();
        return isTaken;
    }
    QUrl pictureFile(const QString& name) { return FileURL::fromPath(writeFile(folder.filePath(name), cover)); }

    QList<Track> tracks;
    QByteArray cover = Pictures::plain({700, 700}, 0xFF2040C0, "JPEG");
};

TEST_F(CoverAssignmentTest, AssigningTakesAPictureAndASelection)
{
    for (const bool hasPicture : {false, true}) {
        if (hasPicture)
            choose(cover);
        EXPECT_EQ(card().isVisible(), hasPicture);
        for (const int selected : {0, 1, 3}) {
            selectRows(selected);
            EXPECT_EQ(main().isEnabled(), hasPicture && selected > 0) << hasPicture << " " << selected;
            EXPECT_EQ(main().toolTip().isEmpty(), main().isEnabled()) << "a disabled button says what is missing";
        }
    }
    QTest::mouseClick(&main(), Qt::LeftButton);
    EXPECT_EQ(dashboard.assignedImage, cover);
    EXPECT_EQ(dashboard.last("assignArtwork").ids, ids(tracks.first(3)));
    QTest::mouseClick(&cardButton(QStringLiteral("Присвоить выбранным: 3")), Qt::LeftButton);
    EXPECT_EQ(dashboard.count("assignArtwork"), 2) << "the picture stays for further tracks";
    QTest::mouseClick(&cardButton(QStringLiteral("Убрать")), Qt::LeftButton);
    EXPECT_FALSE(card().isVisible());
    EXPECT_FALSE(main().isEnabled());
    EXPECT_EQ(dashboard.count("addFilesHere"), 0) << "adding files is in the menu here";
}

TEST_F(CoverAssignmentTest, WhatIsNoPictureIsRefusedAndThePresentOneStays)
{
    choose(cover);
    choose("no picture");
    EXPECT_EQ(statusText(), QStringLiteral("Не удалось подготовить выбранное изображение для обложки."));
    ASSERT_TRUE(covers().choice().picture());
    EXPECT_EQ(covers().choice().picture()->bytes, cover);
}

TEST_F(CoverAssignmentTest, TheCardSaysWhatThePictureIs)
{
    const auto jpeg = [](QSize size) { return Pictures::plain(size, 0xFF2040C0, "JPEG"); };
    const struct {
        QByteArray bytes;
        const char* words;  ///< with a bar between
        const char* absent; ///< may be empty
    } kCases[]{
        {jpeg({700, 700}), "700 × 700 · JPEG · |как JPEG", "500"},
        {Pictures::plain({500, 500}, 0xFF2040C0, "PNG"), "500 × 500 · PNG · |без изменений", "Меньше"},
        {jpeg({499, 499}), "Меньше 500", ""},
        {jpeg({900, 600}), "900 × 600|Не квадратное", ""},
        {Pictures::turned(jpeg({900, 600})), "600 × 900", ""},
        {Pictures::turned(jpeg({90, 60})), "60 × 90", ""},
        {Pictures::plain({600, 600}, 0xFF2040C0, "BMP"), "BMP|1,0 МБ|как JPEG", ""},
    };
    for (const auto& each : kCases) {
        choose(each.bytes);
        const QString said = card().accessibleDescription();
        for (const QString& word : QString::fromUtf8(each.words).split(u'|'))
            EXPECT_TRUE(said.contains(word)) << qPrintable(said);
        EXPECT_FALSE(*each.absent && said.contains(QString::fromUtf8(each.absent))) << qPrintable(said);
    }
    speakEnglish();
    EXPECT_TRUE(card().accessibleDescription().endsWith(QStringLiteral("Will be saved as JPEG")));
    EXPECT_EQ(main().text(), QStringLiteral("Assign to Selected"));
}

TEST_F(CoverAssignmentTest, PicturesThatAreNoneHaveNothingToShow)
{
    QByteArray cutOff = Pictures::plain({700, 700}, 0xFF2040C0, "PNG").first(50);
    const PictureSource kSources[]{QByteArray(), QByteArray("text"), cutOff, FileURL::fromPath(folder.path()),
                                   FileURL::fromPath(folder.filePath(QStringLiteral("gone.png")))};
    for (const PictureSource& source : kSources)
        EXPECT_FALSE(ChosenPicture::prepare(source).has_value());
}

TEST_F(CoverAssignmentTest, PicturesAreDroppedAndMusicIsStillImported)
{
    const QUrl song = FileURL::fromPath(QStringLiteral("/music/song.flac"));
    const QUrl image = pictureFile(QStringLiteral("cover.JPG"));
    const QUrl text = FileURL::fromPath(QStringLiteral("/music/notes.txt"));
    QImage pixels(600, 600, QImage::Format_RGB32);
    pixels.fill(Qt::red);
    const struct {
        LibraryTab tab;
        QList<QUrl> urls;
        QImage pixels;
        bool isImported, isChosen;
    } kCases[]{
        {LibraryTab::Covers, {song}, {}, true, false},
        {LibraryTab::Covers, {image}, {}, false, true},
        {LibraryTab::Covers, {text, image}, {}, false, true},
        {LibraryTab::Covers, {image, song}, {}, true, false},
        {LibraryTab::Covers, {}, pixels, false, true},
        {LibraryTab::Covers, {QUrl(QStringLiteral("https://example.org/a.jpg"))}, pixels, false, true},
        {LibraryTab::Covers, {text}, {}, false, false},
        {LibraryTab::Playlist, {image}, {}, false, false},
    };
    int number = 0;
    for (const auto& each : kCases) {
        SCOPED_TRACE(number++);
        dashboard.drops.clear();
        cardButton(QStringLiteral("Убрать")).click();
        QMimeData data;
        data.setUrls(each.urls);
        if (!each.pixels.isNull())
            data.setImageData(each.pixels);
        EXPECT_EQ(drop(each.tab, data), each.isImported || each.isChosen);
        EXPECT_EQ(dashboard.drops.size(), each.isImported ? 1 : 0);
        EXPECT_EQ(covers().choice().picture().has_value(), each.isChosen);
    }
}

TEST_F(CoverAssignmentTest, APictureDroppedOnTheCardReplacesTheOneShown)
{
    choose(Pictures::plain({600, 600}, 0xFFC02020, "JPEG"));
    QMimeData data;
    data.setUrls({pictureFile(QStringLiteral("other.jpg"))});
    EXPECT_TRUE(drop(card(), data));
    EXPECT_EQ(covers().choice().picture()->bytes, cover);
}

TEST_F(CoverAssignmentTest, APictureIsPasted)
{
    const auto paste = [&] {
        QTest::keyClick(&window->activeSection().list(), Qt::Key_V, Qt::ControlModifier);
        turn();
    };
    QGuiApplication::clipboard()->setText(QStringLiteral("text"));
    paste();
    EXPECT_EQ(statusText(), QStringLiteral("В буфере обмена нет изображения"));
    EXPECT_FALSE(covers().choice().picture());

    auto* exact = new QMimeData;
    exact->setData(QStringLiteral("image/jpeg"), cover);
    QGuiApplication::clipboard()->setMimeData(exact);
    dashboard.activateTab(LibraryTab::Playlist);
    paste();
    EXPECT_FALSE(covers().choice().picture()) << "in other sections it is no command";
    dashboard.activateTab(LibraryTab::Covers);
    paste();
    ASSERT_TRUE(covers().choice().picture());
    EXPECT_EQ(covers().choice().picture()->bytes, cover) << "the file's own bytes, not its pixels anew";
}

TEST_F(CoverAssignmentTest, TheProgramsEventsDoTheSame)
{
    emit notifications.velmoraChooseCoverArtwork();
    EXPECT_EQ(dashboard.count("chooseArtwork"), 1);
    emit notifications.velmoraApplyCoverArtwork();
    EXPECT_EQ(statusText(), QStringLiteral("Сначала выберите изображение"));
    dashboard.imageChosen(cover);
    turn();
    emit notifications.velmoraApplyCoverArtwork();
    EXPECT_EQ(statusText(), QStringLiteral("Выберите треки"));
    EXPECT_EQ(dashboard.count("assignArtwork"), 0);
    selectRows(2);
    emit notifications.velmoraApplyCoverArtwork();
    EXPECT_EQ(dashboard.last("assignArtwork").ids, ids(tracks.first(2)));
}

TEST_F(CoverAssignmentTest, CoversThatAreBeingWrittenAreVeiled)
{
    auto& grid = static_cast<CoverGrid&>(section().list());
    const auto seen = [&](int row) {
        const QRect cell = grid.visualRect(grid.model()->index(row, 0));
        return grid.viewport()->grab(cell).toImage();
    };
    const QImage first = seen(0);
    const QImage second = seen(1);
    workspace().setArtworkWritingIDs({tracks[1].id()});
    EXPECT_EQ(seen(0), first);
    EXPECT_NE(seen(1), second);
    workspace().setArtworkWritingIDs({});
    EXPECT_EQ(seen(1), second);
}
