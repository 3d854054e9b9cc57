// How the program connects its player: to the library, the alert, the status line and the preferences.

#include "support/AppFixture.h"

#include "core/library/playback/Playback.h"

namespace {

class PlayerWiringTest : public AppFixture {
protected:
    PlayerWiringTest()
    {
        auto preferences = newPreferences();
        preferences->audioOutputDevice.set(QStringLiteral("mixer"));
        start(std::move(preferences));
        app->open({});
    }

    static Track track(const char* name)
    {
        Track track = Track::unread(FileURL::fromPath(QStringLiteral("/music/") + QLatin1StringView(name)));
        track.setIsInPlaylist(true);
        return track;
    }
    bool waitForStatus(StatusIcon icon, WorkspaceStatus::Tone tone)
    {
        return waitFor([&] {
            const auto& status = workspace().workspaceStatus();
            return status && status->icon == icon && status->tone == tone;
        });
    }
};

} // namespace

TEST_F(PlayerWiringTest, TheOutputFollowsItsPreference)
{
    EXPECT_EQ(audio->device(), QStringLiteral("mixer"));
    app->preferences().audioOutputDevice.set(QStringLiteral("headphones"));
    EXPECT_EQ(audio->device(), QStringLiteral("headphones"));
}

TEST_F(PlayerWiringTest, LibraryAndPlayerKnowEachOther)
{
    const Track a = track("a.mp3");
    const Track b = track("b.mp3");
    workspace().setTracks({a, b});
    app->player().play(a);
    ASSERT_TRUE(waitFor([&] { return app->store().playback().isPlaying(); }));
    EXPECT_EQ(app->store().playback().currentTrackID(), a.id());
    app->store().playback().continuePlaybackAfterRemoving({a.id()}, {a, b});
    EXPECT_TRUE(waitFor([&] { return app->player().currentID() == b.id(); }));
}

TEST_F(PlayerWiringTest, FailuresAndTheOutputAreShown)
{
    audio->setFailure(QStringLiteral("/music/a.mp3"), AudioFileError::Case::NoAudio);
    app->player().play(track("a.mp3"));
    ASSERT_TRUE(waitFor([&] { return workspace().lastError().has_value(); }));
    EXPECT_EQ(*workspace().lastError(), QStringLiteral("Не удалось открыть аудиофайл."));
    EXPECT_EQ(workspace().lastErrorTitle(), QStringLiteral("Не удалось открыть «a.mp3»"));

    app->player().play(track("b.mp3"));
    ASSERT_TRUE(waitFor([&] { return app->player().isPlaying(); }));
    audio->loseDevice();
    EXPECT_TRUE(waitForStatus(StatusIcon::SoundOff, WorkspaceStatus::Tone::Warning));
    EXPECT_FALSE(app->store().playback().isPlaying());
    audio->tell(AudioOutputEvent::Sounding);
    EXPECT_TRUE(waitForStatus(StatusIcon::Sound, WorkspaceStatus::Tone::Neutral));
}

TEST_F(PlayerWiringTest, TheProgramEndsWhileAFileIsOpened)
{
    app->player().play(track("a.mp3"));
    app.reset();
    EXPECT_EQ(async::liveTaskCount(), 0);
}
