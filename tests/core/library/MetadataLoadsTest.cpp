#include "support/StoreFixture.h"

class MetadataLoadsTest : public StoreFixture {
protected:
    MetadataLoadsTest()
    {
        reader = [](const QUrl& url, const AudioTags& fallback) -> std::optional<LoadedTrackMetadata> {
            if (url.path().contains(QLatin1StringView("broken")))
                return std::nullopt;
            LoadedTrackMetadata read = TagTexts::read(TagTexts::of({{&AudioTags::genre, "House"}}, fallback));
            read.duration = 60;
            read.format = QStringLiteral("MP3");
            return read;
        };
    }
    /// Sizes of the batches in which the results reach the list.
    QList<int> batches(const QList<Track>& tracks)
    {
        QList<int> sizes;
        const auto connection =
            QObject::connect(&notifications, &Notifications::velmoraTrackMetadataDidChange, &notifications,
                             [&](const QString&, const QSet<QUuid>& changed) { sizes.append(int(changed.size())); });
        fill(tracks);
        store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
        settle();
        QObject::disconnect(connection);
        return sizes;
    }
};

TEST_F(MetadataLoadsTest, ResultsComeInBatches)
{
    EXPECT_EQ(batches(numbered(120)), QList<int>({50, 50, 20}));
    EXPECT_EQ(batches(numbered(399)), QList<int>({50, 50, 50, 50, 50, 50, 50, 49}));
    EXPECT_EQ(batches(numbered(400)), QList<int>({40, 250, 110}));
    EXPECT_EQ(store->imports().metadataLoadOperationCount(), 0);
}

TEST_F(MetadataLoadsTest, ABatchIsOneChangeAndOneRevision)
{
    const QList<Track> tracks = numbered(30);
    fill(tracks);
    const int revision = workspace().playlistAnalysisRevision();
    QSignalSpy changes(&workspace(), &Workspace::tracksChanged);
    store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
    settle();
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(workspace().playlistAnalysisRevision(), revision + 1);
    EXPECT_EQ(tempoAsked, ids(tracks)) << "none of them has a tempo";
}

TEST_F(MetadataLoadsTest, TheFocusedTrackIsReadFirst)
{
    const QList<Track> tracks = numbered(5);
    fill(tracks);
    workspace().setSelection({}, tracks[3].id());
    store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
    settle();
    EXPECT_EQ(readURLs,
              QList<QUrl>({tracks[3].url(), tracks[0].url(), tracks[1].url(), tracks[2].url(), tracks[4].url()}));
}

TEST_F(MetadataLoadsTest, TwoReadsAtOnceOverAllLoads)
{
    const QList<Track> tracks = numbered(100);
    fill(tracks);
    workspace().setList(Track::MetadataDestination::Analysis,
                        {track(QStringLiteral("x.mp3")), track(QStringLiteral("y.mp3"))});
    store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
    store->imports().scheduleMetadataLoads(workspace().analysisTracks().rows(), Track::MetadataDestination::Analysis);
    async::MainQueue::drain();
    EXPECT_EQ(executor.pendingCount(), 2);
    EXPECT_EQ(store->imports().metadataLoadOperationCount(), 2);
    int rounds = 0;
    while (workspace().analysisTracks().at(0).duration() == 0 && ++rounds < 20) {
        executor.runOne();
        EXPECT_LE(executor.pendingCount(), 2);
    }
    EXPECT_LT(readURLs.size(), 70) << "a short load waits its turn, not for the end of a long one";
    settle();
    EXPECT_FALSE(store->board().first());
}

TEST_F(MetadataLoadsTest, FilesThatCannotBeReadKeepTheirFallback)
{
    const Track good = track(QStringLiteral("good.mp3"));
    const Track broken = track(QStringLiteral("Artist - broken.mp3"));
    fill({good, broken});
    store->imports().scheduleMetadataLoads({good, broken}, Track::MetadataDestination::Library);
    ASSERT_TRUE(store->board().first());
    EXPECT_EQ(store->board().first()->progress(), (WorkProgress{0, 2}));
    settle();
    EXPECT_EQ(now(good).duration(), 60);
    EXPECT_TRUE(now(broken).isSameValueAs(broken));
}

