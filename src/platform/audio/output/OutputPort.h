#pragma once

#include "platform/audio/output/OutputStream.h"

#include <atomic>
#include <chrono>
#include <mutex>

/// The one stream that is open at a time: opens it where and how it is wanted, stands in a silent one where there is no
/// device, and gives the device back when nothing was heard for a while. Thread: the engine's, but for what is marked.
class OutputPort {
public:
    using Events = std::function<void(AudioOutputEvent)>;

    OutputPort(std::unique_ptr<OutputBackend> backend, SoundSource& source, Events events);

    /// Sees to a stream on the chosen device, for a file's rate. \return the stream's rate.
    int open(int sampleRate);
    void start();
    void close() { m_stream.reset(); }
    bool isRunning() const { return m_stream && m_stream->isRunning(); }
    /// Closes a stream whose device is gone. \return whether that was so.
    bool closeIfLost();
    /// Stops a stream through which nothing sounds any more.
    void closeIfIdle(bool isSounding);

    void setDevice(const QString& id);
    /// \param isSounding something is heard: then the looking waits for the next opening, which it would interrupt.
    void refreshDevices(bool isSounding);
    QList<AudioDevice> devices() const;          ///< any thread
    double latency() const { return m_latency; } ///< any thread

private:
    using SteadyClock = std::chrono::steady_clock;

    bool isFit(int sampleRate) const;
    void rescan();
    void tellSilence(bool isSilent);

    std::unique_ptr<OutputBackend> m_backend;
    SoundSource& m_source;
    Events m_events;
    QString m_device;
    int m_askedRate = 0;
    double m_wantedLatency;
    bool m_wantsRescan = false;
    bool m_isSilenceTold = false;
    SteadyClock::time_point m_lastAttempt;
    SteadyClock::time_point m_lastSound;
    std::atomic<double> m_latency = 0;
    mutable std::mutex m_devicesMutex;
    QList<AudioDevice> m_devices;
    std::unique_ptr<OutputStream> m_stream; // last: it renders until it is gone
};
