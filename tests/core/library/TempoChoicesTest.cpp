#include "support/TempoFixture.h"

#include "async/MainQueue.h"

#include <QSignalSpy>

class TempoChoicesTest : public TempoFixture {
protected:
    TempoChoices& choices() { return store->tempoChoices(); }
    void estimates(const QHash<TrackID, QString>& texts)
    {
        TempoTables tables;
        tables.estimatedBPMByTrackID = texts;
        tempo().restoreTempoTables(tables);
    }
};

TEST_F(TempoChoicesTest, DoublingAndHalvingStayWithinWhatMusicHas)
{
    struct Row {
        const char* name;
        std::optional<QString> estimate;
        QString tag;
        double factor;
        std::optional<QString> result;
    };
    const Row cases[] = {
        {"estimate", QStringLiteral("90"), {}, 2, QStringLiteral("180")},
        {"half, rounded up", QStringLiteral("129"), {}, 0.5, QStringLiteral("65")},
        {"estimate before tag", QStringLiteral("90"), QStringLiteral("100"), 2, QStringLiteral("180")},
        {"number of the tag", std::nullopt, QStringLiteral("87,5 BPM"), 2, QStringLiteral("175")},
        {"nothing", std::nullopt, {}, 2, std::nullopt},
        {"no number", std::nullopt, QStringLiteral("~"), 2, std::nullopt},
        {"highest", QStringLiteral("200"), {}, 2, QStringLiteral("400")},
        {"too fast", QStringLiteral("201"), {}, 2, QStringLiteral("201")},
        {"lowest", QStringLiteral("40"), {}, 0.5, QStringLiteral("20")},
        {"too slow", QStringLiteral("38"), {}, 0.5, QStringLiteral("38")},
        {"hardly a number", QStringLiteral("1e999"), {}, 2, QStringLiteral("1e999")},
    };
    for (const Row& test : cases) {
        SCOPED_TRACE(test.name);
        const Track row = withTempo(make(1).first(), test.tag);
        fill({row});
        estimates(test.estimate ? QHash<TrackID, QString>{{row.id(), *test.estimate}} : QHash<TrackID, QString>());
        choices().scaleTempo(ids({row}), test.factor);
        EXPECT_EQ(estimate(row), test.result);
        settle();
    }
}

TEST_F(TempoChoicesTest, AChosenTempoStandsAgainstAnAnalysisUnderWay)
{
    const QList<Track> tracks = make(3);
    tempo().detectBPM(ids(tracks));
    ASSERT_TRUE(isAnalyzing(tracks[0]) && !isAnalyzing(tracks[2]));
    QSignalSpy states(&tempo(), &Tempo::playlistBPMStatesChanged);
    choices().setTempo(ids({tracks[0], tracks[2]}), 140);
    EXPECT_FALSE(isAnalyzing(tracks[0]));
    EXPECT_EQ(states.last().first().value<QSet<TrackID>>(), ids({tracks[0], tracks[2]})) << "one signal for all";
    choices().setTempo(ids({tracks[1]}), 19);
    choices().setTempo(ids({tracks[1]}), 401);
    settle();
    EXPECT_EQ(analysed, QStringList({QStringLiteral("b.mp3")}));
    EXPECT_EQ(estimate(tracks[0]), QStringLiteral("140"));
    EXPECT_EQ(estimate(tracks[2]), QStringLiteral("140"));
    EXPECT_EQ(tempo().confidence(tracks[2].id()), 1);
    EXPECT_EQ(estimate(tracks[1]), QStringLiteral("124")) << "no tempo of music was chosen for it";
    EXPECT_EQ(tempo().tempoTables().estimatedBPMByFile.value(FileURL::standardizedPath(tracks[0].url())),
              CachedBPMEstimate::make(tracks[0].url(), QStringLiteral("140"), 1))
        << "the file keeps it too";
}

TEST_F(TempoChoicesTest, ARowGivenUpAndAskedForAgainIsAnalysedOnce)
{
    const QList<Track> tracks = make(1);
    tempo().detectBPM(ids(tracks));
    choices().setTempo(ids(tracks), 140);
    tempo().detectAgain(ids(tracks));
    EXPECT_EQ(estimate(tracks[0]), QStringLiteral("140")) << "until another one is found";
    settle();
    EXPECT_EQ(analysed.size(), 1) << "the first one had not begun and never does";
    EXPECT_EQ(estimate(tracks[0]), QStringLiteral("124"));
    EXPECT_FALSE(tempo().isQueueing());
}

