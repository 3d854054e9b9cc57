#include "support/FileTimes.h"
#include "support/TempoFixture.h"

class TempoTest : public TempoFixture {
protected:
    /// Moves the modification date of a file by some seconds.
    static void touch(const Track& track, int seconds)
    {
        const QString path = track.url().toLocalFile();
        setModified(path, QFileInfo(path).lastModified().addSecs(seconds));
    }
};

TEST_F(TempoTest, AnAnalysisGivesTextConfidenceAlternativesAndARecordOfTheFile)
{
    const Track a = make(1).first();
    QList<bool> announced;
    const auto connection =
        QObject::connect(&tempo(), &Tempo::playlistBPMStatesChanged, &notifications, [&](const QSet<TrackID>& ids) {
            EXPECT_EQ(ids, StoreFixture::ids({a}));
            announced.append(isAnalyzing(a));
        });
    tempo().detectBPM(ids({a}));
    EXPECT_EQ(executor.jobs(), std::vector({async::Priority::Utility})) << "alone it need not be gentle";
    settle();
    EXPECT_EQ(announced, QList<bool>({true, false}));
    EXPECT_EQ(estimate(a), QStringLiteral("124"));
    EXPECT_EQ(tempo().confidence(a.id()), 0.75);
    ASSERT_EQ(tempo().alternatives(a.id()).size(), 1);
    EXPECT_EQ(kept(a), CachedBPMEstimate::make(a.url(), QStringLiteral("124"), 0.75));
    EXPECT_FALSE(tempo().isQueueing());

    QObject::disconnect(connection);
    outcomes[QStringLiteral("b.mp3")] = {success(127.5, 1)};
    const Track b = make(2).last();
    tempo().detectBPM(ids({b}));
    settle();
    EXPECT_EQ(estimate(b), QStringLiteral("128")) << "halves go up";
}

TEST_F(TempoTest, AFileThatChangesWhileItIsHeardLeavesNoRecord)
{
    const Track row = make(1).first();
    analyzer = [row, hear = analyzer](const QUrl& url, const BPMAnalysisMode& mode, const std::stop_token& stop) {
        touch(row, 7); // its copy ended just now
        return hear(url, mode, stop);
    };
    tempo().detectBPM(ids({row}));
    settle();
    EXPECT_EQ(estimate(row), QStringLiteral("124"));
    EXPECT_TRUE(tempo().tempoTables().estimatedBPMByFile.isEmpty()) << "the next start listens to the whole file";
}

TEST_F(TempoTest, OnlyWhoHasNoTempoIsAnalysed)
{
    QList<Track> tracks = make(8);
    tracks[0] = withTempo(tracks[0], "~");
    tracks[1] = withTempo(tracks[1], " \n");
    fill(tracks);
    TempoTables tables;
    tables.estimatedBPMByTrackID.insert(tracks[2].id(), QStringLiteral("90"));
    for (const int row : {3, 4, 5, 6}) {
        append(tracks[row].url(), "audio");
        tables.estimatedBPMByFile.insert(FileURL::standardizedPath(tracks[row].url()),
                                         *CachedBPMEstimate::make(tracks[row].url(), QStringLiteral("91"), 0.4));
    }
    append(tracks[4].url(), "x");
    touch(tracks[5], 1);
    QFile::remove(tracks[6].url().toLocalFile());
    tempo().restoreTempoTables(tables);
    tempo().detectBPM(ids(tracks.first(7)));
    settle();
    EXPECT_EQ(heard(), "befg");
    EXPECT_EQ(estimate(tracks[2]), QStringLiteral("90"));
    EXPECT_EQ(estimate(tracks[3]), QStringLiteral("91")) << "unchanged since";
    EXPECT_EQ(tempo().confidence(tracks[3].id()), 0.4);
    EXPECT_EQ(estimate(tracks[4]), QStringLiteral("124"));
}

TEST_F(TempoTest, AKnownFileCostsNoAnalysisAndShowsNoProgress)
{
    const QList<Track> tracks = make(1);
    TempoTables tables;
    tables.estimatedBPMByFile.insert(FileURL::standardizedPath(tracks[0].url()),
                                     *CachedBPMEstimate::make(tracks[0].url(), QStringLiteral("91"), 0.4));
    tempo().restoreTempoTables(tables);
    QSignalSpy progress(&store->board(), &WorkBoard::changed);
    tempo().detectBPM(ids(tracks));
    tempo().detectBPM(ids(tracks));
    settle();
    EXPECT_EQ(progress.size(), 0);
    EXPECT_EQ(tempoCalls, 0);
    EXPECT_EQ(tempo().tempoTables().estimatedBPMByFile, tables.estimatedBPMByFile) << "the record is not written anew";
}

