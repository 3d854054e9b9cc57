#pragma once

#include "platform/audio/output/OutputStream.h"

#include <thread>
#include <vector>

/// Takes the place of a device where there is none: pulls sound at the pace of the system's clock and throws it away,
/// so that everything but the sound goes on as usual.
class SilentStream final : public OutputStream {
public:
    /// \param sampleRate hertz. \param source pulled from a thread of the stream's own; outlives it.
    SilentStream(int sampleRate, SoundSource& source);
    ~SilentStream() override;

    bool start() override;
    /// Waits for the turn that runs, about 10 ms.
    void stop() override;
    bool isRunning() const override { return m_thread.joinable(); }
    bool isAlive() const override { return true; }
    int sampleRate() const override { return m_sampleRate; }
    double latency() const override { return 0; }
    bool isSilent() const override { return true; }

private:
    void run(const std::stop_token& stop);

    const int m_sampleRate;
    SoundSource& m_source;
    std::vector<float> m_buffer;
    std::jthread m_thread;
};