TEST_F(TempoChoicesTest, WithoutANewEstimateTheOldOneStays)
{
    const auto settles = [this](const QList<Track>&) { settle(); };
    const auto stops = [this](const QList<Track>&) { tempo().dropBPMQueue(); };
    const auto chooses = [this](const QList<Track>& rows) { choices().setTempo(ids(rows), 130); };
    struct Row {
        const char* name;
        std::function<void(const QList<Track>&)> act;
        QString estimate;
    };
    const Row cases[] = {{"the analysis fails", settles, QStringLiteral("140")},
                         {"it is stopped", stops, QStringLiteral("140")},
                         {"another one is chosen", chooses, QStringLiteral("130")}};
    for (const Row& test : cases) {
        SCOPED_TRACE(test.name);
        const QList<Track> tracks = make(1);
        choices().setTempo(ids(tracks), 140);
        settle();
        outcomes[QStringLiteral("a.mp3")] = {{Case::PermanentFailure, {}}};
        tempo().detectAgain(ids(tracks));
        EXPECT_TRUE(tempo().isQueueing());
        test.act(tracks);
        settle();
        EXPECT_EQ(estimate(tracks[0]), test.estimate);
        EXPECT_EQ(tempo().confidence(tracks[0].id()), 1);
        EXPECT_EQ(tempo().tempoTables().estimatedBPMByFile.value(FileURL::standardizedPath(tracks[0].url())),
                  CachedBPMEstimate::make(tracks[0].url(), test.estimate, 1));
        outcomes.clear();
    }
}

TEST_F(TempoChoicesTest, DetectingAgainReplacesWhatIsKnownOfRowAndFileButNotATag)
{
    QList<Track> tracks = make(2);
    choices().setTempo(ids(tracks), 140);
    settle();
    tracks[1] = withTempo(tracks[1], QStringLiteral("100"));
    fill(tracks);
    analysed.clear();
    tempo().detectAgain(ids(tracks));
    settle();
    EXPECT_EQ(analysed, QStringList({QStringLiteral("a.mp3")}));
    EXPECT_EQ(estimate(tracks[0]), QStringLiteral("124"));
    EXPECT_EQ(tempo().confidence(tracks[0].id()), 0.75);
    EXPECT_EQ(estimate(tracks[1]), QStringLiteral("140"));
}

TEST_F(TempoChoicesTest, TheTempoIsWrittenAsOneStepThatCanBeTakenBack)
{
    QList<Track> tracks = make(3);
    for (Track& track : tracks)
        track.setTagSource(Track::TagSource::Read);
    fill(tracks);
    TempoTables tables;
    tables.estimatedBPMByTrackID = {{tracks[0].id(), QStringLiteral("124")}, {tracks[1].id(), QStringLiteral("90.5")}};
    tables.estimatedBPMConfidenceByTrackID = {{tracks[0].id(), 0.25}};
    tempo().restoreTempoTables(tables);
    choices().writeTempo(ids(tracks));
    EXPECT_EQ(now(tracks[0]).tags().bpm, QStringLiteral("124"));
    EXPECT_EQ(now(tracks[1]).tags().bpm, QStringLiteral("91")) << "whole";
    EXPECT_TRUE(now(tracks[2]).tags().bpm.isEmpty());
    EXPECT_FALSE(estimate(tracks[0]) || estimate(tracks[1])) << "the tag is believed";
    EXPECT_TRUE(statusText().isEmpty()) << "no file holds it yet";
    settle();
    EXPECT_EQ(statusText(), QStringLiteral("Темп записан: 2"));
    EXPECT_EQ(files.calls.size(), 2);

    history().undo();
    EXPECT_TRUE(now(tracks[0]).tags().bpm.isEmpty());
    EXPECT_EQ(estimate(tracks[0]), QStringLiteral("124"));
    EXPECT_EQ(tempo().confidence(tracks[0].id()), 0.25);
    EXPECT_EQ(estimate(tracks[1]), QStringLiteral("90.5"));
    history().redo();
    EXPECT_EQ(now(tracks[1]).tags().bpm, QStringLiteral("91"));
    EXPECT_FALSE(estimate(tracks[1]));
    settle();
    EXPECT_EQ(tempoCalls, 0);

    history().clear();
    choices().writeTempo(ids(tracks));
    EXPECT_EQ(statusText(), QStringLiteral("Нет темпа для записи"));
    EXPECT_FALSE(history().canUndo());
}

