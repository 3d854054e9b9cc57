#include "support/Machine.h"
#include "support/WindowFixture.h"

#include "ui/inspector/CoverWell.h"
#include "ui/inspector/Inspector.h"
#include "ui/inspector/InspectorField.h"
#include "ui/inspector/InspectorFields.h"
#include "ui/inspector/PinnedStrip.h"
#include "ui/inspector/SaveBar.h"
#include "ui/inspector/WrappedText.h"
#include "ui/sections/SectionBody.h"
#include "ui/sections/SectionHeader.h"
#include "ui/window/Sidebar.h"

#include <QApplication>
#include <QClipboard>
#include <QCompleter>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>

class InspectorTest : public WindowFixture {
protected:
    InspectorTest()
    {
        preferences.inspectorVisible.set(true);
        fill({first, second, other});
        show();
    }
    ~InspectorTest() override { QGuiApplication::clipboard()->clear(); }

    void select(const QList<Track>& tracks)
    {
        dashboard.select(ids(tracks), tracks.isEmpty() ? std::nullopt : std::optional(tracks.first().id()));
        turn();
    }
    Inspector& inspector() { return window->inspector(); }
    InspectorField& field(TagField field) { return inspector().fields().field(field); }
    QLineEdit& line(TagField tag) { return static_cast<QLineEdit&>(field(tag).editor()); }
    /// Types into a field as a user does.
    void type(TagField tag, const QString& text)
    {
        QWidget& editor = field(tag).editor();
        editor.setFocus();
        QTest::keyClick(&editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&editor, Qt::Key_Backspace);
        QTest::keyClicks(&editor, text);
    }
    /// Holds a picture over the well, then drops it. \return whether the well took it.
    bool drop(const QMimeData& data)
    {
        const bool isTaken = enter(inspector().well(), data) && WindowFixture::drop(inspector().well(), data);
        turn();
        return isTaken;
    }
    QUrl pictureFile()
    {
        return FileURL::fromPath(writeFile(folder.filePath(QStringLiteral("cover.png")), picture(qRgb(200, 30, 60))));
    }

    const Track first = fullTrack(QStringLiteral("Low Sun"), picture(qRgb(10, 20, 30)));
    const Track second = fullTrack(QStringLiteral("Untold"));
    const Track other = track(QStringLiteral("stream.aac"));
};

TEST_F(InspectorTest, EditsThatAreNotInTheirFilesAreSaid)
{
    const QString told = QStringLiteral("Не записано в файл: Жанр");
    Track edited = first;
    edited.edit(TagTexts::of({{&AudioTags::genre, "Dub"}}, first.tags()), TagField::Genre);
    fill({edited, second});
    const auto says = [&](const QString& text) {
        const QList<WrappedText*> texts = inspector().findChildren<WrappedText*>();
        return std::ranges::any_of(texts, [&](const WrappedText* each) { return each->text().contains(text); });
    };
    select({edited, second});
    EXPECT_TRUE(says(QStringLiteral("правки ещё не в файлах: 1")));
    select({edited});
    EXPECT_TRUE(says(told));
    const QModelIndex title = cell(*table().tracks().rowOf(edited.id()), TrackColumn::Title);
    EXPECT_TRUE(title.data(Qt::AccessibleTextRole).toString().contains(told));
    EXPECT_EQ(static_cast<TrackDelegate*>(table().itemDelegate())->tooltip(title, QRect(0, 0, 900, 52)), told);
    select({second});
    EXPECT_FALSE(says(told));
}

TEST_F(InspectorTest, ShowsTheSelectionAndHidesWithoutOne)
{
    select({first});
    EXPECT_EQ(line(TagField::Title).text(), QStringLiteral("Low Sun"));
    EXPECT_EQ(line(TagField::Genre).text(), QStringLiteral("Melodic House & Techno"));
    EXPECT_TRUE(field(TagField::Title).isVisible());
    select({first, second});
    EXPECT_EQ(line(TagField::Title).text(), QString());
    EXPECT_EQ(line(TagField::Title).placeholderText(), QStringLiteral("Разные значения"));
    EXPECT_EQ(line(TagField::Artist).text(), QStringLiteral("Nadia Volk"));
    select({});
    EXPECT_FALSE(field(TagField::Title).isVisible());
    EXPECT_FALSE(inspector().saveBar().isVisible());
}

