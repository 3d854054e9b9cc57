#pragma once

#include "platform/audio/AudioFilePlayer.h"
#include "platform/audio/output/EngineThread.h"
#include "platform/audio/output/OutputPort.h"

#include <atomic>
#include <mutex>
#include <vector>

class PlaybackVoice;
struct FileSound;

/// The program's sound: one thread that decodes ahead, keeps the output open and tells of ends, and the device's
/// callback, which only copies. One file is heard at a time, the one that was started last.
class AudioEngine final : public AudioSystem, private SoundSource {
public:
    using MakeBackend = std::function<std::unique_ptr<OutputBackend>()>;

    /// Starts the engine's thread and returns at once; the backend is made there.
    /// \param makeBackend called on the engine's thread, which alone uses the backend; gives no null
    explicit AudioEngine(MakeBackend makeBackend);
    /// Closes the output and waits for the engine's thread, and for what was still being read of files that were
    /// given up.
    ~AudioEngine() override;

    std::unique_ptr<AudioFilePlayer> open(const QString& path, std::stop_token stop) override;
    QList<AudioDevice> devices() const override;
    void refreshDevices() override;
    void setDevice(const QString& id) override;
    QString device() const override { return m_device; }
    void setEventHandler(std::function<void(AudioOutputEvent)> handler) override;

    // For the player objects. Thread: any.

    /// Makes this file the one that is heard, in place of another. It sounds if its voice wants to play.
    void start(std::shared_ptr<FileSound> sound);
    /// Decodes from a place on. \param jump the number that PlaybackVoice::jumpTo() gave.
    void jump(std::shared_ptr<FileSound> sound, double seconds, uint32_t jump);
    /// The player object is gone: lets a pause fade out, then lets the file go on a thread of its own, for a disk may
    /// take long.
    void release(std::shared_ptr<FileSound> sound);
    /// Seconds until what is handed over now is heard; 0 before there is an output.
    double latency() const;

private:
    using Sound = std::shared_ptr<FileSound>;

    void render(std::span<float> out, int sampleRate) noexcept override;

    // The engine's thread.
    EngineThread::Seconds turn();
    void build();
    void prepare(const Sound& sound);
    bool tune(FileSound& sound);
    void awaitFade(const FileSound& sound) const;
    void startNow(const Sound& sound);
    void releaseNow(const Sound& sound);
    /// Lets the callback render \p sound, or nothing; on return it has left the one before.
    void setSounding(const Sound& sound);
    bool isSounding() const;
    void watchDevice();
    /// \return seconds until the end has to be looked at again.
    double watchEnd();
    void tell(AudioOutputEvent event);

    MakeBackend m_makeBackend;
    QString m_device; ///< main thread's
    std::mutex m_handlerMutex;
    std::function<void(AudioOutputEvent)> m_handler;

    std::unique_ptr<OutputPort> m_port; ///< the engine's thread's
    std::atomic<OutputPort*> m_readablePort = nullptr;
    std::vector<Sound> m_sounds;
    Sound m_sounding;
    double m_endHeardAt = 0; ///< on DeviceClock::systemSeconds(); 0 while no end is near

    std::atomic<PlaybackVoice*> m_rendered = nullptr;
    std::atomic<bool> m_isRendering = false;
    EngineThread m_disposal; ///< where files that were given up come to their end
    EngineThread m_thread;
};
