#pragma once

#include "platform/audio/AudioFilePlayer.h"

#include <memory>
#include <span>

/// What a stream asks for sound. Called by the device's thread, which must not be held up: no locks, no memory, no
/// waiting.
class SoundSource {
public:
    virtual ~SoundSource() = default;
    /// Fills \p out with stereo frames, interleaved, full scale at 1.
    virtual void render(std::span<float> out, int sampleRate) noexcept = 0;
};

/// An open way to a device that pulls sound from one source while it runs. The destructor ends it. Thread: one.
class OutputStream {
public:
    virtual ~OutputStream() = default;

    /// Begins to pull sound. \return whether it runs; true also where it ran already.
    virtual bool start() = 0;
    /// Ends at once; no call of the source comes after the return.
    virtual void stop() = 0;
    /// Between start() and stop(), whether or not the device is still there.
    virtual bool isRunning() const = 0;
    /// False once the device is gone, for good. Told while running only: a stopped stream counts as alive.
    virtual bool isAlive() const = 0;
    virtual int sampleRate() const = 0; ///< hertz
    /// Seconds between a call of the source and the sound of its first frame.
    virtual double latency() const = 0;
    /// How often the device ran out of sound since the opening, because the source was asked too late.
    virtual int underruns() const { return 0; }
    /// Whether it stands in for a device that is not there.
    virtual bool isSilent() const { return false; }
};

/// Opens streams and lists devices. Thread: one, always the same.
class OutputBackend {
public:
    virtual ~OutputBackend() = default;

    /// Looks for devices again. Only while no stream is open.
    virtual void rescan() = 0;
    /// As found by the last rescan() or at the beginning: outputs of at least two channels, without the default.
    virtual QList<AudioDevice> devices() const = 0;
    /// What is wished for; the stream tells what it got.
    struct Wish {
        QString deviceID; ///< empty or unknown: the default one
        int sampleRate;   ///< hertz
        double latency;   ///< seconds
    };
    /// A stream on a device. Null if there is none to be had.
    virtual std::unique_ptr<OutputStream> open(const Wish& wish, SoundSource& source) = 0;
};
