#pragma once

#include "support/FakeAudio.h"
#include "support/FakeDashboard.h"
#include "support/Pictures.h"
#include "support/StoreFixture.h"

#include "WaveformScrubber/WaveformCache.h"
#include "ui/controls/ThemeButton.h"
#include "ui/sections/SectionView.h"
#include "ui/theme/Theme.h"
#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/tracks/TrackTable.h"
#include "ui/window/MainWindow.h"

#include <QMenu>
#include <QMimeData>
#include <QTest>

/// The whole window on a store with made-up rows.
class WindowFixture : public StoreFixture {
protected:
    WindowFixture();
    ~WindowFixture() override;

    /// Shows the window and lets it settle.
    void show();
    /// The same with so many rows in the playlist.
    QList<Track> showRows(int count);
    /// The same, and they are among the covers too.
    QList<Track> coverRows(int count);
    /// Goes to a section.
    void open(LibraryTab tab);
    void speakEnglish();
    /// Lets posted events and background jobs run.
    void turn();
    /// Tracks "00", "01" … of one folder, in the playlist.
    static QList<Track> rows(int count);
    /// A track with every field filled in. \param artwork bytes of a picture; may be empty.
    static Track fullTrack(const QString& name, const QByteArray& artwork = {});
    /// A PNG of one colour.
    static QByteArray picture(QRgb colour) { return Pictures::plain({40, 40}, colour, "PNG"); }
    TrackTable& table(LibraryTab tab = LibraryTab::Playlist);
    QModelIndex cell(int row, TrackColumn column, LibraryTab tab = LibraryTab::Playlist);
    /// The button with this text or name, if there is one.
    static ThemeButton* button(QWidget& parent, const QString& text);
    /// The choice of this text, whatever its key, if there is one.
    static QAction* action(const QMenu& menu, const QString& text);
    /// Drags onto a widget, or lets go over it. \return whether that was accepted.
    static bool enter(QWidget& widget, const QMimeData& data);
    static bool drop(QWidget& widget, const QMimeData& data);
    static void wheel(QWidget& widget, QPoint pixels, QPoint angle, bool isInverted = false,
                      Qt::ScrollPhase phase = Qt::NoScrollPhase);
    /// Plays a track and lets its file be opened.
    void play(const Track& track);

    FakeAudioSystem audio{clock};
    AudioPlayer player{AudioPlayer::Services{clock, executor, preferences, notifications, audio}};
    /// What the computation of an envelope gives; called by a job of the executor.
    std::function<std::vector<float>(const QUrl&)> extract;
    QList<QUrl> extracted;
    /// What a look through any file finds, and the files looked through.
    TagInventory inventory;
    QList<QUrl> inventoryURLs;
    WaveformCache waveforms;
    FakeDashboard dashboard{*store, player};
    std::unique_ptr<MainWindow> window;

    ThumbnailCache thumbnails{executor, {}};
    /// What menus and parts are built with.
    WindowContext context();
};