TEST_F(TempoTest, NobodyIsQueuedTwiceAndTheSelectedTrackComesFirst)
{
    const QList<Track> tracks = make(5);
    workspace().setSelection({}, tracks[3].id());
    tempo().detectBPM(ids(tracks.mid(1)));
    tempo().detectBPM(ids(tracks));
    EXPECT_EQ(executor.pendingCount(), 2) << "two at once";
    settle();
    EXPECT_EQ(heard(), "dbcea");
}

TEST_F(TempoTest, WhatFailsIsTriedAgainBehindTheRestOrNot)
{
    const BPMAnalysisOutcome retryable{Case::RetryableFailure, {}};
    const BPMAnalysisOutcome permanent{Case::PermanentFailure, {}};
    const struct {
        QList<BPMAnalysisOutcome> outcomes; ///< of b, then successes
        const char* analysed;
        bool hasEstimate;
    } cases[] = {{{}, "abc", true},
                 {{retryable}, "abcb", true},
                 {{retryable, retryable}, "abcb", false},
                 {{permanent}, "abc", false},
                 {{BPMAnalysisOutcome()}, "abbc", true}}; // cancelled by itself
    for (const auto& test : cases) {
        SCOPED_TRACE(test.analysed);
        store->scheduler().setConstrained(true); // one at a time
        const QList<Track> tracks = make(3);
        outcomes = {{QStringLiteral("b.mp3"), test.outcomes}};
        tempo().detectBPM(ids(tracks));
        settle();
        EXPECT_EQ(heard(), test.analysed);
        EXPECT_EQ(estimate(tracks[1]).has_value(), test.hasEstimate);
        EXPECT_FALSE(tempo().isQueueing());
    }
}

TEST_F(TempoTest, AnAnalyserThatThrowsIsAFailureLikeOthers)
{
    analyzer = [](const QUrl&, const BPMAnalysisMode&, const std::stop_token&) -> BPMAnalysisOutcome {
        throw std::bad_alloc();
    };
    tempo().detectBPM(ids(make(1)));
    settle();
    EXPECT_EQ(tempoCalls, 2);
}

TEST_F(TempoTest, RowsThatGoOrGetATagLeaveTheQueue)
{
    const QList<Track> tracks = make(5);
    tempo().detectBPM(ids(tracks));
    EXPECT_TRUE(isAnalyzing(tracks[0]) && isAnalyzing(tracks[1]) && !isAnalyzing(tracks[2]));
    fill({withTempo(tracks[1], "100"), withTempo(tracks[2], "100"), tracks[4]});
    ASSERT_TRUE(tempo().bpmAnalysisProgress());
    EXPECT_EQ(tempo().bpmAnalysisProgress()->total, 3) << "rows that went are not counted, nor waited for";
    EXPECT_FALSE(isAnalyzing(tracks[0]));
    settle();
    EXPECT_EQ(heard(), "be");
    EXPECT_FALSE(estimate(tracks[1])) << "it got a tag while it was heard";
    EXPECT_FALSE(tempo().tempoTables().estimatedBPMByTrackID.contains(tracks[0].id())) << "gone while it was heard";
    EXPECT_FALSE(estimate(tracks[2]));
    EXPECT_TRUE(estimate(tracks[4]));
    EXPECT_FALSE(tempo().isQueueing());
}

TEST_F(TempoTest, RowsThatComeBackAreAnalysed)
{
    QList<Track> tracks = make(3, Track::TagSource::Read);
    tracks[1].setTagSource(Track::TagSource::Guessed);
    fill(tracks);
    tempo().detectBPM(ids(tracks));
    store->removal().removeTracksFromPlaylist(ids(tracks));
    settle();
    ASSERT_FALSE(tempo().isQueueing());
    analysed.clear();
    filesHold();
    undo();
    analysed.sort();
    EXPECT_EQ(heard(), "abc");
    EXPECT_TRUE(estimate(tracks[2]));
}