TEST_F(InspectorTest, OpensAndClosesByKeyAndButtonInTheLibrarySectionsAlone)
{
    const auto toggle = [&] { QTest::keyClick(window.get(), Qt::Key_I, Qt::ControlModifier); };
    const int wide = table().width() + Inspector::kWidth;
    toggle();
    EXPECT_FALSE(inspector().isVisible());
    EXPECT_EQ(table().width(), wide) << "the list takes the room back";
    EXPECT_FALSE(preferences.inspectorVisible.get());
    toggle();
    EXPECT_TRUE(inspector().isVisible());
    for (LibraryTab tab : kAllLibraryTabs) {
        open(tab);
        const bool isLibrary = tab == LibraryTab::Playlist || tab == LibraryTab::Favorites || tab == LibraryTab::Covers;
        EXPECT_EQ(inspector().isVisible(), isLibrary) << qPrintable(rawValue(tab));
        EXPECT_EQ(window->section(tab).isAncestorOf(&inspector()), isLibrary);
    }
    toggle();
    EXPECT_TRUE(preferences.inspectorVisible.get()) << "where there is no panel the key does nothing";
}

TEST_F(InspectorTest, TheSmallestWindowHoldsListAndPanel)
{
    preferences.workspaceLayout.set(QStringLiteral("compact"));
    window->resize(900, 620);
    select({first});
    EXPECT_GE(table().width(), SectionBody::kListMinimum);
    EXPECT_LE(table().width(), 900 - Inspector::kWidth);
    EXPECT_EQ(table().horizontalScrollBar()->maximum(), 0) << "columns leave instead";
    emit window->sidebar().collapseToggled();
    turn();
    EXPECT_EQ(table().width(), SectionBody::kListMinimum) << "the panel lies over the rest";
    EXPECT_EQ(inspector().width(), Inspector::kWidth);
    EXPECT_EQ(inspector().mapTo(window.get(), QPoint(Inspector::kWidth, 0)).x(), 900);
}

TEST_F(InspectorTest, TabWalksTheFieldsAsTheyStand)
{
    select({first});
    type(TagField::Title, QStringLiteral("x")); // so that the buttons can be reached too
    inspector().well().setFocus();
    QPoint last(0, -1);
    QList<QWidget*> walked;
    for (TagField tag : InspectorFields::order()) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QWidget* focused = QApplication::focusWidget();
        ASSERT_EQ(focused, &field(tag).editor()) << static_cast<int>(tag);
        const QPoint place = field(tag).mapTo(&inspector(), QPoint());
        EXPECT_TRUE(place.y() > last.y() || (place.y() == last.y() && place.x() > last.x()));
        last = place;
        walked.prepend(focused);
    }
    for (QWidget* button : std::initializer_list<QWidget*>{
             &inspector().saveBar().link(), &inspector().saveBar().revert(), &inspector().saveBar().save()}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), button);
    }
    inspector().saveBar().link().setFocus();
    for (const QWidget* each : walked) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        EXPECT_EQ(QApplication::focusWidget(), each);
    }
}

