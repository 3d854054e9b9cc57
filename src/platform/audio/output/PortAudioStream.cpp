#include "platform/audio/output/PortAudioStream.h"

#include "platform/audio/output/DeviceClock.h"
#include "platform/audio/output/RealtimeThread.h"
#include "platform/audio/output/SampleRing.h"

#include <algorithm>
#include <cmath>

namespace {
// A device that has not asked for sound for that long is gone, whatever it says.
constexpr double kSilenceOfDeadDevice = 2.0;
} // namespace

std::unique_ptr<PortAudioStream> PortAudioStream::open(PaDeviceIndex device, double sampleRate, double latency,
                                                       SoundSource& source)
{
    const PaDeviceInfo* const info = Pa_GetDeviceInfo(device);
    if (!info || info->maxOutputChannels < SampleRing::kChannels)
        return nullptr;
    PaStreamParameters parameters{};
    parameters.device = device;
    parameters.channelCount = SampleRing::kChannels;
    parameters.sampleFormat = paFloat32;
    parameters.suggestedLatency = std::max(info->defaultLowOutputLatency, latency);
    std::unique_ptr<PortAudioStream> stream(new PortAudioStream(source));
    const RealtimeThread::Scope urgent;
    // No dither: a device that takes floats gets what was decoded, bit by bit. Clipping stays on, because lossy formats
    // decode to a little more than full scale, which devices of whole numbers would turn over.
    if (Pa_OpenStream(&stream->m_stream, nullptr, &parameters, sampleRate, paFramesPerBufferUnspecified, paDitherOff,
                      &PortAudioStream::callback, stream.get()) != paNoError) {
        stream->m_stream = nullptr;
        return nullptr;
    }
    const PaStreamInfo* const opened = Pa_GetStreamInfo(stream->m_stream);
    stream->m_sampleRate = static_cast<int>(std::lround(opened ? opened->sampleRate : sampleRate));
    return stream;
}

PortAudioStream::~PortAudioStream()
{
    stop();
    if (m_stream)
        Pa_CloseStream(m_stream);
}

bool PortAudioStream::start()
{
    if (m_isRunning)
        return true;
    m_isRaised = false; // each start may bring a thread of its own
    m_startedAt = DeviceClock::systemSeconds();
    m_isRunning = Pa_StartStream(m_stream) == paNoError;
    return m_isRunning;
}

void PortAudioStream::stop()
{
    if (!m_isRunning)
        return;
    m_isRunning = false;
    // Aborting ends the device's thread in the midst of whatever it does, locks of the system's sound library included.
    if (Pa_IsStreamActive(m_stream) == 1)
        Pa_StopStream(m_stream);
    else
        Pa_AbortStream(m_stream);
}

bool PortAudioStream::isAlive() const
{
    if (!m_isRunning)
        return true;
    if (Pa_IsStreamActive(m_stream) != 1)
        return false;
    const double last = std::max(m_startedAt.load(), m_lastTurn.load());
    return DeviceClock::systemSeconds() - last < kSilenceOfDeadDevice;
}

double PortAudioStream::latency() const
{
    const PaStreamInfo* const info = Pa_GetStreamInfo(m_stream);
    return info && std::isfinite(info->outputLatency) ? info->outputLatency : 0;
}

int PortAudioStream::callback(const void*, void* output, unsigned long frames, const PaStreamCallbackTimeInfo*,
                              PaStreamCallbackFlags flags, void* self)
{
    auto* const stream = static_cast<PortAudioStream*>(self);
    if (!stream->m_isRaised) {
        stream->m_isRaised = true;
        RealtimeThread::raise();
    }
    if (flags & paOutputUnderflow)
        stream->m_underruns.fetch_add(1, std::memory_order_relaxed);
    stream->m_lastTurn.store(DeviceClock::systemSeconds(), std::memory_order_relaxed);
    stream->m_source.render({static_cast<float*>(output), frames * SampleRing::kChannels}, stream->m_sampleRate);
    return paContinue;
}