TEST_F(TempoTest, AnEditedTagIsBelieved)
{
    const struct {
        const char* name;
        bool isSelection;
        QString AudioTags::*field;
        const char* text;
        std::optional<QString> expected;
    } cases[] = {
        {"inspector", false, &AudioTags::bpm, "100", std::nullopt},
        {"selection", true, &AudioTags::bpm, "100", std::nullopt},
        {"emptied", false, &AudioTags::bpm, "", QStringLiteral("50")},
        {"another field", false, &AudioTags::title, "100", QStringLiteral("50")},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const Track row = withTempo(make(1, Track::TagSource::Read).first(), "99");
        fill({row});
        store->tempoChoices().setTempo({row.id()}, 50); // what is shown may stand beside a tag
        if (test.isSelection)
            typeForAll({row}, {{test.field, test.text}});
        else
            type(row, {{test.field, test.text}});
        EXPECT_EQ(estimate(row), test.expected);
        settle();
        EXPECT_EQ(estimate(row), test.expected);
    }
}

TEST_F(TempoTest, RowsThatLoseTheirTempoTagAreAnalysed)
{
    const auto empty = [this](const Track& row) { type(row, {{&AudioTags::bpm, ""}}); };
    const auto takeBack = [this](const Track& row) {
        typeForAll({row}, {{&AudioTags::bpm, "90"}});
        typeForAll({row}, {{&AudioTags::bpm, ""}});
    };
    const auto restore = [this](const Track& row) {
        files.originals.insert(row.url());
        filesHold();
        store->originalTags().restore({row.id()});
    };
    const std::pair<const char*, std::function<void(const Track&)>> cases[] = {
        {"emptied", empty}, {"emptied as a selection", takeBack}, {"original tags", restore}};
    for (const auto& [name, act] : cases) {
        SCOPED_TRACE(name);
        const Track row = withTempo(make(1, Track::TagSource::Read).first(), "99");
        fill({row});
        act(row);
        settle();
        EXPECT_TRUE(now(row).tags().bpm.isEmpty());
        EXPECT_EQ(estimate(row), QStringLiteral("124"));
    }
}

TEST_F(TempoTest, TheListAndTheReaderOfTagsTellWhatGoesOn)
{
    const QList<Track> tracks = make(4);
    store->order().setPlaylistScrolling(true);
    tempo().detectBPM(ids(tracks));
    EXPECT_EQ(executor.pendingCount(), 1);
    executor.runOne();
    EXPECT_TRUE(modes.last().lowImpact && modes.last().decoderLowPriority);
    store->order().setPlaylistScrolling(false);
    EXPECT_EQ(executor.pendingCount(), 2) << "the hand rests: a second one joins";
    settle();
    EXPECT_FALSE(modes.last().lowImpact);
    const QList<Track> others = make(4);
    store->imports().scheduleMetadataLoads({others[0]}, Track::MetadataDestination::Library);
    tempo().detectBPM(ids(others.sliced(1)));
    ASSERT_EQ(executor.pendingCount(), 2) << "a read and an analysis";
    executor.runOne();
    EXPECT_EQ(executor.pendingCount(), 2) << "all is read: two analyses";
    settle();
}

TEST_F(TempoTest, ProgressCountsThePlaylistElseTheBatch)
{
    QList<Track> tracks = make(4);
    tracks[3] = withTempo(tracks[3], "100");
    fill(tracks);
    EXPECT_FALSE(tempo().bpmAnalysisProgress());
    tempo().detectBPM(ids(tracks));
    EXPECT_EQ(tempo().bpmAnalysisProgress(), (WorkProgress{1, 4}));
    executor.runOne();
    EXPECT_EQ(tempo().bpmAnalysisProgress(), (WorkProgress{2, 4}));
    QList<Track> without = tracks;
    without[2].setIsInPlaylist(false);
    fill(without);
    EXPECT_EQ(tempo().bpmAnalysisProgress(), (WorkProgress{2, 3}));
    for (Track& track : without)
        track.setIsInPlaylist(false);
    fill(without);
    EXPECT_EQ(tempo().bpmAnalysisProgress(), (WorkProgress{1, 3})) << "of the batch";
    without[3].setIsInPlaylist(true);
    fill(without);
    EXPECT_EQ(tempo().bpmAnalysisProgress(), (WorkProgress{1, 3})) << "all rows of the playlist are done";
    settle();
    EXPECT_FALSE(tempo().bpmAnalysisProgress());
}

