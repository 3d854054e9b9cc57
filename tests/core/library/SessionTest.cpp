#include "core/library/session/Session.h"

#include "core/library/session/SessionCoding.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "support/FailingFileCalls.h"
#include "support/SessionSamples.h"
#include "support/StoreFixture.h"

namespace {

/// A store that keeps its workspace, and starts of the program on what it kept.
class SessionTest : public StoreFixture {
protected:
    SessionTest() { start(); }
    ~SessionTest() override { store.reset(); }

    /// Another start of the program.
    void start()
    {
        store.reset();
        executor.dropAll();
        async::MainQueue::drain();
        preferences.playlistScrollOffset.remove();
        storage = std::make_unique<WorkspaceSessionStorage>(folder.filePath(QStringLiteral("data")),
                                                            WorkspaceSessionStorage::Options{.skipInTests = false});
        store = std::make_unique<LibraryStore>(services(*storage));
        store->playback().setPlayer(&player);
    }
    void startAndRestore()
    {
        start();
        store->session().restore();
        settle();
    }
    /// Until nothing is left, the save after the quiet included.
    void settle()
    {
        StoreFixture::settle();
        clock.advance(async::seconds(0.36));
        StoreFixture::settle();
    }
    /// Rows whose files exist.
    QList<Track> realRows(int count, int favorites = 0)
    {
        const QList<Track> rows = SessionSamples::withRows(count, favorites, folder.path()).tracks;
        SessionSamples::makeFiles(rows);
        return rows;
    }
    std::optional<SessionRecord> stored()
    {
        const auto bytes = storage->readSession();
        return bytes ? SessionCoding::decode(*bytes) : std::nullopt;
    }
    void putSession(const SessionRecord& record) { storage->write(SessionCoding::encode(record), 1); }
    int rowsStored() { return stored() ? static_cast<int>(stored()->tracks.size()) : -1; }
    QList<qint64> rowsOfCopies()
    {
        QList<qint64> counts;
        for (const auto& checkpoint : storage->archives())
            counts.append(SessionCoding::counts(*storage->readCheckpoint(checkpoint.path))->tracks);
        return counts;
    }
    Session& session() { return store->session(); }
    void put(Track::MetadataDestination list, const QList<Track>& rows) { workspace().setList(list, rows); }
    void convert(const Track& row) { workspace().setConversionItems({ConversionItem{freshID(), row.url(), {}, {}}}); }

    std::unique_ptr<WorkspaceSessionStorage> storage;
};

} // namespace

TEST_F(SessionTest, AStormOfChangesGivesOneSaveAfterQuiet)
{
    const QList<Track> rows = realRows(5);
    for (int count = 1; count <= 5; ++count) {
        fill(rows.first(count));
        clock.advance(async::seconds(0.34));
        EXPECT_EQ(executor.pendingCount(), 0);
    }
    clock.advance(async::seconds(0.02));
    EXPECT_EQ(executor.pendingCount(), 1);
    EXPECT_EQ(executor.jobs().front(), async::Priority::Utility);
    executor.runAll();
    EXPECT_EQ(rowsStored(), 5);
    EXPECT_EQ(clock.pendingCount(), 0);
}

TEST_F(SessionTest, EveryChangeThatIsKeptIsSaved)
{
    const QList<Track> rows = realRows(2);
    fill(rows);
    settle();
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"list", [&] { fill(rows.first(1)); }},
        {"analysis", [&] { put(Track::MetadataDestination::Analysis, rows); }},
        {"keys", [&] { put(Track::MetadataDestination::MusicalKey, rows); }},
        {"duplicates", [&] { put(Track::MetadataDestination::Duplicates, rows); }},
        {"roots", [&] { workspace().setDuplicateSearchRoots({rows[0].url()}); }},
        {"converter", [&] { convert(rows[0]); }},
        {"selection", [&] { store->selection().select({rows[0].id()}, rows[0].id()); }},
        {"section", [&] { store->selection().switchTo(LibraryTab::Analysis); }},
    };
    for (const auto& [name, change] : changes) {
        const QByteArray before = *storage->readSession();
        change();
        settle();
        EXPECT_NE(*storage->readSession(), before) << name;
    }
}

TEST_F(SessionTest, ALaterSaveOvertakesOneThatRuns)
{
    const QList<Track> rows = realRows(3);
    fill(rows.first(1));
    session().saveWorkspaceSessionNow();
    executor.runOne(); // encoded, its write waits
    fill(rows);
    session().saveWorkspaceSessionNow();
    executor.runAll();
    EXPECT_EQ(rowsStored(), 3);

    fill(rows.first(2));
    session().saveWorkspaceSessionNow();
    executor.runOne();
    fill({});
    session().saveWorkspaceSessionSynchronouslyForTermination();
    EXPECT_EQ(rowsStored(), 0);
    executor.runAll();
    EXPECT_EQ(rowsStored(), 0) << "the write that came late changes nothing";
}

