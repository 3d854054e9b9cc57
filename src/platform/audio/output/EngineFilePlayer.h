#pragma once

#include "platform/audio/AudioFilePlayer.h"

#include <memory>

class AudioEngine;
struct FileSound;

/// The player object of the audio engine. It only states wishes: the voice and the engine's thread carry them out.
class EngineFilePlayer final : public AudioFilePlayer {
public:
    /// \param engine outlives the player. \param sound shared with the engine, which has primed it.
    EngineFilePlayer(AudioEngine& engine, std::shared_ptr<FileSound> sound);
    /// Pauses, without the finish handler, and gives the file back. Does not wait. Thread: any.
    ~EngineFilePlayer() override;

    void play() override;
    void pause() override;
    void stop() override { pause(); }
    bool isPlaying() const override;
    double currentTime() const override;
    void setCurrentTime(double seconds) override;
    double duration() const override;
    double deviceCurrentTime() const override;
    double outputLatency() const override;
    void setVolume(float gain, double fadeDuration) override;
    void setFinishHandler(std::function<void(bool successfully)> handler) override;

private:
    bool hasFinished() const;

    AudioEngine& m_engine;
    std::shared_ptr<FileSound> m_sound;
};
