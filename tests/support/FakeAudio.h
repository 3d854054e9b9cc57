#pragma once

#include "async/Clock.h"
#include "platform/audio/AudioFileError.h"
#include "platform/audio/AudioFilePlayer.h"

#include <QHash>
#include <QList>
#include <QStringList>

#include <mutex>

class FakeAudioSystem;

/// A file that plays without sound: its position and its device's clock move with a clock while it plays. Its end is
/// noticed when somebody looks. Writes down what it is told, e.g. "play", "seek 12.5", "volume 0 in 0.012".
class FakeFilePlayer final : public AudioFilePlayer {
public:
    FakeFilePlayer(FakeAudioSystem& system, const QString& path, double duration)
        : m_system(system)
        , m_path(path)
        , m_duration(duration)
    {
    }
    ~FakeFilePlayer() override;

    void play() override;
    void pause() override { halt(QStringLiteral("pause")); }
    void stop() override { halt(QStringLiteral("stop")); }
    bool isPlaying() const override { return advance(), m_isPlaying; }
    double currentTime() const override { return advance(), m_position; }
    void setCurrentTime(double seconds) override;
    double duration() const override { return m_duration; }
    double deviceCurrentTime() const override { return advance(), m_deviceTime - m_deviceBack; }
    double outputLatency() const override;
    void setVolume(float gain, double fadeDuration) override;
    void setFinishHandler(std::function<void(bool)> handler) override { m_finishHandler = std::move(handler); }

    /// The end comes now. \param successfully false: the decoder gives up where it is.
    void finish(bool successfully = true);
    /// The file turns out to have another length.
    void setDuration(double seconds) { m_duration = seconds; }
    /// The device's clock is read as going back by this much from now on.
    void setDeviceClockBack(double seconds) { m_deviceBack = seconds; }

    /// For news of the end that were under way on another thread when somebody lost interest.
    const std::function<void(bool)>& finishHandler() const { return m_finishHandler; }
    const QString& path() const { return m_path; }
    /// Where the last fade leads.
    float gain() const { return m_gain; }
    /// What was asked since the last look.
    QStringList takeCalls() { return std::exchange(m_calls, {}); }

private:
    friend class FakeAudioSystem;
    void advance() const;
    void halt(const QString& call);
    void tellEnd(bool successfully) const;
    void note(const QString& call) { m_calls.append(call); }

    FakeAudioSystem& m_system;
    QString m_path;
    double m_duration;
    float m_gain = 1;
    double m_deviceBack = 0;
    QStringList m_calls;
    std::function<void(bool)> m_finishHandler;
    mutable bool m_isPlaying = false;
    mutable double m_position = 0;
    mutable double m_deviceTime = 0;
    mutable async::Duration m_lookedAt;
};

/// Opens files that need not exist and are silent. What fails, how long files are and how late the output is can be
/// set. Thread: main, but for open().
class FakeAudioSystem final : public AudioSystem {
public:
    /// \param clock what playing files follow; outlives the system.
    explicit FakeAudioSystem(const async::Clock& clock)
        : m_clock(clock)
    {
    }
    ~FakeAudioSystem() override { Q_ASSERT(m_players.isEmpty()); }

    std::unique_ptr<AudioFilePlayer> open(const QString& path, std::stop_token stop) override;
    QList<AudioDevice> devices() const override { return m_devices; }
    void refreshDevices() override { ++refreshes; }
    void setDevice(const QString& id) override { m_device = id; }
    QString device() const override { return m_device; }
    void setEventHandler(std::function<void(AudioOutputEvent)> handler) override
    {
        m_eventHandler = std::move(handler);
    }

    /// Seconds of a file; 200 if not set.
    void setDuration(const QString& path, double seconds);
    /// Openings of the file fail.
    void setFailure(const QString& path, AudioFileError::Case failure);
    void setDevices(const QList<AudioDevice>& devices)
    {
        m_devices = devices;
        tell(AudioOutputEvent::DevicesChanged);
    }
    /// The output tells something.
    void tell(AudioOutputEvent event) const;
    /// The device goes away: what plays stops, and Lost is told.
    void loseDevice();

    /// The file that was opened last, while it is there.
    FakeFilePlayer* last() const;
    /// Player objects that are there.
    int openCount() const;
    /// Paths in the order of the openings, failed ones included.
    QStringList openedPaths() const;

    double latency = 0; ///< of every file from now on, seconds
    int refreshes = 0;

private:
    friend class FakeFilePlayer;

    const async::Clock& m_clock;
    QList<AudioDevice> m_devices;
    QString m_device;
    std::function<void(AudioOutputEvent)> m_eventHandler;
    mutable std::mutex m_mutex; // files are opened on workers
    QHash<QString, double> m_durations;
    QHash<QString, AudioFileError::Case> m_failures;
    QList<FakeFilePlayer*> m_players;
    QStringList m_openedPaths;
};
