#pragma once

#include "platform/audio/AudioFilePlayer.h"

/// Sound for pictures: every file opens, nothing is heard, and the position stands where it is put.
class DemoAudio final : public AudioSystem {
public:
    std::unique_ptr<AudioFilePlayer> open(const QString& path, std::stop_token stop) override;
    QList<AudioDevice> devices() const override;
    void refreshDevices() override {}
    void setDevice(const QString& id) override { m_device = id; }
    QString device() const override { return m_device; }
    void setEventHandler(std::function<void(AudioOutputEvent)>) override {}

private:
    QString m_device;
};