TEST_F(MetadataLoadsTest, AReadThatThrowsStopsNoOther)
{
    const auto good = reader;
    reader = [good](const QUrl& url, const AudioTags& fallback) {
        if (url.path().endsWith(QLatin1StringView("/7.mp3")))
            throw std::bad_alloc();
        return good(url, fallback);
    };
    const QList<Track> tracks = numbered(70);
    EXPECT_EQ(batches(tracks), QList<int>({50, 19}));
    EXPECT_EQ(now(tracks[7]).duration(), 0);
    EXPECT_EQ(store->imports().metadataLoadOperationCount(), 0);
}

TEST_F(MetadataLoadsTest, AnEditDuringTheReadStays)
{
    const Track edited = track(QStringLiteral("a.mp3"));
    fill({edited});
    store->imports().scheduleMetadataLoads({edited}, Track::MetadataDestination::Library);
    async::MainQueue::drain();
    fill({TagTexts::on(edited, {{&AudioTags::genre, "Techno"}})});
    settle();
    EXPECT_EQ(now(edited).tags().genre, QStringLiteral("Techno"));
    EXPECT_EQ(now(edited).duration(), 60) << "facts still arrive";
}

TEST_F(MetadataLoadsTest, NothingFillsInWhileTheListScrolls)
{
    const QList<Track> tracks = numbered(600);
    fill(tracks);
    QSet<TrackID> withoutTempo = ids(tracks);
    withoutTempo.subtract(ids(tracks.first(20)));
    QSet<QUrl> told;
    for (const Track& track : tracks.first(20))
        told.insert(track.url());
    reader = [told, read = reader](const QUrl& url, const AudioTags& fallback) {
        std::optional<LoadedTrackMetadata> metadata = read(url, fallback);
        metadata->tags.bpm = told.contains(url) ? QStringLiteral("128") : QStringLiteral(" ");
        return metadata;
    };
    store->order().setPlaylistScrolling(true);
    QSignalSpy changes(&workspace(), &Workspace::tracksChanged);
    store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
    executor.runAll();
    EXPECT_EQ(changes.size(), 0);
    EXPECT_EQ(tempoAsked, withoutTempo) << "of the others the list does not show yet that they have one";
    clock.advance(async::seconds(1));
    EXPECT_EQ(changes.size(), 0);

    const auto filled = [&] {
        return std::ranges::count_if(workspace().tracks(), [](const Track& t) { return t.duration() > 0; });
    };
    store->order().setPlaylistScrolling(false);
    clock.advance(async::seconds(0.089));
    EXPECT_EQ(filled(), 0);
    clock.advance(async::seconds(0.002));
    EXPECT_EQ(filled(), 250);
    store->order().setPlaylistScrolling(true);
    clock.advance(async::seconds(5));
    EXPECT_EQ(filled(), 250) << "scrolling again holds the rest back";
    store->order().setPlaylistScrolling(false);
    clock.advance(async::seconds(0.1));
    clock.advance(async::seconds(0.08));
    EXPECT_EQ(filled(), 600);
    clock.advance(async::seconds(0.1));
    executor.runAll();
    EXPECT_EQ(tempoAsked, withoutTempo);
    EXPECT_EQ(tempoCalls, 2 * withoutTempo.size()) << "asked for again when all was put in; none had been found";
}

TEST_F(MetadataLoadsTest, ReadingEndsThoughTheListScrollsAgainBehindTheLastResult)
{
    const QList<Track> tracks = numbered(20);
    fill(tracks);
    store->order().setPlaylistScrolling(true);
    store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
    executor.runAll();
    store->tempo().dropBPMQueue(); // nobody asks for the tempo of what was held back
    store->order().setPlaylistScrolling(false);
    clock.advance(async::seconds(0.1));
    EXPECT_FALSE(store->scheduler().circumstances().isReadingTags) << "all is put in";
    store->order().setPlaylistScrolling(true); // within the pause behind the last result
    store->order().setPlaylistScrolling(false);
    clock.advance(async::seconds(1));
    executor.runAll();
    EXPECT_FALSE(store->scheduler().circumstances().isReadingTags);
}

TEST_F(MetadataLoadsTest, AStoreThatDiesDuringAReadIsLeftAlone)
{
    const QList<Track> tracks = numbered(60);
    fill(tracks);
    store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
    async::MainQueue::drain();
    executor.runOne();
    store.reset();
    executor.runAll();
}
