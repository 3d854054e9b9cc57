#pragma once

#include "platform/audio/output/PlaybackVoice.h"
#include "platform/audio/output/VoiceFiller.h"

#include <functional>
#include <mutex>
#include <thread>

/// All that one opened file needs to be heard, shared by its player object and the engine. Its end waits for a block
/// that is being read, so the engine lets it come on a thread that has nothing else to do.
struct FileSound {
    /// Begins to bring the file into memory, on a thread of its own. \param reader delivers two channels.
    FileSound(std::shared_ptr<FileImage> image, std::unique_ptr<AudioFileReader> reader);

    /// Calls the finish handler, if there still is one. Thread: the engine's.
    void finish(bool successfully);
    /// Replaces the handler, or takes it away where it is empty; on return the former one is not running and will not
    /// be called. Thread: any.
    void setFinishHandler(std::function<void(bool)> handler);
    /// Lets the reading into memory end at its next block.
    void stopReading() { m_reading.request_stop(); }
    /// Takes over what the filler knows about the length.
    void updateDuration() { duration.store(filler.duration(), std::memory_order_relaxed); }

    PlaybackVoice voice;
    VoiceFiller filler; ///< the engine's
    std::atomic<double> duration;
    std::atomic<uint32_t> finishedJump = PlaybackVoice::kNoJump; ///< the jump after which the end was heard
    std::atomic<bool> isLost = false;                            ///< the device went away while this played

private:
    std::mutex m_handlerMutex;
    std::function<void(bool)> m_handler;
    std::jthread m_reading; ///< brings the rest of the file into memory
};
