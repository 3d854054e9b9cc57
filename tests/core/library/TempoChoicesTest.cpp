#include "support/TempoFixture.h"

class TempoChoicesTest : public TempoFixture {
protected:
    TempoChoices& choices() { return store->tempoChoices(); }
    /// The estimates of rows, "-" where there is none.
    std::string shown(const QList<Track>& rows)
    {
        QStringList texts;
        for (const Track& row : rows)
            texts.append(estimate(row).value_or(QStringLiteral("-")));
        return texts.join(u' ').toStdString();
    }
};

TEST_F(TempoChoicesTest, DoublingAndHalvingStayWithinWhatMusicHas)
{
    const struct {
        const char* name;
        const char* estimate; ///< "-" for none
        const char* tag;
        double factor;
        const char* result;
    } cases[] = {
        {"estimate", "90", "", 2, "180"},
        {"half, rounded up", "129", "", 0.5, "65"},
        {"estimate before tag", "90", "100", 2, "180"},
        {"number of the tag", "-", "87,5 BPM", 2, "175"},
        {"nothing", "-", "", 2, "-"},
        {"no number", "-", "~", 2, "-"},
        {"highest", "200", "", 2, "400"},
        {"too fast", "201", "", 2, "201"},
        {"lowest", "40", "", 0.5, "20"},
        {"too slow", "38", "", 0.5, "38"},
        {"hardly a number", "1e999", "", 2, "1e999"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const Track row = withTempo(make(1).first(), test.tag);
        fill({row});
        if (*test.estimate != '-')
            estimates({{row.id(), QString::fromLatin1(test.estimate)}});
        choices().scaleTempo(ids({row}), test.factor);
        EXPECT_EQ(shown({row}), test.result);
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
    EXPECT_EQ(heard(), "b");
    EXPECT_EQ(shown(tracks), "140 124 140") << "no tempo of music was chosen for the second";
    EXPECT_EQ(tempo().confidence(tracks[2].id()), 1);
    EXPECT_EQ(kept(tracks[0]), CachedBPMEstimate::make(tracks[0].url(), QStringLiteral("140"), 1));
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
    const std::tuple<const char*, std::function<void(const QList<Track>&)>, QString> cases[] = {
        {"the analysis fails", settles, QStringLiteral("140")},
        {"it is stopped", stops, QStringLiteral("140")},
        {"another one is chosen", chooses, QStringLiteral("130")}};
    for (const auto& [name, act, expected] : cases) {
        SCOPED_TRACE(name);
        const QList<Track> tracks = make(1);
        choices().setTempo(ids(tracks), 140);
        settle();
        outcomes[QStringLiteral("a.mp3")] = {{Case::PermanentFailure, {}}};
        tempo().detectAgain(ids(tracks));
        EXPECT_TRUE(tempo().isQueueing());
        act(tracks);
        settle();
        EXPECT_EQ(estimate(tracks[0]), expected);
        EXPECT_EQ(tempo().confidence(tracks[0].id()), 1);
        EXPECT_EQ(kept(tracks[0]), CachedBPMEstimate::make(tracks[0].url(), expected, 1));
        outcomes.clear();
    }
}

TEST_F(TempoChoicesTest, DetectingAgainReplacesWhatIsKnownOfRowAndFileButNotATag)
{
    QList<Track> tracks = make(2);
    choices().setTempo(ids(tracks), 140);
    settle();
    tracks[1] = withTempo(tracks[1], "100");
    fill(tracks);
    analysed.clear();
    tempo().detectAgain(ids(tracks));
    settle();
    EXPECT_EQ(heard(), "a");
    EXPECT_EQ(shown(tracks), "124 140");
    EXPECT_EQ(tempo().confidence(tracks[0].id()), 0.75);
}

TEST_F(TempoChoicesTest, TheTempoIsWrittenAsOneStepThatCanBeTakenBack)
{
    const QList<Track> tracks = make(3, Track::TagSource::Read);
    estimates({{tracks[0].id(), QStringLiteral("124")}, {tracks[1].id(), QStringLiteral("90.5")}},
              {{tracks[0].id(), 0.25}});
    choices().writeTempo(ids(tracks));
    EXPECT_EQ(now(tracks[0]).tags().bpm, QStringLiteral("124"));
    EXPECT_EQ(now(tracks[1]).tags().bpm, QStringLiteral("91")) << "whole";
    EXPECT_TRUE(now(tracks[2]).tags().bpm.isEmpty());
    EXPECT_EQ(shown(tracks), "- - -") << "the tag is believed";
    EXPECT_TRUE(statusText().isEmpty()) << "no file holds it yet";
    settle();
    EXPECT_EQ(statusText(), QStringLiteral("Темп записан: 2"));
    EXPECT_EQ(files.calls.size(), 2);

    history().undo();
    EXPECT_TRUE(now(tracks[0]).tags().bpm.isEmpty());
    EXPECT_EQ(shown(tracks), "124 90.5 -");
    EXPECT_EQ(tempo().confidence(tracks[0].id()), 0.25);
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
    const auto retitle = [this](const Track& row) { type(row, {{&AudioTags::title, "title"}}); };
    const auto restore = [this](const Track& row) { store->originalTags().restore({row.id()}); };
    const auto change = [](const Track& row) { append(row.url(), "other music"); };
    const struct {
        const char* name;
        std::function<void(const Track&)> act;
        bool fails;
        QString estimate; ///< of the next start
    } cases[] = {
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
        {"changed by others before a save",
         [&](const Track& row) {
             change(row);
             retitle(row);
         },
         false, QStringLiteral("124")},
        {"half a save", retitle, true, QStringLiteral("124")},
    };
    filesHold();
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const Track row = make(1, Track::TagSource::Read).first();
        choices().setTempo({row.id()}, 140);
        settle();
        files.originals = {row.url()};
        files.before = [&](const FakeTagFiles::Call&) {
            append(row.url(), "tag");
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
    files.before = [](const FakeTagFiles::Call& call) { append(call.write.url, "tag"); };
    const Track row = make(1, Track::TagSource::Read).first();
    choices().setTempo({row.id()}, 140);
    choices().writeTempo({row.id()}); // at once: nothing was kept for the file yet
    settle();
    undo();
    EXPECT_EQ(now(row).tags().bpm, QString());
    EXPECT_EQ(estimate(row), QStringLiteral("140"));
    EXPECT_EQ(tempo().confidence(row.id()), 1);
    EXPECT_EQ(kept(row), CachedBPMEstimate::make(row.url(), QStringLiteral("140"), 1));
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
    const auto edit = [this](const QList<Track>& rows) { typeForAll({rows[1]}, {{&AudioTags::bpm, "99"}}); };
    const auto stop = [this](const QList<Track>&) { store->tagWriting().saver().cancelBatches(); };
    const auto takeBack = [this](const QList<Track>&) { history().undo(); };
    const Row cases[] = {
        {"a file fails", nothing, 1, "124 80 125", "- 126 -", "Темп записан: 2 · пропущено: 1"},
        {"edited meanwhile", edit, 1, "124 99 125", "- - -", "Темп записан: 2 · пропущено: 1"},
        {"stopped", stop, -1, "124 80 -", "- 126 125", "Запись остановлена, в файлы не записано: 2"},
        {"taken back before the failure", takeBack, 1, "- 80 -", "124 126 125", "В файлы не записано: 1"},
    };
    for (const Row& test : cases) {
        SCOPED_TRACE(test.name);
        QList<Track> tracks = make(3, Track::TagSource::Read);
        tracks[1] = withTempo(tracks[1], "80");
        fill(tracks);
        estimates({{tracks[0].id(), QStringLiteral("124")},
                   {tracks[1].id(), QStringLiteral("126")},
                   {tracks[2].id(), QStringLiteral("125")}});
        files.before = {};
        if (test.fails >= 0)
            files.fail("no room", tracks[test.fails].url());
        history().clear();
        store->status().showStatus(QStringLiteral("before"), StatusIcon::Info, WorkspaceStatus::Tone::Neutral);
        choices().writeTempo(ids(tracks));
        test.meanwhile(tracks);
        settle();
        QStringList tags;
        for (const Track& track : tracks)
            tags.append(now(track).tags().bpm.isEmpty() ? QStringLiteral("-") : now(track).tags().bpm);
        EXPECT_EQ(tags.join(u' '), QString::fromUtf8(test.tags));
        EXPECT_EQ(shown(tracks), test.shown);
        EXPECT_EQ(statusText(), QString::fromUtf8(test.status));
    }
}

TEST_F(TempoChoicesTest, AChoiceIsAStepOfUndo)
{
    const QList<Track> tracks = make(4); // without anything, with an estimate, being analysed, with a tag
    fill({tracks[0], tracks[1], tracks[2], withTempo(tracks[3], "129")});
    estimates({{tracks[1].id(), QStringLiteral("129")}}, {{tracks[1].id(), 0.25}});
    tempo().detectBPM(ids({tracks[2]}));
    choices().scaleTempo(ids(tracks), 0.5);
    EXPECT_EQ(shown(tracks), "- 65 - 65");
    async::MainQueue::drain();
    choices().scaleTempo(ids(tracks), 2);
    async::MainQueue::drain();
    choices().setTempo(ids(tracks), 100);
    EXPECT_EQ(shown(tracks), "100 100 100 100");
    EXPECT_FALSE(tempo().isQueueing());
    history().undo();
    EXPECT_EQ(shown(tracks), "- 130 - 130");
    EXPECT_TRUE(tempo().isQueueing()) << "the row that was queued is queued again";
    history().undo();
    history().undo();
    EXPECT_EQ(shown(tracks), "- 129 - -") << "not 130, as doubling gave";
    EXPECT_EQ(tempo().confidence(tracks[1].id()), 0.25);
    EXPECT_FALSE(history().canUndo());
    history().redo();
    EXPECT_EQ(shown(tracks), "- 65 - 65");
    settle();
    tempo().detectAgain(ids({tracks[1]}));
    settle();
    history().undo();
    EXPECT_EQ(shown(tracks), "- 124 124 -") << "what was found since is left alone";
    settle();
    EXPECT_FALSE(tempo().tempoTables().estimatedBPMByFile.contains(FileURL::standardizedPath(tracks[3].url())));
    choices().scaleTempo(ids({tracks[0]}), 2);
    EXPECT_FALSE(history().canUndo()) << "nothing was changed";
    tempo().detectAgain(ids({tracks[1]}));
    choices().setTempo(ids({tracks[1]}), 100);
    EXPECT_FALSE(tempo().isQueueing());
    history().undo();
    EXPECT_TRUE(tempo().isQueueing()) << "another search is wanted still, beside what is known";
}

TEST_F(TempoChoicesTest, ManyRowsAreChosenAndTakenBackInSlicesOneStepAfterTheOther)
{
    const QList<Track> tracks = numbered(3500);
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
    undo();
    EXPECT_EQ(count(QStringLiteral("100")) + count(QStringLiteral("200")), 0);
}
