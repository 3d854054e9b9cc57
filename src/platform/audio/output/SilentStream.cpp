#include "platform/audio/output/SilentStream.h"

#include "platform/audio/output/SampleRing.h"

#include <chrono>

namespace {
constexpr int kTurnsPerSecond = 100; // chosen: about as devices do
}

SilentStream::SilentStream(int sampleRate, SoundSource& source)
    : m_sampleRate(sampleRate)
    , m_source(source)
    , m_buffer(static_cast<size_t>(sampleRate / kTurnsPerSecond + 1) * SampleRing::kChannels)
{
}

SilentStream::~SilentStream()
{
    stop();
}

bool SilentStream::start()
{
    if (!m_thread.joinable())
        m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
    return true;
}

void SilentStream::stop()
{
    m_thread = {}; // asks for the stop and waits for it
}

void SilentStream::run(const std::stop_token& stop)
{
    const auto frames = static_cast<double>(m_buffer.size() / SampleRing::kChannels);
    const auto turn = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(frames / m_sampleRate));
    auto next = std::chrono::steady_clock::now();
    while (!stop.stop_requested()) {
        m_source.render(m_buffer, m_sampleRate);
        next += turn;
        const auto now = std::chrono::steady_clock::now();
        if (next + turn * 10 < now) // the machine slept: nothing is made up for
            next = now;
        std::this_thread::sleep_until(next);
    }
}
