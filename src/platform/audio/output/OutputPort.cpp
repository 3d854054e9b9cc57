#include "platform/audio/output/OutputPort.h"

#include "platform/audio/output/SilentStream.h"

#include <algorithm>

namespace {
using namespace std::chrono_literals;
// Chosen by measuring through a sound server: half of it skips now and then on a loaded machine, and a seek is still
// heard within 60 ms. Where that proves too short, the next stream gets twice as much, up to the limit.
constexpr double kWantedLatencySeconds = 0.04;
constexpr double kLongestWantedSeconds = 0.14;
constexpr double kMostLatencySeconds = 0.25; // more is a driver's fancy
constexpr auto kIdleTime = 10s;              // chosen: a pause to think does not cost the device
constexpr auto kTimeToTryAgain = 3s;         // chosen: looking for devices takes tenths of a second
} // namespace

OutputPort::OutputPort(std::unique_ptr<OutputBackend> backend, SoundSource& source, Events events)
    : m_backend(std::move(backend))
    , m_source(source)
    , m_events(std::move(events))
    , m_wantedLatency(kWantedLatencySeconds)
    , m_devices(m_backend->devices())
{
}

bool OutputPort::isFit(int sampleRate) const
{
    if (!m_stream || !m_stream->isAlive() || m_askedRate != sampleRate)
        return false;
    if (m_stream->underruns() > 0 && m_wantedLatency < kLongestWantedSeconds)
        return false;
    return !m_stream->isSilent() || SteadyClock::now() - m_lastAttempt < kTimeToTryAgain;
}

int OutputPort::open(int sampleRate)
{
    if (isFit(sampleRate))
        return m_stream->sampleRate();
    const bool wasSilent = m_stream && m_stream->isSilent();
    if (m_stream && m_stream->underruns() > 0)
        m_wantedLatency = std::min(2 * m_wantedLatency, kLongestWantedSeconds);
    m_stream.reset();
    if (wasSilent || m_wantsRescan)
        rescan();
    m_askedRate = sampleRate;
    m_lastAttempt = SteadyClock::now();
    m_stream = m_backend->open({m_device, sampleRate, m_wantedLatency}, m_source);
    const bool isSilent = !m_stream;
    if (isSilent)
        m_stream = std::make_unique<SilentStream>(sampleRate, m_source);
    tellSilence(isSilent);
    m_latency = std::clamp(m_stream->latency(), 0.0, kMostLatencySeconds);
    m_lastSound = SteadyClock::now();
    return m_stream->sampleRate();
}

void OutputPort::tellSilence(bool isSilent)
{
    if (isSilent == m_isSilenceTold)
        return;
    m_isSilenceTold = isSilent;
    m_events(isSilent ? AudioOutputEvent::Silent : AudioOutputEvent::Sounding);
}

void OutputPort::start()
{
    if (!m_stream || m_stream->isRunning())
        return;
    if (!m_stream->start()) {
        const int rate = m_stream->sampleRate();
        m_stream = std::make_unique<SilentStream>(rate, m_source);
        m_stream->start();
        tellSilence(true);
    }
    m_latency = std::clamp(m_stream->latency(), 0.0, kMostLatencySeconds);
}

bool OutputPort::closeIfLost()
{
    if (!m_stream || m_stream->isAlive())
        return false;
    m_stream.reset();
    m_wantsRescan = true;
    return true;
}

void OutputPort::closeIfIdle(bool isSounding)
{
    const auto now = SteadyClock::now();
    if (isSounding)
        m_lastSound = now;
    else if (m_stream && now - m_lastSound > kIdleTime)
        m_stream.reset();
}

void OutputPort::setDevice(const QString& id)
{
    if (id == m_device)
        return;
    m_device = id;
    m_stream.reset();
}

void OutputPort::rescan()
{
    m_wantsRescan = false;
    m_backend->rescan();
    const QList<AudioDevice> found = m_backend->devices();
    {
        const std::lock_guard lock(m_devicesMutex);
        if (found == m_devices)
            return;
        m_devices = found;
    }
    m_events(AudioOutputEvent::DevicesChanged);
}

void OutputPort::refreshDevices(bool isSounding)
{
    if (isSounding) { // looking would interrupt the sound; the next opening does it
        m_wantsRescan = true;
        return;
    }
    m_stream.reset();
    rescan();
}

QList<AudioDevice> OutputPort::devices() const
{
    const std::lock_guard lock(m_devicesMutex);
    return m_devices;
}