TEST_F(SessionTest, AFailedSaveIsMadeUpForByTheNext)
{
    fill(realRows(2));
    {
        FailingFileCalls full;
        full.failingName = "write";
        full.error = ENOSPC;
        settle();
    }
    EXPECT_EQ(rowsStored(), -1);
    workspace().setSelection({}, workspace().tracks().at(0).id());
    settle();
    EXPECT_EQ(rowsStored(), 2);
}

TEST_F(SessionTest, TheNextStartShowsWhatWasThere)
{
    const QList<Track> rows = realRows(5, 2);
    fill(rows);
    put(Track::MetadataDestination::Analysis, rows.first(2));
    convert(rows[0]);
    workspace().setDuplicateSearchRoots({FileURL::fromPath(folder.path())});
    store->selection().select({rows[1].id(), rows[2].id()}, rows[2].id());
    store->selection().switchTo(LibraryTab::Favorites);
    store->selection().select({rows[0].id()}, rows[0].id());
    preferences.playlistScrollOffset.set(77);
    const QStringList shown = titles(store->order().playlistTracks());
    session().saveWorkspaceSessionSynchronouslyForTermination();

    start();
    session().restore();
    EXPECT_TRUE(workspace().isRestoringWorkspaceSession());
    session().saveWorkspaceSessionNow();
    session().saveWorkspaceSessionSynchronouslyForTermination();
    EXPECT_EQ(rowsStored(), 5) << "nothing is saved before the last session is back";
    settle();
    EXPECT_FALSE(workspace().isRestoringWorkspaceSession());
    ASSERT_EQ(workspace().tracks().size(), 5);
    EXPECT_EQ(ids(workspace().tracks().rows()), ids(rows));
    EXPECT_FALSE(workspace().tracks().at(0).isRead());
    EXPECT_EQ(titles(store->order().playlistTracks()), shown);
    EXPECT_EQ(workspace().analysisTracks().size(), 2);
    EXPECT_EQ(workspace().conversionItems().size(), 1);
    EXPECT_EQ(workspace().duplicateSearchRoots().size(), 1);
    EXPECT_EQ(workspace().activeTab(), LibraryTab::Favorites);
    EXPECT_EQ(workspace().selectedID(), rows[0].id());
    EXPECT_EQ(store->selection().selectionState(LibraryTab::Playlist).ids, (QSet<TrackID>{rows[1].id(), rows[2].id()}));
    EXPECT_EQ(readURLs.size(), 7) << "each row of each list is read again";
    EXPECT_EQ(waveformURLs.size(), 5) << "each file once";
    // Rows that come afterwards find their places among the restored ones.
    QList<Track> more = workspace().tracks().rows();
    more.append(track(folder.filePath(QStringLiteral("0a.mp3"))));
    fill(more);
    EXPECT_EQ(store->order().playlistTracks().size(), 6);
}

TEST_F(SessionTest, AnEndWhileFilesComeBackFromTheTrashCostsNoRow)
{
    const QList<Track> rows = realRows(6);
    fill(rows);
    store->removal().trashTracks(ids(rows));
    settle();
    history().undo();
    for (int file = 0; file < 3; ++file)
        executor.runOne();
    session().saveWorkspaceSessionSynchronouslyForTermination();
    EXPECT_EQ(rowsStored(), trashCan.restored.size() + 1) << "the file in hand may come yet";
}

TEST_F(SessionTest, ARepeatedRowCostsNoOther)
{
    const QList<Track> rows = realRows(8);
    putSession(SessionSamples::of(rows + QList<Track>{rows[3], rows[7]}));
    startAndRestore();
    EXPECT_EQ(titles(workspace().tracks().rows()), titles(rows));
}

