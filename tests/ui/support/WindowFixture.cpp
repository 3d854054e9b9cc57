#include "support/WindowFixture.h"

#include "async/MainQueue.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QWheelEvent>

WindowFixture::WindowFixture()
    : waveforms(clock, executor, folder.filePath(QStringLiteral("waveforms")),
                [this](const QUrl& url, LowImpact, const std::stop_token&) {
                    extracted.append(url);
                    return extract ? extract(url) : std::vector<float>(kEnvelopeSampleCount, 0.5F);
                })
{
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    executor.runAll(); // the sweep of the cache, so that tests count their own jobs
    window = std::make_unique<MainWindow>(WindowServices{*store, dashboard, player, audio, executor, clock, waveforms,
                                                         [](const QUrl&) { return QByteArray(); },
                                                         [this](const QUrl& url) {
                                                             inventoryURLs.append(url);
                                                             return inventory;
                                                         }});
}

WindowFixture::~WindowFixture()
{
    window.reset();
    player.stopAndClear();
    settle();
    clock.advance(async::seconds(60));
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
}

void WindowFixture::show()
{
    window->show();
    window->activateWindow();
    static_cast<void>(QTest::qWaitForWindowActive(window.get()));
    turn();
}

QList<Track> WindowFixture::showRows(int count)
{
    const QList<Track> tracks = rows(count);
    fill(tracks);
    show();
    return tracks;
}

void WindowFixture::open(LibraryTab tab)
{
    dashboard.activateTab(tab);
    turn();
}

void WindowFixture::speakEnglish()
{
    VelmoraLocalization::setLanguage(AppLanguage::English);
    emit notifications.velmoraLanguageDidChange();
}

WindowContext WindowFixture::context()
{
    return {*store, dashboard, player, audio, window->theme(), thumbnails, waveforms, window->rowWaveforms(),
            clock,  executor};
}

void WindowFixture::turn()
{
    QCoreApplication::processEvents();
    async::MainQueue::drain();
    executor.runAll();
    QCoreApplication::processEvents();
}

QList<Track> WindowFixture::rows(int count)
{
    QList<Track> tracks;
    for (int i = 0; i < count; ++i)
        tracks.append(track(QStringLiteral("%1.mp3").arg(i, 2, 10, QChar(u'0'))));
    return tracks;
}

QList<Track> WindowFixture::coverRows(int count)
{
    QList<Track> tracks = rows(count);
    for (Track& each : tracks)
        each.setIsInCoverWorkspace(true);
    fill(tracks);
    show();
    return tracks;
}

Track WindowFixture::fullTrack(const QString& name, const QByteArray& artwork)
{
    Track result = track(name + QStringLiteral(".flac"));
    LoadedTrackMetadata metadata = TagTexts::read(TagTexts::of({{&AudioTags::title, name.toUtf8().constData()},
                                                                {&AudioTags::artist, "Nadia Volk"},
                                                                {&AudioTags::album, "#WARM UP"},
                                                                {&AudioTags::genre, "Melodic House & Techno"},
                                                                {&AudioTags::year, "2026"},
                                                                {&AudioTags::bpm, "121,6"},
                                                                {&AudioTags::musicalKey, "Am"}}),
                                                  ArtworkData::intern(artwork));
    metadata.duration = 3727;
    metadata.bitRate = 1'011'400;
    metadata.format = QStringLiteral("FLAC");
    result.apply(metadata, result.url(), result.metadataVersion());
    return result;
}

void WindowFixture::play(const Track& track)
{
    player.play(track);
    turn();
}

TrackTable& WindowFixture::table(LibraryTab tab)
{
    return static_cast<TrackTable&>(window->section(tab).list());
}

QModelIndex WindowFixture::cell(int row, TrackColumn column, LibraryTab tab)
{
    const TrackListModel& model = window->section(tab).model();
    return model.index(row, *model.columnOf(column));
}

ThemeButton* WindowFixture::button(QWidget& parent, const QString& text)
{
    for (ThemeButton* each : parent.findChildren<ThemeButton*>()) {
        if (each->text() == text || each->accessibleName() == text)
            return each;
    }
    return nullptr;
}

QAction* WindowFixture::action(const QMenu& menu, const QString& text)
{
    for (QAction* each : menu.actions()) {
        if (each->text().section(u'\t', 0, 0) == text)
            return each;
    }
    return nullptr;
}

bool WindowFixture::enter(QWidget& widget, const QMimeData& data)
{
    QDragEnterEvent event(widget.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

bool WindowFixture::drop(QWidget& widget, const QMimeData& data)
{
    QDropEvent event(QPointF(widget.rect().center()), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

void WindowFixture::wheel(QWidget& widget, QPoint pixels, QPoint angle, bool isInverted, Qt::ScrollPhase phase)
{
    const QPointF place = widget.rect().center();
    QWheelEvent event(place, widget.mapToGlobal(place), pixels, angle, Qt::NoButton, Qt::NoModifier, phase, isInverted);
    QCoreApplication::sendEvent(&widget, &event);
}
