#pragma once

#include "platform/audio/output/OutputStream.h"

#include <atomic>
#include <chrono>
#include <mutex>

/// The one stream that is open at a time: opens it where and how it is wanted, stands in a silent one where there is
/// no device, and gives the device back when nothing was heard for ten seconds. Owned by the engine. Thread: the
/// engine's, but for what is marked.
class OutputPort {
public:
    using Events = std::function<void(AudioOutputEvent)>;

    /// \param source outlives the port. \param events called on the engine's thread.
    OutputPort(std::unique_ptr<OutputBackend> backend, SoundSource& source, Events events);

    /// Sees to a stream on the chosen device, for a file's rate; opens nothing where the one that is there fits.
    /// Where the device runs out of sound now and then, a new stream gets twice the buffer, up to 0.14 s.
    /// \return the stream's rate in hertz, another than asked for where the device cannot do it
    int open(int sampleRate);
    /// Lets the open stream run; a silent one takes its place where the device refuses. Does nothing without a
    /// stream.
    void start();
    /// Gives the device back, in the midst of whatever sounds; takes as long as the stream needs for it.
    void close() { m_stream.reset(); }
    /// Whether sound is pulled, be it by a silent stream.
    bool isRunning() const { return m_stream && m_stream->isRunning(); }
    /// Closes a stream whose device is gone. \return whether that was so.
    /// The devices are looked at again before the next opening.
    bool closeIfLost();
    /// Closes a stream through which nothing has sounded for ten seconds. To be called every now and then.
    void closeIfIdle(bool isSounding);

    /// Closes the stream where the device is another one; open() goes to the new one.
    void setDevice(const QString& id);
    /// Looks for devices again and tells DevicesChanged where they differ.
    /// \param isSounding something is heard: then the looking waits for the next opening, which it would interrupt
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