TEST_F(SessionTest, MissingFilesAreSaidAndStayInACheckpoint)
{
    const QList<Track> rows = realRows(4, 1);
    fill(rows);
    put(Track::MetadataDestination::Analysis, rows.first(1));
    convert(rows[3]);
    store->selection().select({rows[0].id(), rows[1].id()}, rows[0].id());
    session().saveWorkspaceSessionSynchronouslyForTermination();
    const QByteArray before = *storage->readSession();
    QFile::remove(rows[0].url().toLocalFile());
    QFile::remove(rows[3].url().toLocalFile());

    startAndRestore();
    EXPECT_EQ(workspace().tracks().size(), 2);
    EXPECT_TRUE(workspace().analysisTracks().isEmpty());
    EXPECT_TRUE(workspace().conversionItems().isEmpty());
    EXPECT_EQ(workspace().selectedIDs(), QSet<TrackID>{rows[1].id()});
    EXPECT_EQ(workspace().selectedID(), rows[1].id()) << "a lone row is focused";
    EXPECT_EQ(session().leftOutCount(), 2);
    EXPECT_EQ(rowsStored(), 2);

    QList<Session::Checkpoint> offered;
    session().listCheckpoints([&](const QList<Session::Checkpoint>& listed) { offered = listed; });
    settle();
    EXPECT_EQ(session().leftOutCount(), 0);
    const auto named = std::ranges::find(offered, 4, &Session::Checkpoint::tracks);
    ASSERT_NE(named, offered.end());
    EXPECT_EQ(named->favorites, 1);
    EXPECT_EQ(*storage->readCheckpoint(named->url.toLocalFile()), before);

    // The disk is back: the copy comes with the next start, and what it replaces is kept.
    SessionSamples::makeFiles(rows);
    session().restoreFromCheckpoint(named->url);
    executor.runAll();
    EXPECT_EQ(statusText(), QStringLiteral("Копия откроется при следующем запуске"));
    fill(workspace().tracks().rows().first(1));
    settle();
    EXPECT_TRUE(storage->readPendingRestore()) << "saves of this run leave it alone";
    startAndRestore();
    EXPECT_EQ(workspace().tracks().size(), 4);
    EXPECT_FALSE(storage->readPendingRestore());
    EXPECT_TRUE(rowsOfCopies().contains(1));
}

TEST_F(SessionTest, ASessionThatCannotBeSavedIsToldUntilOneIs)
{
    const QString warning = QStringLiteral("Список не сохраняется: на диске нет места");
    const auto wait = [this](double seconds) {
        clock.advance(async::seconds(seconds));
        settle();
    };
    FailingFileCalls calls;
    calls.failingName = "rename";
    calls.error = ENOSPC;
    fill(realRows(2));
    settle();
    EXPECT_TRUE(statusText().isEmpty()) << "once may be a moment's trouble";
    session().saveWorkspaceSessionNow();
    executor.runOne(); // encoded, its write waits
    session().saveWorkspaceSessionNow();
    executor.runOne();
    EXPECT_EQ(statusText(), warning) << "the write counts that another overtakes";
    settle();
    store->status().showStatus(QStringLiteral("Обложка уже сохраняется"), {}, WorkspaceStatus::Tone::Neutral);
    EXPECT_NE(statusText(), warning);
    wait(3.7);
    EXPECT_EQ(statusText(), warning) << "it comes back when nothing else is said";
    calls.failingName = {};
    wait(5);
    EXPECT_FALSE(workspace().workspaceStatus());
    EXPECT_EQ(rowsStored(), 2) << "tried again without a change";
    EXPECT_EQ(clock.pendingCount(), 0);
}

TEST_F(SessionTest, PreferencesThatAreNotSavedAreTold)
{
    emit preferences.saved(false);
    EXPECT_EQ(statusText(), QStringLiteral("Настройки не сохраняются: диск не принял запись"));
    emit preferences.saved(true);
    EXPECT_FALSE(workspace().workspaceStatus());
}

TEST_F(SessionTest, ACopyThatCannotBeReadIsRefused)
{
    const QString path = storage->backupFolder() + QStringLiteral("/workspace-session-backup-A.json");
    storage->createCheckpoint("{\"tracks\":[]}", WorkspaceSessionStorage::Kind::Automatic);
    for (const QString& own : {path, storage->archives().first().path, storage->sessionFile()}) {
        session().restoreFromCheckpoint(QUrl::fromLocalFile(own));
        executor.runAll();
        EXPECT_EQ(statusText(), QStringLiteral("Копию не удалось прочитать"));
        EXPECT_FALSE(storage->readPendingRestore());
    }
    settle();
}

