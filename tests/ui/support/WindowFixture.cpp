#include "support/WindowFixture.h"

#include "async/MainQueue.h"
#include "core/model/LoadedTrackMetadata.h"

#include <QApplication>
#include <QBuffer>
#include <QTest>

extern std::unique_ptr<QCoreApplication> (*makeTestApplication)(int&, char**);

namespace {

std::unique_ptr<QCoreApplication> makeWidgetApplication(int& argc, char** argv)
{
    return std::make_unique<QApplication>(argc, argv);
}

[[maybe_unused]] const bool kIsRegistered = (makeTestApplication = &makeWidgetApplication) != nullptr;

} // namespace

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
    for (int i = 0; i < count; ++i) {
        Track each = track(QStringLiteral("%1.mp3").arg(i, 2, 10, QChar(u'0')));
        each.setIsInPlaylist(true);
        tracks.append(each);
    }
    return tracks;
}

Track WindowFixture::fullTrack(const QString& name, const QByteArray& artwork)
{
    Track result = track(name + QStringLiteral(".flac"));
    LoadedTrackMetadata metadata;
    metadata.tags = {name,
                     QStringLiteral("Nadia Volk"),
                     QStringLiteral("#WARM UP"),
                     {},
                     QStringLiteral("Melodic House & Techno"),
                     QStringLiteral("2026"),
                     {},
                     {},
                     QStringLiteral("121,6"),
                     QStringLiteral("Am")};
    metadata.duration = 3727;
    metadata.bitRate = 1'011'400;
    metadata.format = QStringLiteral("FLAC");
    metadata.artworkData = ArtworkData::intern(artwork);
    result.apply(metadata, result.url(), result.metadataVersion());
    result.setIsInPlaylist(true);
    return result;
}

QByteArray WindowFixture::picture(QRgb colour, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
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
