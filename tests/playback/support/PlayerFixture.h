#pragma once

#include "platform/Localization.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"
#include "support/FakeAudio.h"
#include "support/ManualClock.h"
#include "support/ManualExecutor.h"

#include <gtest/gtest.h>

/// A player on the manual clock that plays files without sound.
class PlayerFixture : public testing::Test {
protected:
    PlayerFixture();
    ~PlayerFixture() override;

    /// A track of the name, e.g. "a.mp3", in /music.
    static Track track(const char* name);
    /// Makes the player afresh, as at the start of the program.
    void makePlayer();
    /// Plays a track and lets its file be opened.
    FakeFilePlayer& open(const Track& track);
    FakeFilePlayer& file() { return *audio.last(); }
    void advance(double seconds) { clock.advance(async::seconds(seconds)); }
    /// The file comes to its end now.
    void finish();
    double time() { return player->progress().currentTime(); }

    ManualClock clock;
    ManualExecutor executor;
    Preferences preferences{std::make_unique<MemoryPreferenceStore>()};
    Notifications notifications;
    FakeAudioSystem audio{clock};
    const Track a = track("a.mp3"); ///< 200 seconds, as every file that is not told otherwise
    const Track b = track("b.mp3");

    QStringList events; ///< what the program was told, e.g. "store playing a.mp3", "changed", "waveform idle -"
    QList<std::optional<QUuid>> finished;
    std::unique_ptr<AudioPlayer> player;

private:
    QString nameOf(const std::optional<TrackID>& id) const;
};
