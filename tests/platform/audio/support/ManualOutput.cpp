#include "support/ManualOutput.h"

#include "support/AllocationGuard.h"

#include <chrono>
#include <thread>

namespace {
// Some eight times as fast as a device, which leaves the decoder time to follow.
constexpr int kTurnFrames = 256;
constexpr auto kTurnPause = std::chrono::microseconds(700);
} // namespace

class ManualStream final : public OutputStream {
public:
    ManualStream(ManualOutput& output, int sampleRate, SoundSource& source)
        : m_output(output)
        , m_sampleRate(sampleRate)
        , m_source(source)
    {
    }
    ~ManualStream() override { stop(); }

    bool start() override
    {
        const std::lock_guard lock(m_output.m_mutex);
        m_output.m_running = this;
        m_output.m_source = &m_source;
        m_output.m_sampleRate = m_sampleRate;
        return true;
    }
    void stop() override
    {
        const std::lock_guard lock(m_output.m_mutex);
        if (m_output.m_running == this)
            m_output.m_running = nullptr;
    }
    bool isRunning() const override
    {
        const std::lock_guard lock(m_output.m_mutex);
        return m_output.m_running == this;
    }
    bool isAlive() const override { return m_output.isAlive; }
    int sampleRate() const override { return m_sampleRate; }
    double latency() const override { return m_output.latency; }
    int underruns() const override { return m_output.underruns; }

private:
    ManualOutput& m_output;
    int m_sampleRate;
    SoundSource& m_source;
};

class ManualBackend final : public OutputBackend {
public:
    explicit ManualBackend(ManualOutput& output)
        : m_output(output)
    {
    }
    void rescan() override { ++m_output.scans; }
    QList<AudioDevice> devices() const override
    {
        return {{QStringLiteral("test/one"), QStringLiteral("One")},
                {QStringLiteral("test/two"), QStringLiteral("Two")}};
    }
    std::unique_ptr<OutputStream> open(const Wish& wish, SoundSource& source) override
    {
        if (!m_output.isThere)
            return nullptr;
        m_output.isAlive = true;
        m_output.underruns = 0;
        m_output.wantedLatency = wish.latency;
        ++m_output.opened;
        {
            const std::lock_guard lock(m_output.m_mutex);
            m_output.m_lastDevice = wish.deviceID;
        }
        const int rate = wish.sampleRate == m_output.refusedRate ? 48000 : wish.sampleRate;
        return std::make_unique<ManualStream>(m_output, rate, source);
    }

private:
    ManualOutput& m_output;
};

std::unique_ptr<OutputBackend> ManualOutput::makeBackend()
{
    return std::make_unique<ManualBackend>(*this);
}

QString ManualOutput::lastDevice() const
{
    const std::lock_guard lock(m_mutex);
    return m_lastDevice;
}

std::vector<float> ManualOutput::pull(int frames)
{
    std::vector<float> stereo(static_cast<size_t>(frames) * 2, 99.0F);
    std::vector<float> left;
    left.reserve(static_cast<size_t>(frames));
    const std::lock_guard lock(m_mutex);
    if (!m_running)
        return {};
    {
        const AllocationGuard guard;
        m_source->render(stereo, m_sampleRate);
    }
    for (size_t index = 0; index < stereo.size(); index += 2)
        left.push_back(stereo[index]);
    return left;
}

std::vector<float> ManualOutput::pullSound(int frames, double limitSeconds)
{
    std::vector<float> sound;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::duration<double>(limitSeconds);
    while (static_cast<int>(sound.size()) < frames && std::chrono::steady_clock::now() < limit) {
        const std::vector<float> turn = pull(kTurnFrames);
        std::this_thread::sleep_for(kTurnPause);
        const bool isSilent = std::ranges::all_of(turn, [](float sample) { return sample == 0; });
        if (turn.empty() || (isSilent && sound.empty()))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        else
            sound.insert(sound.end(), turn.begin(), turn.end());
    }
    return sound;
}