TEST_F(SessionTest, WhereASessionComesFrom)
{
    SessionRecord unknownSection = SessionSamples::of(realRows(3));
    unknownSection.activeTab = QStringLiteral("Новое");
    const QByteArray three = SessionCoding::encode(unknownSection);
    const QByteArray two = SessionCoding::encode(SessionSamples::of(realRows(2)));
    const QByteArray one = SessionCoding::encode(SessionSamples::of(realRows(1)));
    const struct {
        const char* name;
        QByteArray pending;
        QByteArray present;
        QByteArray legacy;
        int rows;
    } cases[] = {
        {"pending wins", three, two, one, 3},
        {"a pending one that does not decode stays", "{}", two, one, 2},
        {"corrupt file", {}, two.chopped(2), one, 1},
        {"nothing readable", {}, "[", "{", 0},
        {"nothing at all", {}, {}, {}, 0},
    };
    for (const auto& own : cases) {
        start();
        QDir(folder.filePath(QStringLiteral("data"))).removeRecursively();
        if (!own.pending.isNull())
            storage->writePendingRestore(own.pending);
        QDir().mkpath(folder.filePath(QStringLiteral("data")));
        if (!own.present.isNull())
            append(QUrl::fromLocalFile(storage->sessionFile()), own.present);
        preferences.store().set(QStringLiteral("velmora.workspaceSession.v1"), own.legacy);
        session().restore();
        settle();
        EXPECT_EQ(workspace().tracks().size(), own.rows) << own.name;
        EXPECT_FALSE(workspace().isRestoringWorkspaceSession()) << own.name;
        EXPECT_EQ(workspace().activeTab(), LibraryTab::Playlist) << own.name;
        EXPECT_EQ(storage->readPendingRestore().has_value(), own.pending == "{}") << own.name;
    }
}

TEST_F(SessionTest, RowsThatCameDuringTheRestoreWin)
{
    SessionRecord record = SessionSamples::of(realRows(3));
    putSession(record);
    storage->writePendingRestore(SessionCoding::encode(record));
    start();
    session().restore();
    const Track own = realRows(1).first();
    fill({own});
    settle();
    EXPECT_EQ(workspace().tracks().size(), 1);
    EXPECT_EQ(rowsStored(), 1);
    EXPECT_FALSE(storage->readPendingRestore());
    EXPECT_TRUE(rowsOfCopies().contains(3));
}

TEST_F(SessionTest, TempoAndKeysSurviveForTracksThatAreThere)
{
    SessionRecord record = SessionSamples::of(realRows(4));
    const QList<Track>& rows = record.tracks;
    const TrackID gone = freshID();
    const auto pathOf = [&](int row) { return FileURL::standardizedPath(rows[row].url()); };
    record.tempo.estimatedBPMByTrackID = {{gone, QStringLiteral("90")}};
    for (int row = 0; row < 4; ++row)
        record.tempo.estimatedBPMByTrackID.insert(rows[row].id(), QString::number(120 + row));
    for (int row = 0; row < 3; ++row)
        record.tempo.estimatedBPMConfidenceByTrackID.insert(rows[row].id(), 0.5);
    record.tempo.estimatedBPMByFile.insert(pathOf(0),
                                           *CachedBPMEstimate::make(rows[0].url(), QStringLiteral("120"), 0.5));
    CachedBPMEstimate outdated = *CachedBPMEstimate::make(rows[1].url(), QStringLiteral("121"), 0.5);
    outdated.modificationDate += 0.002;
    record.tempo.estimatedBPMByFile.insert(pathOf(1), outdated);
    record.musicalKeyAnalyses = {{rows[0].id(), {{3, MusicalKeyMode::Major}, 0.5, 0, {}}}, {gone, {}}};
    putSession(record);
    startAndRestore();
    const SessionRecord now = session().makeWorkspaceSession();
    EXPECT_EQ(now.tempo.estimatedBPMByTrackID, (QHash<TrackID, QString>{{rows[0].id(), QStringLiteral("120")},
                                                                        {rows[2].id(), QStringLiteral("122")},
                                                                        {rows[3].id(), QStringLiteral("123")}}));
    EXPECT_EQ(QSet<QString>(now.tempo.estimatedBPMByFile.keyBegin(), now.tempo.estimatedBPMByFile.keyEnd()),
              (QSet<QString>{pathOf(0), pathOf(2)}));
    EXPECT_EQ(now.musicalKeyAnalyses.keys(), QList<TrackID>{rows[0].id()});
}

TEST_F(SessionTest, OlderFilesKnowTheSelectionOfOneSection)
{
    SessionRecord record = SessionSamples::of(realRows(3));
    record.selectedIDs = {record.tracks[1].id(), freshID()};
    record.activeTab = rawValue(LibraryTab::Playlist);
    putSession(record);
    startAndRestore();
    EXPECT_EQ(workspace().selectedIDs(), QSet<TrackID>{record.tracks[1].id()});
    EXPECT_EQ(workspace().selectedID(), record.tracks[1].id());
}
