#include "support/StoreFixture.h"

#include "support/Machine.h"

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
    const auto note = [this](const QSet<TrackID>& ids) { qualityAsked.unite(ids); };
    QObject::connect(&store->sending(), &Sending::qualityWanted, &store->workspace(), note);
    QObject::connect(&store->imports(), &Imports::qualityWanted, &store->workspace(), note);
}

LibraryServices StoreFixture::services(WorkspaceSessionStorage& storage)
{
    return {.clock = clock,
            .executor = executor,
            .preferences = preferences,
            .notifications = notifications,
            .tagFiles = files,
            .tagReader = fakes,
            .analyser = fakes,
            .envelopes = fakes,
            .trashCan = *m_trashCan,
            .sessionStorage = storage};
}

std::optional<LoadedTrackMetadata> FixtureServices::read(const QUrl& url, const AudioTags& fallbackTags)
{
    m_fixture.readURLs.append(url);
    return m_fixture.reader ? m_fixture.reader(url, fallbackTags) : std::nullopt;
}

BPMAnalysisOutcome FixtureServices::tempo(const QUrl& url, const BPMAnalysisMode& mode, std::stop_token stop)
{
    ++m_fixture.tempoCalls;
    if (const std::optional<int> row = m_fixture.workspace().tracks().indexOfURL(url))
        m_fixture.tempoAsked.insert(m_fixture.workspace().tracks().at(*row).id());
    return m_fixture.analyzer ? m_fixture.analyzer(url, mode, stop) : AudioAnalyser::tempo(url, mode, stop);
}

std::optional<MusicalKeyAnalysis> FixtureServices::musicalKey(const QUrl& url, std::stop_token)
{
    m_fixture.keyURLs.append(url);
    return m_fixture.keyOf ? m_fixture.keyOf(url) : std::nullopt;
}

async::Task<bool> FixtureServices::prepare(QUrl url, std::stop_token)
{
    m_fixture.waveformURLs.append(url);
    co_return true;
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

Track StoreFixture::read(const QString& path)
{
    Track result = favorite(path);
    result.setTagSource(Track::TagSource::Read);
    return result;
}

QList<Track> StoreFixture::numbered(int count)
{
    QList<Track> tracks;
    for (int number = 0; number < count; ++number)
        tracks.append(track(QStringLiteral("%1.mp3").arg(number)));
    return tracks;
}

void StoreFixture::filesHold(TagTexts::Texts texts)
{
    const AudioTags held = TagTexts::of(texts);
    reader = [held](const QUrl&, const AudioTags& fallback) {
        return TagTexts::read(TagFieldSet::merged(fallback, held, TagFieldSet::filled(held)));
    };
}

void StoreFixture::replace(const Track& track, TagTexts::Texts texts)
{
    QList<Track> rows = workspace().tracks().rows();
    Track& row = rows[*workspace().tracks().indexOf(track.id())];
    row = TagTexts::on(row, texts);
    fill(rows);
}

void StoreFixture::type(const Track& track, TagTexts::Texts texts)
{
    store->tagWriting().save(TagTexts::of(texts, now(track).tags()), track.id());
}

void StoreFixture::typeForAll(const QList<Track>& tracks, TagTexts::Texts texts)
{
    TagFields fields;
    for (const auto& told : texts) {
        for (const TagField field : TagFieldSet::list())
            fields.setFlag(field, fields.testFlag(field) || TagFieldSet::member(field) == told.first);
    }
    store->tagWriting().saveFields(TagTexts::of(texts), fields, ids(tracks));
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
    return FileURL::fromPath(writeFile(folder.filePath(relativePath)));
}

void StoreFixture::append(const QUrl& url, const QByteArray& bytes)
{
    QFile file(url.toLocalFile());
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write(bytes);
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

void StoreFixture::undo()
{
    history().undo();
    settle();
}

void StoreFixture::redo()
{
    history().redo();
    settle();
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
