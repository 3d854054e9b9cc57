#pragma once

#include "platform/audio/output/DeviceClock.h"
#include "platform/audio/output/GainRamp.h"
#include "platform/audio/output/LatestValue.h"
#include "platform/audio/output/SampleRing.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <span>

/// What one file sounds like from one position on: filled by the decoder's thread, emptied by the device's callback.
struct VoiceSegment {
    static constexpr int64_t kEndUnknown = -1;

    SampleRing ring;
    int sampleRate = 0;
    double start = 0;                            ///< seconds in the file of the first frame
    uint32_t jump = 0;                           ///< the jump that it answers
    int64_t framesOut = 0;                       ///< frames given to the device; the callback's
    std::atomic<int64_t> endFrame = kEndUnknown; ///< frames in all, once the decoder has met the end
};

/// The meeting place of three threads that play one file: the main thread says what is wanted, the engine's thread
/// brings the samples, the device's callback renders. No one of them waits for another. Wishes of the main thread keep
/// their order however rarely the callback comes: a fade that was asked for before a jump is heard before it, a fade
/// that was asked for after it begins with the first frame of the new place.
class PlaybackVoice {
public:
    // Main thread.

    /// The callback's next turn goes on from position().
    void play();
    /// The callback's next turn fades out within 5 ms, without using that sound up.
    void pause();
    /// Whether it is to play: since play(), until pause() or a jump that does not stay playing. True also while the
    /// decoder has nothing to give and after the end.
    bool wantsPlaying() const { return m_controls.isPlaying; }
    /// \return the number of the jump, for the engine to answer with a segment. \param staysPlaying whether a playing
    /// voice plays on there.
    uint32_t jumpTo(double seconds, bool staysPlaying);
    /// The number that jumpTo() gave last; 0, which the first segment answers, before.
    uint32_t lastJump() const { return m_controls.jump; }
    /// Moves there within \p fadeSeconds, 0 for a step that does not click; counted from now on, or from the first
    /// frame after a jump that has not been made. Replaces an earlier wish that the callback has not taken.
    void setGain(float gain, double fadeSeconds);
    /// Seconds in the file of the next frame that goes out, or the target of a jump that has not been made yet.
    double position() const;
    /// Seconds of this file's sound that have gone out, whatever its position; never goes back.
    double deviceTime() { return m_clock.now(); }
    /// Whether everything up to the end has gone out since the last jump.
    bool hasEnded() const { return m_endedJump.load(std::memory_order_acquire) == m_controls.jump; }

    // Engine's thread.

    /// An empty segment that the callback does not know. \param capacityFrames size of its ring.
    VoiceSegment& beginSegment(double start, uint32_t jump, int sampleRate, int64_t capacityFrames);
    /// Lets the callback take the segment that was begun last. It may be filled on.
    void publishSegment();
    /// Takes the place of a callback while there is none: adopts what was published.
    void adoptWithoutCallback();
    /// Whether the main thread wants it to be heard.
    bool isPlayingWanted() const { return m_isPlayingWanted.load(std::memory_order_acquire); }
    /// Whether the callback's last turn ended in sound.
    bool isSounding() const { return m_wasSounding.load(std::memory_order_acquire); }
    /// Seconds in the file up to which it has gone out, if \p jump was made; else nothing.
    std::optional<double> positionAfter(uint32_t jump) const;
    /// The jump up to whose end everything has gone out; kNoJump before.
    uint32_t endedJump() const { return m_endedJump.load(std::memory_order_acquire); }
    /// Seconds that were missing because the decoder was late, for measuring.
    double starvedSeconds() const { return m_starvedSeconds.load(std::memory_order_relaxed); }

    /// Never given by jumpTo().
    static constexpr uint32_t kNoJump = 0xFFFFFFFF;

    // Device's callback. Never locks, allocates or blocks.

    /// Fills \p out with stereo frames, interleaved; what is missing becomes silence. \param sampleRate of the
    /// segments.
    void render(std::span<float> out, int sampleRate);

private:
    struct GainWish {
        uint32_t serial = 0; ///< 0 for none
        float gain = 1.0F;
        double fadeSeconds = 0;
    };
    struct Controls {
        bool isPlaying = false;
        uint32_t jump = 0;
        GainWish beforeJump;
        GainWish afterJump;
    };

    void publishControls();
    void renderTurn(std::span<float> out, int sampleRate);
    const GainWish& lastGain() const;
    bool takeGain(const GainWish& wish, int sampleRate);
    /// Whether there is a jump to make and its segment has not come yet.
    bool prepareJump(const Controls& controls, std::span<float>& out, int sampleRate);
    bool adoptPublished();
    std::span<float> renderSound(std::span<float> out);
    void renderPause(std::span<float> out, int sampleRate);
    void tellMain(const DeviceTurn& turn);

    // Main thread.
    Controls m_controls;
    double m_jumpTarget = 0;
    uint32_t m_gainSerial = 0;

    // Engine's thread.
    std::array<VoiceSegment, 2> m_segments;
    VoiceSegment* m_begun = &m_segments[0];
    bool m_isBegunPublished = false;

    // Between the threads.
    LatestValue<Controls> m_toCallback;
    std::atomic<VoiceSegment*> m_published = nullptr;
    std::atomic<uint32_t> m_doneJump = kNoJump;
    std::atomic<uint32_t> m_endedJump = kNoJump;
    std::atomic<bool> m_isPlayingWanted = false;
    std::atomic<bool> m_wasSounding = false;
    std::atomic<double> m_position = 0;
    std::atomic<double> m_starvedSeconds = 0;
    DeviceClock m_clock;

    // Callback.
    VoiceSegment* m_current = nullptr;
    GainRamp m_gain;
    GainRamp m_pauseGain; ///< takes the click out of a pause
    uint32_t m_takenGain = 0;
    bool m_isSounding = false;
    double m_soundOut = 0; ///< seconds that count on the device's clock
};
