#pragma once

#include "platform/audio/output/OutputStream.h"

#include <atomic>
#include <mutex>

/// A device that takes sound only when the test says so.
class ManualOutput {
public:
    /// What the engine sees of it.
    std::unique_ptr<OutputBackend> makeBackend();

    /// Takes frames of the running stream, left channel. Nothing if none runs.
    std::vector<float> pull(int frames);
    /// Pulls in turns until \p frames that are not silence came, or \p limitSeconds of sound passed.
    std::vector<float> pullSound(int frames, double limitSeconds = 5);

    std::atomic<bool> isThere = true; ///< whether streams can be opened
    std::atomic<bool> isAlive = true; ///< false: the device was pulled out
    std::atomic<int> refusedRate = 0; ///< a rate that the device does not do; it gives 48000 then
    std::atomic<double> latency = 0;
    std::atomic<int> underruns = 0;        ///< what the stream tells
    std::atomic<double> wantedLatency = 0; ///< of the last opening
    std::atomic<int> opened = 0;           ///< streams so far
    std::atomic<int> scans = 0;
    QString lastDevice() const;

private:
    friend class ManualStream;
    friend class ManualBackend;

    mutable std::mutex m_mutex;
    OutputStream* m_running = nullptr;
    SoundSource* m_source = nullptr;
    int m_sampleRate = 0;
    QString m_lastDevice;
};
