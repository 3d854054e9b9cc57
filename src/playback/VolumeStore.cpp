#include "playback/VolumeStore.h"

#include "platform/Preferences.h"

#include <algorithm>

VolumeStore::VolumeStore(Preferences& preferences, async::Clock& clock)
    : m_preferences(preferences)
    , m_clock(clock)
{
}

VolumeStore::~VolumeStore()
{
    if (m_task.isActive())
        write();
}

double VolumeStore::stored() const
{
    return std::clamp(m_preferences.playerVolume.get(), 0.0, 1.0);
}

void VolumeStore::storeLater(double volume)
{
    m_waiting = volume;
    m_task.start([this](std::stop_token stop) { return writeLater(stop); });
}

async::Task<> VolumeStore::writeLater(std::stop_token stop)
{
    co_await m_clock.sleep(async::seconds(kDelay), stop);
    write();
}

void VolumeStore::write()
{
    m_preferences.playerVolume.set(m_waiting);
}
