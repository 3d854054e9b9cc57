#pragma once

#include "platform/audio/output/OutputStream.h"

#include <portaudio.h>

#include <atomic>

/// A stream of two channels of 32-bit floats on one of PortAudio's devices.
class PortAudioStream final : public OutputStream {
public:
    /// Opens a device at a rate, with a buffer for about \p latency seconds. Null where it refuses.
    static std::unique_ptr<PortAudioStream> open(PaDeviceIndex device, double sampleRate, double latency,
                                                 SoundSource& source);
    /// Stops and closes the device, which may take as long as its buffer.
    ~PortAudioStream() override;

    bool start() override;
    void stop() override;
    bool isRunning() const override { return m_isRunning; }
    /// Also false for a device that has not asked for sound for two seconds, whatever it says.
    bool isAlive() const override;
    int sampleRate() const override { return m_sampleRate; }
    double latency() const override;
    int underruns() const override { return m_underruns.load(std::memory_order_relaxed); }

private:
    explicit PortAudioStream(SoundSource& source)
        : m_source(source)
    {
    }
    static int callback(const void* input, void* output, unsigned long frames, const PaStreamCallbackTimeInfo* time,
                        PaStreamCallbackFlags flags, void* self);

    SoundSource& m_source;
    PaStream* m_stream = nullptr;
    int m_sampleRate = 0;
    bool m_isRunning = false;
    bool m_isRaised = false;             ///< the callback's thread asked for its priority
    std::atomic<double> m_startedAt = 0; ///< on DeviceClock::systemSeconds()
    std::atomic<double> m_lastTurn = 0;
    std::atomic<int> m_underruns = 0;
};
