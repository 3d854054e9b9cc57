#include "support/StoreFixture.h"

#include "async/MainQueue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

StoreFixture::StoreFixture()
{
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    useTrashCan(trashCan);
}

void StoreFixture::useTrashCan(TrashCan& can)
{
    m_trashCan = &can;
    store = std::make_unique<LibraryStore>(services());
    store->playback().setPlayer(&player);
}

LibraryServices StoreFixture::services()
{
    LibraryServices services{clock, executor, preferences, notifications, files, {}, {}, {}, {}, {}, {}, {}, {}, {}};
    services.readMetadata = [this](const QUrl& url, const AudioTags& fallback) {
        readURLs.append(url);
        return reader ? reader(url, fallback) : std::nullopt;
    };
    services.analyzeBPM = [this](const QUrl& url, const BPMAnalysisMode& mode, const std::stop_token& stop) {
        ++tempoCalls;
        if (const std::optional<int> row = workspace().tracks().indexOfURL(url))
            tempoAsked.insert(workspace().tracks().at(*row).id());
        return analyzer ? analyzer(url, mode, stop)
                        : BPMAnalysisOutcome{BPMAnalysisOutcome::Case::PermanentFailure, {}};
    };
    services.bpmResourcesAreConstrained = [this] { return areResourcesConstrained; };
    services.preloadWaveforms = [this](const QList<QUrl>& urls) { waveformURLs.append(urls); };
    services.analyzeQuality = [this](const QSet<TrackID>& asked) { qualityAsked.unite(asked); };
    services.trashCan = m_trashCan;
    services.analyzeMusicalKey = [this](const QUrl& url, const std::stop_token&) {
        keyURLs.append(url);
        return keyOf ? keyOf(url) : std::nullopt;
    };
    return services;
}

StoreFixture::~StoreFixture()
{
    store.reset();
    executor.dropAll();
    async::MainQueue::drain();
}

Track StoreFixture::track(const QString& path)
{
    const QString full = path.startsWith(u'/') ? path : QStringLiteral("/music/") + path;
    Track track = Track::unread(FileURL::fromPath(full));
    track.setIsInPlaylist(true);
    return track;
}

Track StoreFixture::favorite(const QString& path)
{
    Track result = track(path);
    result.setIsFavorite(true);
    result.setIsInCoverWorkspace(true);
    return result;
}

QSet<TrackID> StoreFixture::ids(const QList<Track>& tracks)
{
    QSet<TrackID> result;
    for (const Track& track : tracks)
        result.insert(track.id());
    return result;
}

QUrl StoreFixture::file(const QString& relativePath)
{
    const QString path = folder.filePath(relativePath);
    QDir().mkpath(QFileInfo(path).path());
    QFile created(path);
    EXPECT_TRUE(created.open(QIODevice::WriteOnly));
    return FileURL::fromPath(path);
}

void StoreFixture::settle()
{
    async::MainQueue::drain();
    while (executor.pendingCount() > 0 || clock.nextDeadline()) {
        executor.runAll();
        // Status messages sleep for seconds: time moves on only for the pauses of the work itself.
        if (const auto next = clock.nextDeadline(); next && *next <= async::seconds(0.1))
            clock.advance(*next);
        else if (executor.pendingCount() == 0)
            break;
    }
}

QString StoreFixture::statusText() const
{
    const auto& status = store->workspace().workspaceStatus();
    return status ? status->message : QString();
}

QStringList StoreFixture::titles(const QList<Track>& tracks) const
{
    QStringList result;
    for (const Track& track : tracks)
        result.append(track.displayTitle());
    return result;
}