TEST_F(TempoChoicesTest, WhatIsKnownOfAFileOutlastsTheProgramsOwnWrites)
{
    const auto retitle = [this](const Track& row) {
        AudioTags tags = now(row).tags();
        tags.title = QStringLiteral("title");
        store->tagWriting().save(tags, row.id());
    };
    const auto restore = [this](const Track& row) { store->originalTags().restore({row.id()}); };
    const auto change = [](const Track& row) { append(row, "other music"); };
    const auto changeAndRetitle = [&](const Track& row) {
        change(row);
        retitle(row);
    };
    struct Row {
        const char* name;
        std::function<void(const Track&)> act;
        bool fails;
        QString estimate; ///< of the next start
    };
    const Row cases[] = {
        {"a save", retitle, false, QStringLiteral("140")},
        {"two saves",
         [&](const Track& row) {
             retitle(row);
             settle();
             retitle(row);
         },
         false, QStringLiteral("140")},
        {"original tags", restore, false, QStringLiteral("140")},
        {"changed by others", change, false, QStringLiteral("124")},
        {"changed by others before a save", changeAndRetitle, false, QStringLiteral("124")},
        {"half a save", retitle, true, QStringLiteral("124")},
    };
    reader = readsNothing();
    for (const Row& test : cases) {
        SCOPED_TRACE(test.name);
        Track row = make(1).first();
        row.setTagSource(Track::TagSource::Read);
        fill({row});
        choices().setTempo({row.id()}, 140);
        settle();
        files.originals = {row.url()};
        files.before = [&](const FakeTagFiles::Call&) {
            append(row, "tag");
            if (test.fails)
                throw TagFileError(QStringLiteral("no room"), false);
        };
        test.act(row);
        settle();
        TempoTables kept;
        kept.estimatedBPMByFile = tempo().tempoTables().estimatedBPMByFile;
        tempo().restoreTempoTables(kept);
        tempo().detectBPM({row.id()});
        settle();
        EXPECT_EQ(estimate(row), test.estimate);
    }
    files.before = {};
}

TEST_F(TempoChoicesTest, TakingAWriteBackBringsTheRecordOfTheFileBack)
{
    files.before = [](const FakeTagFiles::Call& call) { append(Track::unread(call.write.url), "tag"); };
    Track row = make(1).first();
    row.setTagSource(Track::TagSource::Read);
    fill({row});
    choices().setTempo({row.id()}, 140);
    choices().writeTempo({row.id()}); // at once: nothing was kept for the file yet
    settle();
    history().undo();
    settle();
    EXPECT_EQ(now(row).tags().bpm, QString());
    EXPECT_EQ(estimate(row), QStringLiteral("140"));
    EXPECT_EQ(tempo().confidence(row.id()), 1);
    EXPECT_EQ(tempo().tempoTables().estimatedBPMByFile.value(FileURL::standardizedPath(row.url())),
              CachedBPMEstimate::make(row.url(), QStringLiteral("140"), 1));
    files.before = {};
}

TEST_F(TempoChoicesTest, RowsWhoseFileWasNotWrittenAreAsTheyWere)
{
    struct Row {
        const char* name;
        std::function<void(const QList<Track>&)> meanwhile;
        int fails;         ///< row whose file cannot be written
        const char* tags;  ///< in the end
        const char* shown; ///< estimates in the end
        const char* status;
    };
    const auto nothing = [](const QList<Track>&) {};
    const auto edit = [this](const QList<Track>& rows) {
        AudioTags tags;
        tags.bpm = QStringLiteral("99");
        store->tagWriting().saveFields(tags, TagField::Tempo, {rows[1].id()});
    };
    const auto stop = [this](const QList<Track>&) { store->tagWriting().saver().cancelBatches(); };
    const auto takeBack = [this](const QList<Track>&) { history().undo(); };
    const Row cases[] = {
        {"a file fails", nothing, 1, "124 80 125", "- 126 -", "Темп записан: 2 · пропущено: 1"},
        {"edited meanwhile", edit, 1, "124 99 125", "- - -", "Темп записан: 2 · пропущено: 1"},
        {"stopped", stop, -1, "124 80 -", "- 126 125", "Запись остановлена, в файлы не записано: 2"},
        {"taken back before the failure", takeBack, 1, "- 80 -", "124 126 125", "Отменено: Записать темп"},
    };
    const QString dash = QStringLiteral("-");
    for (const Row& test : cases) {
        SCOPED_TRACE(test.name);
        QList<Track> tracks = make(3);
        tracks[1] = withTempo(tracks[1], QStringLiteral("80"));
        for (Track& track : tracks)
            track.setTagSource(Track::TagSource::Read);
        fill(tracks);
        estimates({{tracks[0].id(), QStringLiteral("124")},
                   {tracks[1].id(), QStringLiteral("126")},
                   {tracks[2].id(), QStringLiteral("125")}});
        files.before = [url = test.fails < 0 ? QUrl() : tracks[test.fails].url()](const FakeTagFiles::Call& call) {
            if (call.write.url == url)
                throw TagFileError(QStringLiteral("no room"), false);
        };
        history().clear();
        store->status().showStatus(QStringLiteral("before"), StatusIcon::Info, WorkspaceStatus::Tone::Neutral);
        choices().writeTempo(ids(tracks));
        test.meanwhile(tracks);
        settle();
        QStringList tags;
        QStringList shown;
        for (const Track& track : tracks) {
            tags.append(now(track).tags().bpm.isEmpty() ? dash : now(track).tags().bpm);
            shown.append(estimate(track).value_or(dash));
        }
        EXPECT_EQ(tags.join(u' '), QString::fromUtf8(test.tags));
        EXPECT_EQ(shown.join(u' '), QString::fromUtf8(test.shown));
        EXPECT_EQ(statusText(), QString::fromUtf8(test.status));
    }
    files.before = {};
}

