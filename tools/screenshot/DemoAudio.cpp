#include "DemoAudio.h"

namespace {

constexpr double kLength = 324; // seconds

class DemoFile final : public AudioFilePlayer {
public:
    void play() override { m_isPlaying = true; }
    void pause() override { m_isPlaying = false; }
    void stop() override { m_isPlaying = false; }
    bool isPlaying() const override { return m_isPlaying; }
    double currentTime() const override { return m_position; }
    void setCurrentTime(double seconds) override { m_position = seconds; }
    double duration() const override { return kLength; }
    double deviceCurrentTime() const override { return 0; }
    double outputLatency() const override { return 0; }
    void setVolume(float, double) override {}
    void setFinishHandler(std::function<void(bool)>) override {}

private:
    bool m_isPlaying = false;
    double m_position = 0;
};

} // namespace

std::unique_ptr<AudioFilePlayer> DemoAudio::open(const QString&, std::stop_token)
{
    return std::make_unique<DemoFile>();
}

QList<AudioDevice> DemoAudio::devices() const
{
    return {{QStringLiteral("deck"), QStringLiteral("USB Audio CODEC")},
            {QStringLiteral("phones"), QStringLiteral("Built-in Audio Analog Stereo")}};
}
