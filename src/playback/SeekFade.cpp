#include "playback/SeekFade.h"

#include "platform/audio/AudioFilePlayer.h"

#include <utility>

SeekFade::SeekFade(async::Clock& clock)
    : m_clock(clock)
{
}

void SeekFade::begin(AudioFilePlayer& audio, double target, Jump jump)
{
    if (!m_target)
        audio.setVolume(0, kFadeOut);
    m_target = target;
    m_task.start([this, jump = std::move(jump)](std::stop_token stop) { return jumpLater(jump, stop); });
}

bool SeekFade::cancel()
{
    m_task.cancel();
    return std::exchange(m_target, std::nullopt).has_value();
}

async::Task<> SeekFade::jumpLater(Jump jump, std::stop_token stop)
{
    co_await m_clock.sleep(async::seconds(kDelay), stop);
    const double target = *std::exchange(m_target, std::nullopt);
    jump(target); // may start another seek, which stops this task: nothing may follow
}