TEST_F(InspectorTest, OnlyTouchedFieldsAreSaved)
{
    const std::pair<const char*, std::function<void()>> kWays[]{
        {"return", [&] { QTest::keyClick(&field(TagField::Year).editor(), Qt::Key_Return); }},
        {"key", [&] { QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier); }},
        {"button", [&] { inspector().saveBar().save().click(); }},
        {"comment", [&] { QTest::keyClick(&field(TagField::Comment).editor(), Qt::Key_Return); }},
    };
    select({first, second});
    for (const auto& [name, save] : kWays) {
        dashboard.calls.clear();
        EXPECT_FALSE(inspector().saveBar().save().isEnabled());
        save();
        EXPECT_EQ(dashboard.count("saveTags"), 0) << name << ": nothing was touched";
        type(TagField::Year, QStringLiteral("1999"));
        type(TagField::Comment, QStringLiteral("late"));
        EXPECT_TRUE(inspector().saveBar().save().isEnabled());
        save();
        ASSERT_EQ(dashboard.count("saveTags"), 1) << name;
        const FakeDashboard::Call call = dashboard.last("saveTags");
        EXPECT_EQ(call.ids, ids({first, second}));
        EXPECT_EQ(call.text, QString::number((TagFields(TagField::Year) | TagField::Comment).toInt()));
        EXPECT_EQ(dashboard.savedTags.year, QStringLiteral("1999"));
        EXPECT_EQ(dashboard.savedTags.comment, QStringLiteral("late"));
        EXPECT_FALSE(inspector().model().touched());
    }
}

TEST_F(InspectorTest, EscapeTakesAnEditBackThenLeaves)
{
    select({first});
    type(TagField::Title, QStringLiteral("Other"));
    type(TagField::Artist, QStringLiteral("Nobody"));
    EXPECT_TRUE(field(TagField::Artist).state().isTouched);
    QTest::keyClick(&line(TagField::Artist), Qt::Key_Escape);
    EXPECT_EQ(line(TagField::Artist).text(), QStringLiteral("Nadia Volk"));
    EXPECT_EQ(inspector().model().touched(), TagFields(TagField::Title));
    EXPECT_TRUE(line(TagField::Artist).hasFocus());
    QTest::keyClick(&line(TagField::Artist), Qt::Key_Escape);
    EXPECT_TRUE(table().hasFocus());
    inspector().saveBar().revert().click();
    EXPECT_EQ(line(TagField::Title).text(), QStringLiteral("Low Sun"));
    EXPECT_EQ(dashboard.count("saveTags"), 0);
}