TEST_F(TempoChoicesTest, AChoiceIsAStepOfUndo)
{
    const QList<Track> tracks = make(4); // without anything, with an estimate, being analysed, with a tag
    fill({tracks[0], tracks[1], tracks[2], withTempo(tracks[3], QStringLiteral("129"))});
    TempoTables tables;
    tables.estimatedBPMByTrackID = {{tracks[1].id(), QStringLiteral("129")}};
    tables.estimatedBPMConfidenceByTrackID = {{tracks[1].id(), 0.25}};
    tempo().restoreTempoTables(tables);
    tempo().detectBPM(ids({tracks[2]}));
    const auto shown = [&] {
        QStringList texts;
        for (const Track& track : tracks)
            texts.append(estimate(track).value_or(QStringLiteral("-")));
        return texts.join(u' ').toStdString();
    };
    choices().scaleTempo(ids(tracks), 0.5);
    EXPECT_EQ(shown(), "- 65 - 65");
    async::MainQueue::drain();
    choices().scaleTempo(ids(tracks), 2);
    async::MainQueue::drain();
    choices().setTempo(ids(tracks), 100);
    EXPECT_EQ(shown(), "100 100 100 100");
    EXPECT_FALSE(tempo().isQueueing());
    history().undo();
    EXPECT_EQ(shown(), "- 130 - 130");
    EXPECT_TRUE(tempo().isQueueing()) << "the row that was queued is queued again";
    history().undo();
    history().undo();
    EXPECT_EQ(shown(), "- 129 - -") << "not 130, as doubling gave";
    EXPECT_EQ(tempo().confidence(tracks[1].id()), 0.25);
    EXPECT_FALSE(history().canUndo());
    history().redo();
    EXPECT_EQ(shown(), "- 65 - 65");
    settle();
    tempo().detectAgain(ids({tracks[1]}));
    settle();
    history().undo();
    EXPECT_EQ(shown(), "- 124 124 -") << "what was found since is left alone";
    settle();
    EXPECT_FALSE(tempo().tempoTables().estimatedBPMByFile.contains(FileURL::standardizedPath(tracks[3].url())));
    choices().scaleTempo(ids({tracks[0]}), 2);
    EXPECT_FALSE(history().canUndo()) << "nothing was changed";
}

TEST_F(TempoChoicesTest, ManyRowsAreChosenAndTakenBackInSlicesOneStepAfterTheOther)
{
    QList<Track> tracks;
    for (int i = 0; i < 3500; ++i)
        tracks.append(track(QStringLiteral("%1.mp3").arg(i)));
    fill(tracks);
    const auto count = [&](const QString& text) {
        return std::ranges::count_if(tracks, [&](const Track& track) { return estimate(track) == text; });
    };
    store->order().setTrackSortField(TrackSortField::BPM, LibraryTab::Playlist);
    QSignalSpy orders(&workspace(), &Workspace::orderChanged);
    choices().setTempo(ids(tracks), 100);
    EXPECT_EQ(count(QStringLiteral("100")), 500) << "the rest comes in later turns";
    async::MainQueue::drain();
    choices().scaleTempo(ids(tracks), 2);
    clock.advance(async::seconds(0.05));
    EXPECT_EQ(count(QStringLiteral("200")), 3500);
    EXPECT_EQ(orders.size(), 0);
    clock.advance(async::seconds(1));
    EXPECT_EQ(orders.size(), 1) << "sorted once";
    history().undo();
    history().undo();
    settle();
    EXPECT_EQ(count(QStringLiteral("100")) + count(QStringLiteral("200")), 0);
}
