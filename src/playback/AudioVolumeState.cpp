#include "playback/AudioVolumeState.h"

void AudioVolumeState::setValue(float value)
{
    if (m_value == value)
        return;
    m_value = value;
    emit valueChanged();
}