TEST_F(TempoTest, BurstsAreToldOncePerTenthOfASecondAndSortedAtTheEnd)
{
    const QList<Track> tracks = make(3);
    outcomes = {{QStringLiteral("a.mp3"), {success(130, 1)}}, {QStringLiteral("b.mp3"), {success(90, 1)}}};
    store->order().setTrackSortField(TrackSortField::BPM, LibraryTab::Playlist);
    QSignalSpy changes(&notifications, &Notifications::velmoraBPMDidChange);
    QSignalSpy orders(&workspace(), &Workspace::orderChanged);
    const auto order = [&] { return titles(store->order().playlistTracks()).join(u' '); };
    ASSERT_EQ(order(), QStringLiteral("c b a"));
    tempo().detectBPM(ids(tracks));
    executor.runOne();
    executor.runOne();
    EXPECT_EQ(changes.size(), 0);
    EXPECT_FALSE(store->board().first()) << "not published yet";
    clock.advance(async::seconds(0.1));
    EXPECT_EQ(changes.size(), 1);
    ASSERT_TRUE(store->board().first());
    EXPECT_EQ(store->board().first()->progress(), (WorkProgress{2, 3}));
    EXPECT_EQ(orders.size(), 0) << "a batch never moves the list";
    executor.runOne();
    clock.advance(async::seconds(0.1));
    EXPECT_EQ(changes.size(), 2);
    EXPECT_FALSE(store->board().first());
    EXPECT_EQ(orders.size(), 1);
    EXPECT_EQ(order(), QStringLiteral("a c b")) << "the fastest first";
    clock.advance(async::seconds(1));
    EXPECT_EQ(changes.size(), 2);
}

TEST_F(TempoTest, ManyRowsAreGoneThroughInSlicesAndInOrder)
{
    QList<Track> tracks;
    for (int i = 0; i < 3500; ++i)
        tracks.append(track(QStringLiteral("%1.mp3").arg(i, 4, 10, QLatin1Char('0'))));
    fill(tracks);
    tempo().detectBPM(ids(tracks));
    EXPECT_EQ(tempo().bpmAnalysisProgress()->total, 3500);
    settle();
    EXPECT_EQ(analysed.size(), 3500);
    EXPECT_TRUE(std::ranges::is_sorted(analysed));
}

TEST_F(TempoTest, WhatIsGivenUpIsNotAnalysed)
{
    const QList<Track> tracks = make(4);
    tempo().detectBPM(ids(tracks));
    executor.runOne();
    ASSERT_TRUE(isAnalyzing(tracks[1]));
    tempo().dropBPMQueue();
    EXPECT_FALSE(tempo().isQueueing());
    EXPECT_FALSE(isAnalyzing(tracks[1]));
    settle();
    EXPECT_TRUE(estimate(tracks[0])) << "what was found stays";
    for (const Track& other : tracks.sliced(1))
        EXPECT_FALSE(estimate(other));
    EXPECT_FALSE(store->board().first());
    tempo().detectBPM(ids(tracks)); // and it can be asked for again
    settle();
    EXPECT_TRUE(estimate(tracks[3]));
}

TEST_F(TempoTest, WhatWaitsForTheHandToRestIsGivenUpToo)
{
    for (const bool isGivenUp : {false, true}) {
        SCOPED_TRACE(isGivenUp);
        const QList<Track> tracks = make(3);
        filesHold();
        store->order().setPlaylistScrolling(true);
        store->imports().scheduleMetadataLoads(tracks, Track::MetadataDestination::Library);
        executor.runOne();
        executor.runOne();
        if (isGivenUp)
            tempo().dropBPMQueue();
        store->order().setPlaylistScrolling(false);
        settle();
        EXPECT_TRUE(now(tracks[2]).isRead());
        EXPECT_EQ(estimate(tracks[2]).has_value(), !isGivenUp);
    }
}

TEST_F(TempoTest, AStoreThatDiesDuringAnAnalysisIsLeftAlone)
{
    const QList<Track> tracks = make(3);
    bool wasStopped = false;
    analyzer = [&](const QUrl&, const BPMAnalysisMode&, const std::stop_token& stop) {
        if (store)
            store.reset(); // while the worker runs
        wasStopped = stop.stop_requested();
        return success(120, 1);
    };
    tempo().detectBPM(ids(tracks));
    executor.runOne();
    EXPECT_TRUE(wasStopped) << "the analysis learns of it";
    executor.runAll();
}
