#pragma once

#include "platform/audio/output/OutputStream.h"

#include <optional>

/// The system's outputs through PortAudio. One object per process. Where the library cannot be started there are no
/// devices and no streams, until a rescan() succeeds.
class PortAudioBackend final : public OutputBackend {
public:
    PortAudioBackend();
    ~PortAudioBackend() override;

    void rescan() override;
    QList<AudioDevice> devices() const override;
    std::unique_ptr<OutputStream> open(const Wish& wish, SoundSource& source) override;

private:
    void initialize();
    void terminate();
    std::optional<int> indexOf(const QString& deviceID) const;

    bool m_isInitialized = false;
};