TEST_F(InspectorTest, UndoIsTheFieldsOwnOnlyWhileItIsTouched)
{
    select({first});
    const auto takesUndo = [&] {
        QKeyEvent press(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
        press.ignore();
        QApplication::sendEvent(&line(TagField::Album), &press);
        return press.isAccepted();
    };
    type(TagField::Album, QStringLiteral("Set"));
    EXPECT_TRUE(takesUndo());
    inspector().save();
    turn();
    EXPECT_FALSE(takesUndo());
    QTest::keyClick(&line(TagField::Album), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(inspector().model().touched()) << "what was saved is not typed away";
}

TEST_F(InspectorTest, UnsavedEditsStayWithTheirTrack)
{
    select({first});
    type(TagField::Title, QStringLiteral("Other"));
    select({second});
    PinnedStrip& strip = inspector().pinnedStrip();
    EXPECT_TRUE(strip.isVisible());
    EXPECT_EQ(strip.text(), QStringLiteral("Правки для: Low Sun.flac — не сохранены"));
    EXPECT_EQ(line(TagField::Title).text(), QStringLiteral("Other"));
    preferences.inspectorVisible.set(false);
    preferences.inspectorVisible.set(true);
    dashboard.activateTab(LibraryTab::Analysis);
    dashboard.activateTab(LibraryTab::Playlist);
    select({second});
    speakEnglish();
    turn();
    EXPECT_EQ(line(TagField::Title).text(), QStringLiteral("Other"))
        << "neither closing nor leaving nor another language loses them";
    Track elsewhere = now(first);
    elsewhere.setIsInPlaylist(false);
    elsewhere.setIsInCoverWorkspace(true);
    fill({elsewhere, second, other});
    strip.save().click();
    EXPECT_EQ(dashboard.count("saveTags"), 0) << "the section does not show the row";
    EXPECT_TRUE(strip.isVisible());
    fill({first, second, other});
    select({second});
    strip.save().click();
    EXPECT_EQ(dashboard.last("saveTags").ids, ids({first}));
    EXPECT_FALSE(strip.isVisible());
    EXPECT_EQ(line(TagField::Title).text(), QStringLiteral("Untold"));
}

TEST_F(InspectorTest, ValuesComeInLiveAroundWhatIsTyped)
{
    select({first});
    type(TagField::Title, QStringLiteral("Oter"));
    line(TagField::Title).setCursorPosition(1);
    replace(first, {{&AudioTags::title, "Read"}, {&AudioTags::genre, "Techno"}});
    turn();
    EXPECT_EQ(line(TagField::Genre).text(), QStringLiteral("Techno"));
    EXPECT_EQ(line(TagField::Title).text(), QStringLiteral("Oter"));
    EXPECT_EQ(line(TagField::Title).cursorPosition(), 1);
    EXPECT_TRUE(line(TagField::Title).hasFocus());
}

TEST_F(InspectorTest, KeysOfTheProgramAreTextInAField)
{
    select({first});
    EXPECT_FALSE(workspace().isEditingMetadata());
    dashboard.calls.clear();
    for (TagField tag : {TagField::Album, TagField::Comment}) {
        type(tag, QStringLiteral("f m"));
        EXPECT_TRUE(workspace().isEditingMetadata());
        EXPECT_EQ(field(tag).text(), QStringLiteral("f m"));
        for (int key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Space})
            QTest::keyClick(&field(tag).editor(), static_cast<Qt::Key>(key));
    }
    for (const char* command : {"favorite", "playPause", "seekBack", "seekForward", "nextTrack"})
        EXPECT_EQ(dashboard.count(command), 0) << command;
    table().setFocus();
    EXPECT_FALSE(workspace().isEditingMetadata());
    line(TagField::Album).setFocus();
    preferences.inspectorVisible.set(false);
    EXPECT_FALSE(workspace().isEditingMetadata()) << "a field that is gone is not edited";
}

TEST_F(InspectorTest, APictureIsTakenFromADropAndFromTheClipboard)
{
    const QByteArray png = picture(qRgb(1, 2, 3));
    QMimeData encoded, file, audio;
    encoded.setData(QStringLiteral("image/png"), png);
    file.setUrls({first.url(), pictureFile()});
    audio.setUrls({first.url()});
    const struct {
        const QMimeData& data;
        bool isTaken;
        QRgb colour;
    } kCases[]{{encoded, true, qRgb(1, 2, 3)}, {file, true, qRgb(200, 30, 60)}, {audio, false, 0}};
    select({first, second, other});
    for (const auto& each : kCases) {
        dashboard.calls.clear();
        EXPECT_EQ(drop(each.data), each.isTaken);
        ASSERT_EQ(dashboard.count("assignArtwork"), each.isTaken ? 1 : 0);
        if (!each.isTaken)
            continue;
        EXPECT_EQ(dashboard.last("assignArtwork").ids, ids({first, second})) << "the stream takes no picture";
        EXPECT_EQ(QImage::fromData(dashboard.assignedImage).pixel(1, 1), each.colour);
    }
    dashboard.calls.clear();
    QGuiApplication::clipboard()->setImage(QImage::fromData(png));
    inspector().well().setFocus();
    QTest::keyClick(&inspector().well(), Qt::Key_V, Qt::ControlModifier);
    turn();
    EXPECT_EQ(dashboard.count("assignArtwork"), 1);
    line(TagField::Title).setFocus();
    QTest::keyClick(&line(TagField::Title), Qt::Key_V, Qt::ControlModifier);
    turn();
    EXPECT_EQ(dashboard.count("assignArtwork"), 2) << "a field has no use for a picture";
    QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
    line(TagField::Title).selectAll();
    QTest::keyClick(&line(TagField::Title), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(line(TagField::Title).text(), QStringLiteral("pasted"));
}

TEST_F(InspectorTest, UnsavedEditsHoldTheWindowBackOnce)
{
    select({first});
    type(TagField::Title, QStringLiteral("Other"));
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(statusText().startsWith(QStringLiteral("Правки тегов не сохранены")));
    type(TagField::Title, QStringLiteral("Another"));
    EXPECT_FALSE(window->close()) << "something new has been typed since";
    EXPECT_TRUE(window->close());
}

TEST_F(InspectorTest, AChosenPictureGoesToTheTracksOfTheMoment)
{
    select({first});
    inspector().well().click();
    ASSERT_EQ(dashboard.count("chooseArtwork"), 1);
    select({second}); // while the dialog is open
    dashboard.imageChosen("bytes");
    EXPECT_EQ(dashboard.last("assignArtwork").ids, ids({first}));
}

TEST_F(InspectorTest, WhileAPictureIsWrittenTheWellWaits)
{
    select({first});
    workspace().setArtworkWritingIDs({first.id()});
    EXPECT_EQ(inspector().well().mode(), CoverWell::Mode::Writing);
    QMimeData data;
    data.setData(QStringLiteral("image/png"), picture(qRgb(1, 2, 3)));
    EXPECT_FALSE(drop(data));
    EXPECT_EQ(statusText(), QStringLiteral("Подождите: обложка ещё сохраняется в файл"));
    inspector().well().click();
    EXPECT_EQ(dashboard.count("assignArtwork") + dashboard.count("chooseArtwork"), 0);
    workspace().setArtworkWritingIDs({});
    EXPECT_EQ(inspector().well().mode(), CoverWell::Mode::Open);
    EXPECT_TRUE(drop(data));
}

TEST_F(InspectorTest, AFormatThatIsNotWrittenIsOnlyShown)
{
    select({other});
    for (TagField tag : TagFieldSet::list())
        EXPECT_FALSE(field(tag).editor().isEnabled());
    EXPECT_EQ(inspector().saveBar().summary(), QStringLiteral("Теги в файлах этого формата изменить нельзя"));
    EXPECT_EQ(inspector().well().mode(), CoverWell::Mode::Closed);
    EXPECT_TRUE(inventoryURLs.isEmpty());
    select({first, other});
    type(TagField::Album, QStringLiteral("x"));
    inspector().saveBar().save().click();
    EXPECT_EQ(dashboard.last("saveTags").ids, ids({first})) << "of several the others are left alone";
}

TEST_F(InspectorTest, WhatASaveTakesIsReadForTheNewestSelectionOnce)
{
    inventory.hasPicture = true;
    inventory.unread.albumArtist = QStringLiteral("V.A.");
    dashboard.select(ids({first}), first.id());
    EXPECT_EQ(inspector().saveBar().summary(), QString());
    dashboard.select(ids({second}), second.id()); // before the first read has begun
    turn();
    EXPECT_EQ(inventoryURLs, QList<QUrl>({second.url()}));
    EXPECT_EQ(inspector().saveBar().summary(), QStringLiteral("Сохранение удалит обложку и 1 другое поле"));
    EXPECT_EQ(line(TagField::AlbumArtist).placeholderText(), QStringLiteral("V.A. — в файле"));
    select({first});
    select({second});
    EXPECT_EQ(inventoryURLs.size(), 2) << "known";
    inspector().saveBar().link().click();
    EXPECT_TRUE(preferences.keepsOtherTagEntries.get());
    EXPECT_TRUE(preferences.keepsOtherTagEntriesAsked.get());
    EXPECT_EQ(inspector().saveBar().summary(), QStringLiteral("Обложка и прочие поля файла останутся"));
    Track changed = now(second);
    changed.replaceTags(changed.tags());
    fill({first, changed, other});
    turn();
    EXPECT_EQ(inventoryURLs.size(), 3) << "the row has other tags now";
    workspace().setArtworkWritingIDs({changed.id()});
    workspace().setArtworkWritingIDs({});
    turn();
    EXPECT_GT(inventoryURLs.size(), 3) << "the file was written";
}

TEST_F(InspectorTest, GenresAreSuggested)
{
    preferences.genreList.set(QStringLiteral("Deep House\nTechno"));
    select({first});
    line(TagField::Genre).setFocus();
    QCompleter* completer = line(TagField::Genre).completer();
    ASSERT_TRUE(completer);
    completer->setCompletionPrefix(QStringLiteral("hou"));
    ASSERT_EQ(completer->completionCount(), 1);
    EXPECT_EQ(completer->currentCompletion(), QStringLiteral("Deep House"));
}
