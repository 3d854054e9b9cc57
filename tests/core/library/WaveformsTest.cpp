#include "support/StoreFixture.h"

#include "async/Cancelled.h"

namespace {

/// Envelopes that are computed by the executor's jobs; a stop is obeyed at once, as the cache does.
class SlowEnvelopes final : public Envelopes {
public:
    explicit SlowEnvelopes(async::Executor& executor)
        : m_executor(executor)
    {
    }
    async::Task<bool> prepare(QUrl url, std::stop_token stop) override
    {
        if (broken.contains(url.fileName()))
            throw std::runtime_error("broken");
        const auto job = [](const std::stop_token&) {};
        co_await m_executor.run(async::Priority::Background, stop, job);
        co_return true;
    }
    QStringList broken;

private:
    async::Executor& m_executor;
};

/// Rows "a" to "e" of the playlist, and the waveforms that are made ahead of them.
class WaveformsTest : public StoreFixture {
protected:
    WaveformsTest()
    {
        fill(rows("abcde"));
        QObject::connect(&waveforms, &Waveforms::prepared, &waveforms,
                         [this](const QUrl& url) { prepared.append(url.fileName()); });
    }
    ~WaveformsTest() override { async::MainQueue::drain(); }

    QList<Track> rows(const char* names)
    {
        QList<Track> list;
        for (const QChar name : QString::fromLatin1(names)) {
            if (!made.contains(name))
                made.insert(name, track(QString(name)));
            list.append(made[name]);
        }
        return list;
    }
    QList<QUrl> urls(const char* names)
    {
        QList<QUrl> list;
        for (const Track& row : rows(names))
            list.append(row.url());
        return list;
    }
    void play(char name)
    {
        const Track row = rows(std::string(1, name).c_str()).first();
        store->playback().playbackStateDidChange(true, row.id());
        waveforms.playerTold(true, row.url(), row.id());
    }
    void pause()
    {
        store->playback().playbackStateDidChange(false, std::nullopt);
        waveforms.playerTold(false, {}, std::nullopt);
    }
    void pass(double seconds) { clock.advance(async::seconds(seconds)); }
    /// What came since the last look, once everything that may run has run.
    std::string taken()
    {
        executor.runAll();
        return std::exchange(prepared, {}).join(QString()).toStdString();
    }

    QHash<QChar, Track> made;
    QStringList prepared;
    SlowEnvelopes envelopes{executor};
    Waveforms waveforms{{workspace(), store->selection(), store->scheduler(), executor, envelopes}};
};

TEST_F(WaveformsTest, AreMadeInOrderEachOnceOneAtATimeWhateverFails)
{
    envelopes.broken = QStringList{QStringLiteral("b")};
    waveforms.preloadWaveforms(urls("abab"));
    waveforms.preloadWaveforms(urls("cba"));
    EXPECT_EQ(executor.pendingCount(), 1);
    EXPECT_EQ(waveforms.waiting(), urls("bc"));
    EXPECT_EQ(taken(), "ac");
}

TEST_F(WaveformsTest, DuringPlaybackOnlyThePresentRowAndTheNextTwo)
{
    waveforms.preloadWaveforms(urls("abcde"));
    EXPECT_EQ(executor.pendingCount(), 1); // a
    play('c');
    EXPECT_EQ(taken(), "cde");
    EXPECT_EQ(waveforms.waiting(), urls("ab"));
    workspace().setList(Track::MetadataDestination::Analysis, rows("f"));
    waveforms.preloadWaveforms(urls("f"));
    EXPECT_EQ(taken(), "");
    play('a'); // the next song
    EXPECT_EQ(taken(), "abc");
    pause();
    pass(0.59);
    play('a');
    pass(10);
    EXPECT_EQ(taken(), "abc") << "a short pause starts nothing else";
    pause();
    pass(0.59);
    EXPECT_EQ(taken(), "");
    pass(0.01);
    EXPECT_EQ(taken(), "f");
}

TEST_F(WaveformsTest, PlaybackTakesBackTheWorkForAnotherFileAlone)
{
    waveforms.preloadWaveforms(urls("abe"));
    play('a');
    EXPECT_EQ(executor.pendingCount(), 1) << "it goes on";
    EXPECT_EQ(taken(), "abc");
    pause();
    pass(1);
    waveforms.preloadWaveforms(urls("d"));
    executor.runOne(); // e; d is under way
    play('c');
    EXPECT_EQ(taken(), "ecde");
}

TEST_F(WaveformsTest, TheRowsOfTheSectionShownDecideWhatFollows)
{
    QList<Track> list = rows("abc");
    for (Track& row : list)
        row.setIsFavorite(row.url() != made[u'b'].url());
    for (Track& row : list)
        row.setIsInCoverWorkspace(row.isFavorite());
    fill(list);
    const std::tuple<LibraryTab, char, std::string> kCases[] = {{LibraryTab::Playlist, 'a', "abc"},
                                                                {LibraryTab::Favorites, 'a', "ac"},
                                                                {LibraryTab::Favorites, 'b', ""},
                                                                {LibraryTab::Analysis, 'a', ""}};
    for (const auto& [tab, played, prepared] : kCases) {
        workspace().setActiveTab(tab);
        play(played);
        EXPECT_EQ(taken(), prepared);
        pause();
    }
}

TEST_F(WaveformsTest, FilesWithoutARowAreGivenUp)
{
    waveforms.preloadWaveforms(urls("abcd"));
    fill(rows("cd"));
    EXPECT_EQ(taken(), "cd") << "what ran is stopped, what waits is passed over";
    workspace().setList(Track::MetadataDestination::Analysis, rows("b"));
    waveforms.preloadWaveforms(urls("ab"));
    EXPECT_EQ(taken(), "b") << "a row of any list will do";
}

} // namespace
