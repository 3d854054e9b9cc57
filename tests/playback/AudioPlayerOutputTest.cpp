#include "support/PlayerFixture.h"

#include "async/MainQueue.h"

using AudioPlayerOutputTest = PlayerFixture;

TEST_F(AudioPlayerOutputTest, ALostDeviceIsAPause)
{
    open(a);
    advance(12.345);
    events.clear();
    audio.loseDevice();
    EXPECT_TRUE(events.isEmpty()) << "told on the main queue, whatever thread it comes from";
    async::MainQueue::drain();
    const QStringList expected = {
        QStringLiteral("store idle a.mp3"), QStringLiteral("changed"),
        QStringLiteral("warning Звуковое устройство отключено. Воспроизведение приостановлено."),
        QStringLiteral("waveform idle a.mp3")};
    EXPECT_EQ(events, expected);
    EXPECT_FALSE(player->isPlaying());
    EXPECT_NEAR(time(), 12.345, 1e-6);
    EXPECT_EQ(clock.pendingCount(), 0);
    player->toggle();
    advance(1);
    EXPECT_NEAR(time(), 13.345, 0.11) << "goes on where it was";
}

TEST_F(AudioPlayerOutputTest, TellsOfTheOutput)
{
    const std::pair<AudioOutputEvent, QStringList> cases[] = {
        {AudioOutputEvent::Silent, {QStringLiteral("warning Звуковое устройство не найдено: звук не слышен.")}},
        {AudioOutputEvent::Sounding, {QStringLiteral("report Звук снова слышен.")}},
        {AudioOutputEvent::DevicesChanged, {}},
        {AudioOutputEvent::Lost, {}}, // too late: it plays again by now
    };
    open(a);
    for (const auto& [event, told] : cases) {
        events.clear();
        audio.tell(event);
        async::MainQueue::drain();
        EXPECT_EQ(events, told);
        EXPECT_TRUE(player->isPlaying()) << "what plays by now is left alone";
    }
    audio.tell(AudioOutputEvent::Silent);
    player.reset();
    events.clear();
    async::MainQueue::drain();
    audio.tell(AudioOutputEvent::Silent);
    async::MainQueue::drain();
    EXPECT_TRUE(events.isEmpty()) << "nobody is there to tell";
}
