#include "support/PlayerFixture.h"

#include "async/MainQueue.h"
#include "platform/FileURL.h"

PlayerFixture::PlayerFixture()
{
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    QObject::connect(&notifications, &Notifications::velmoraPlaybackDidChange, &notifications,
                     [this] { events.append(QStringLiteral("changed")); });
    QObject::connect(&notifications, &Notifications::velmoraPlaybackDidFinish, &notifications,
                     [this](const std::optional<QUuid>& id) { finished.append(id); });
    makePlayer();
}

PlayerFixture::~PlayerFixture()
{
    player.reset();
    executor.dropAll();
}

Track PlayerFixture::track(const char* name)
{
    return Track::unread(FileURL::fromPath(QStringLiteral("/music/") + QLatin1StringView(name)));
}

QString PlayerFixture::nameOf(const std::optional<TrackID>& id) const
{
    return !id ? QStringLiteral("-") : *id == a.id() ? QStringLiteral("a.mp3") : QStringLiteral("b.mp3");
}

void PlayerFixture::makePlayer()
{
    player.reset();
    player = std::make_unique<AudioPlayer>(AudioPlayer::Services{clock, executor, preferences, notifications, audio});
    const auto state = [](bool isPlaying) { return isPlaying ? QStringLiteral("playing ") : QStringLiteral("idle "); };
    AudioPlayer::Listeners listeners;
    listeners.playbackStateDidChange = [this, state](bool isPlaying, const std::optional<TrackID>& id) {
        events.append(QStringLiteral("store ") + state(isPlaying) + nameOf(id));
    };
    listeners.waveformPlaybackDidChange = [this, state](bool isPlaying, const QUrl& url) {
        events.append(QStringLiteral("waveform ") + state(isPlaying) +
                      (url.isEmpty() ? QStringLiteral("-") : url.fileName()));
    };
    listeners.fail = [this](const QString& message, const QUrl&) { events.append(QStringLiteral("fail ") + message); };
    listeners.report = [this](const QString& message, bool isWarning) {
        events.append((isWarning ? QStringLiteral("warning ") : QStringLiteral("report ")) + message);
    };
    player->setListeners(std::move(listeners));
}

FakeFilePlayer& PlayerFixture::open(const Track& track)
{
    player->play(track);
    executor.runAll();
    return file();
}

void PlayerFixture::finish()
{
    file().finish();
    async::MainQueue::drain();
}
