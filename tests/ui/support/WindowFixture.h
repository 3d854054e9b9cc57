#pragma once

#include "support/FakeAudio.h"
#include "support/FakeDashboard.h"
#include "support/StoreFixture.h"

#include "WaveformScrubber/WaveformCache.h"
#include "ui/controls/ThemeButton.h"
#include "ui/sections/SectionView.h"
#include "ui/theme/Theme.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/tracks/TrackTable.h"
#include "ui/window/MainWindow.h"

#include <QTest>

/// The whole window on a store with made-up rows.
class WindowFixture : public StoreFixture {
protected:
    WindowFixture();
    ~WindowFixture() override;

    /// Shows the window and lets it settle.
    void show();
    /// Lets posted events and background jobs run.
    void turn();
    /// Tracks "00", "01" … of one folder, in the playlist.
    static QList<Track> rows(int count);
    /// A track with every field filled in. \param artwork bytes of a picture; may be empty.
    static Track fullTrack(const QString& name, const QByteArray& artwork = {});
    /// A PNG of one colour.
    static QByteArray picture(QRgb colour, QSize size = {40, 40});
    TrackTable& table(LibraryTab tab = LibraryTab::Playlist);
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
};
