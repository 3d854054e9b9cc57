#include "support/PlayerFixture.h"

#include "async/MainQueue.h"

namespace {

using Operations = QList<std::function<void(AudioPlayer&)>>;

class AudioPlayerOpeningTest : public PlayerFixture {
protected:
    /// What there is to see of the player and of its file.
    QString state()
    {
        async::MainQueue::drain();
        const FakeFilePlayer* last = audio.last();
        return QStringLiteral("%1 %2 at %3 shown %4 gain %5 scrubbing %6")
            .arg(player->currentTrack() ? player->currentTrack()->url().fileName() : QStringLiteral("-"))
            .arg(player->isPlaying())
            .arg(last ? last->currentTime() : -1)
            .arg(time())
            .arg(last ? last->gain() : -1)
            .arg(player->isScrubbing());
    }
};

} // namespace

TEST_F(AudioPlayerOpeningTest, WhatIsAskedMeanwhileIsDoneAsIfTheFileHadBeenOpen)
{
    const auto toggle = [](AudioPlayer& p) { p.toggle(); };
    const auto again = [this](AudioPlayer& p) { p.play(b); };
    const auto on = [](AudioPlayer& p) { p.seek(15); };
    const auto back = [](AudioPlayer& p) { p.seek(-5); };
    const auto half = [](AudioPlayer& p) { p.scheduleSeek(100, false); };
    const auto end = [](AudioPlayer& p) { p.seek(1000); };
    const auto quiet = [](AudioPlayer& p) { p.setVolume(0.25); };
    const auto loud = [](AudioPlayer& p) { p.setVolume(0.8); };
    const auto hold = [](AudioPlayer& p) { p.setScrubbing(true); };
    const auto release = [](AudioPlayer& p) { p.setScrubbing(false); };
    const auto clear = [](AudioPlayer& p) { p.stopAndClear(); };
    const Operations rows[] = {
        {},
        {toggle},
        {again},
        {toggle, toggle},
        {again, half},
        {half, on, back, on},
        {half, again},
        {toggle, on, half},
        {quiet, half},
        {hold, half, release},
        {hold, toggle, half},
        {end},
        {toggle, end},
        {half, clear},
        {clear, toggle},
        {on, again, on, again},
        {release, loud},
    };
    for (qsizetype row = 0; row < qsizetype(std::size(rows)); ++row) {
        SCOPED_TRACE(row);
        QStringList seen;
        QList<qsizetype> completions;
        for (const bool isOpenFirst : {true, false}) {
            player->stopAndClear();
            player->setScrubbing(false);
            player->setVolume(0.8);
            open(a);
            finished.clear();
            player->play(b);
            EXPECT_TRUE(player->isOpening());
            if (isOpenFirst)
                executor.runAll();
            for (const auto& operation : rows[row])
                operation(*player);
            executor.runAll();
            seen.append(state());
            advance(0.02);
            seen.append(state());
            completions.append(finished.size());
            EXPECT_FALSE(player->isOpening());
        }
        EXPECT_EQ(seen[2], seen[0]);
        EXPECT_EQ(seen[3], seen[1]);
        EXPECT_EQ(completions[0], completions[1]);
    }
}

TEST_F(AudioPlayerOpeningTest, ThePublishedTrackIsTheOneBefore)
{
    open(a);
    player->play(b);
    EXPECT_EQ(player->currentID(), a.id());
    EXPECT_EQ(player->requestedTrack()->id(), b.id());
    EXPECT_EQ(audio.openCount(), 0) << "and is silent";
    advance(1);
    EXPECT_EQ(player->synchronizedWaveformProgress(), 0);
    executor.runAll();
    EXPECT_EQ(player->currentID(), b.id());
    EXPECT_EQ(executor.jobs().size(), 0U);
}

TEST_F(AudioPlayerOpeningTest, AClickThatDoesNotSoundSoonShowsThatItWasHeard)
{
    QList<bool> seen;
    QObject::connect(player.get(), &AudioPlayer::isOpeningSlowlyChanged,
                     [&] { seen.append(player->isOpeningSlowly()); });
    player->play(a);
    advance(0.19);
    executor.runAll();
    advance(1);
    EXPECT_TRUE(seen.isEmpty()) << "a file that opens at once needs no sign";

    player->play(b);
    advance(0.21);
    EXPECT_EQ(seen, QList<bool>{true});
    player->play(a);
    advance(1);
    EXPECT_EQ(seen, QList<bool>{true}) << "the sign stays for the next file";
    executor.runAll();
    EXPECT_EQ(seen, (QList<bool>{true, false}));

    player->play(b);
    advance(0.21);
    player->stopAndClear();
    executor.runAll();
    EXPECT_FALSE(player->isOpeningSlowly());
}

TEST_F(AudioPlayerOpeningTest, TheLastRequestWins)
{
    open(a);
    player->play(b);
    player->toggle();
    player->play(a);
    EXPECT_EQ(executor.jobs(), std::vector<async::Priority>(2, async::Priority::Player));
    executor.runAll();
    EXPECT_EQ(player->currentID(), a.id()) << "opened anew, though it was current before";
    EXPECT_TRUE(player->isPlaying()) << "what was asked of the other is forgotten";
    EXPECT_EQ(time(), 0);
    EXPECT_EQ(audio.openedPaths().size(), 2) << "what is given up before it begins is not opened";

    player->play(b);
    player->stopAndClear();
    executor.runAll();
    EXPECT_FALSE(player->currentID() || player->requestedTrack());
    EXPECT_EQ(audio.openCount(), 0);
}

TEST_F(AudioPlayerOpeningTest, AFileThatDoesNotOpen)
{
    const std::pair<const char*, std::exception_ptr> cases[] = {
        {"not readable", std::make_exception_ptr(AudioFileError(AudioFileError::Case::CannotOpen))},
        {"no sound", std::make_exception_ptr(AudioFileError(AudioFileError::Case::NoAudio))},
        {"short memory", std::make_exception_ptr(std::bad_alloc())},
    };
    for (const auto& [name, error] : cases) {
        SCOPED_TRACE(name);
        open(a);
        advance(5);
        player->play(b);
        player->toggle();
        player->seek(10);
        player->setScrubbing(true);
        events.clear();
        executor.failOne(error);
        const QStringList expected = {QStringLiteral("fail Не удалось открыть аудиофайл."),
                                      QStringLiteral("store idle -"), QStringLiteral("changed"),
                                      QStringLiteral("waveform idle -")};
        EXPECT_EQ(events, expected);
        EXPECT_FALSE(player->currentID() || player->currentTrack() || player->isPlaying() || player->isOpening());
        EXPECT_EQ(time() + player->progress().duration(), 0);
        EXPECT_TRUE(player->isScrubbing()) << "the hand is still there";
        player->setScrubbing(false);
        player->toggle();
        EXPECT_EQ(events.size(), 4);
    }
    EXPECT_TRUE(open(b).isPlaying()) << "and the next attempt is one";
}
