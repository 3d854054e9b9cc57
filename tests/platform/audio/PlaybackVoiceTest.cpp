// What the device's callback makes of the wishes of the main thread, turn by turn.

#include "platform/audio/output/PlaybackVoice.h"
#include "support/AllocationGuard.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

constexpr int kRate = 10'000; // 10 frames a millisecond
constexpr float kOldPlace = 1.0F;
constexpr float kNewPlace = 0.5F;

class PlaybackVoiceTest : public testing::Test {
protected:
    /// A segment of frames of one value, or counting up from 0 where \p value is nothing.
    void bring(uint32_t jump, double start, int frames, std::optional<float> value, bool isWhole = false)
    {
        VoiceSegment& segment = voice.beginSegment(start, jump, kRate, kRate);
        write(segment, frames, value);
        if (isWhole)
            segment.endFrame = frames;
        voice.publishSegment();
    }

    static void write(VoiceSegment& segment, int frames, std::optional<float> value)
    {
        int index = 0;
        while (frames > 0) {
            const std::span<float> room = segment.ring.writeSpan(frames);
            for (float& sample : room)
                sample = value.value_or(static_cast<float>(index++ / 2));
            segment.ring.commit(static_cast<int64_t>(room.size()) / 2);
            frames -= static_cast<int>(room.size()) / 2;
        }
    }

    /// The left channel of the next frames; both channels are the same.
    std::vector<float> render(int frames)
    {
        std::vector<float> stereo(static_cast<size_t>(frames) * 2, 99.0F);
        {
            const AllocationGuard guard;
            voice.render(stereo, kRate);
        }
        std::vector<float> left;
        for (size_t index = 0; index < stereo.size(); index += 2) {
            EXPECT_EQ(stereo[index], stereo[index + 1]);
            left.push_back(stereo[index]);
        }
        return left;
    }

    void startAtOldPlace()
    {
        bring(0, 0, kRate, kOldPlace);
        voice.play();
        render(100);
    }

    PlaybackVoice voice;
};

std::vector<float> constant(int count, float value)
{
    return std::vector<float>(static_cast<size_t>(count), value);
}

/// A straight line of \p count values that ends with \p to.
std::vector<float> line(int count, float from, float to)
{
    std::vector<float> values;
    for (int index = 1; index <= count; ++index)
        values.push_back(from + (to - from) * static_cast<float>(index) / static_cast<float>(count));
    return values;
}

std::vector<float> operator+(std::vector<float> first, const std::vector<float>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

void expectNear(const std::vector<float>& actual, const std::vector<float>& expected)
{
    ASSERT_THAT(actual, testing::Pointwise(testing::FloatNear(1e-4F), expected));
}

/// Both fades and the jump, asked for before the callback comes again, rendered in turns of different lengths.
class SeekInTurns : public PlaybackVoiceTest, public testing::WithParamInterface<int> {};

TEST_P(SeekInTurns, FadesOutJumpsAndFadesIn)
{
    startAtOldPlace();
    voice.setGain(0, 0.012);
    const uint32_t jump = voice.jumpTo(7.0, true);
    voice.setGain(1, 0.018);
    EXPECT_EQ(voice.position(), 7.0) << "from the moment of the wish";
    bring(jump, 7.0, kRate, kNewPlace);
    std::vector<float> heard;
    for (int frames = 0; frames < 600; frames += GetParam())
        heard = heard + render(GetParam());
    heard.resize(600);
    expectNear(heard, line(120, 1, 0) + line(180, 0, kNewPlace) + constant(300, kNewPlace));
    EXPECT_GE(voice.position(), 7.0 + 0.048);
    EXPECT_LT(voice.position(), 7.0 + 0.048 + GetParam() / double(kRate));
}

INSTANTIATE_TEST_SUITE_P(Turns, SeekInTurns, testing::Values(1, 10, 60, 120, 130, 300, 600));

TEST_F(PlaybackVoiceTest, AJumpWaitsInSilenceForItsSamplesAndTheClockWaitsToo)
{
    startAtOldPlace();
    voice.setGain(0, 0.012);
    const uint32_t jump = voice.jumpTo(3.0, true);
    voice.setGain(1, 0.018);
    expectNear(render(200), line(120, 1, 0) + constant(80, 0));
    const double clock = voice.deviceTime();
    EXPECT_EQ(render(200), constant(200, 0));
    EXPECT_EQ(voice.position(), 3.0);
    EXPECT_EQ(voice.deviceTime(), clock);
    bring(jump, 3.0, kRate, kNewPlace);
    expectNear(render(200), line(180, 0, kNewPlace) + constant(20, kNewPlace));
}

TEST_F(PlaybackVoiceTest, OfABurstOfJumpsOnlyTheLastIsHeard)
{
    startAtOldPlace();
    uint32_t jump = 0;
    for (int number = 1; number <= 5; ++number) {
        voice.setGain(0, 0.012);
        jump = voice.jumpTo(number, true);
        voice.setGain(1, 0.018);
        if (number % 2 == 1)
            bring(jump, number, kRate, 0.1F * static_cast<float>(number));
    }
    expectNear(render(320), line(120, 1, 0) + line(180, 0, 0.5F) + constant(20, 0.5F));
    EXPECT_EQ(voice.lastJump(), jump);
}

TEST_F(PlaybackVoiceTest, SegmentsChangeHandsHoweverTheCallbackFallsBetween)
{
    startAtOldPlace();
    for (int round = 1; round < 200; ++round) {
        const uint32_t jump = voice.jumpTo(round, true);
        const auto value = static_cast<float>(round);
        if (round % 3 == 0)
            render(5);
        if (round % 7 == 0) { // begun, but overtaken by another jump before it was let out
            write(voice.beginSegment(round, jump, kRate, kRate), 50, -1);
        }
        bring(jump, round, 200, value);
        if (round % 5 == 0)
            continue; // overtaken before the callback came
        ASSERT_EQ(render(20), constant(20, value)) << round;
    }
}

TEST_F(PlaybackVoiceTest, APauseFadesWithoutUsingUpWhatItFades)
{
    bring(0, 0, kRate, std::nullopt);
    voice.play();
    render(1000);
    voice.pause();
    const std::vector<float> tail = render(100);
    EXPECT_NEAR(tail[0], 1000 * 0.98, 1);
    EXPECT_EQ(tail[49], 0);
    EXPECT_EQ(tail[99], 0);
    EXPECT_DOUBLE_EQ(voice.position(), 0.1);
    EXPECT_EQ(render(30), constant(30, 0));
    voice.play();
    const std::vector<float> again = render(100);
    EXPECT_NEAR(again[24], 1024 * 0.5, 15);
    EXPECT_EQ(again[60], 1060) << "resumes exactly where it was";
}

TEST_F(PlaybackVoiceTest, AStepOfTheVolumeIsSmoothedOnlyWhileSomethingSounds)
{
    voice.setGain(0.5F, 0);
    bring(0, 0, kRate, kOldPlace);
    voice.play();
    EXPECT_EQ(render(10), constant(10, 0.5F));
    voice.setGain(1.0F, 0);
    expectNear(render(40), line(30, 0.5F, 1) + constant(10, 1));
}

TEST_F(PlaybackVoiceTest, TheEndIsToldOnceAndForItsOwnJump)
{
    bring(0, 0, 100, kOldPlace, true);
    voice.play();
    EXPECT_EQ(render(150), constant(100, kOldPlace) + constant(50, 0));
    EXPECT_TRUE(voice.hasEnded());
    EXPECT_EQ(voice.starvedSeconds(), 0) << "an end is no lack";
    EXPECT_DOUBLE_EQ(voice.position(), 0.01);
    const uint32_t jump = voice.jumpTo(0, true);
    EXPECT_FALSE(voice.hasEnded());
    bring(jump, 0, 100, kNewPlace, true);
    render(50);
    EXPECT_FALSE(voice.hasEnded());
    render(51);
    EXPECT_TRUE(voice.hasEnded());
}

TEST_F(PlaybackVoiceTest, AnEmptyFileEndsAtOnce)
{
    bring(0, 0, 0, kOldPlace, true);
    voice.play();
    EXPECT_EQ(render(10), constant(10, 0));
    EXPECT_TRUE(voice.hasEnded());
}

TEST_F(PlaybackVoiceTest, LackOfSamplesIsSilentAndStopsTheClock)
{
    VoiceSegment& segment = voice.beginSegment(0, 0, kRate, kRate);
    write(segment, 100, kOldPlace);
    voice.publishSegment();
    voice.play();
    EXPECT_EQ(render(300), constant(100, kOldPlace) + constant(200, 0));
    EXPECT_DOUBLE_EQ(voice.starvedSeconds(), 0.02);
    EXPECT_DOUBLE_EQ(voice.position(), 0.01);
    EXPECT_LE(voice.deviceTime(), 0.01);
    EXPECT_FALSE(voice.hasEnded());
    write(segment, 100, kNewPlace);
    EXPECT_EQ(render(100), constant(100, kNewPlace)) << "goes on where it was";
}

TEST_F(PlaybackVoiceTest, AJumpOfAPausedVoiceStaysSilent)
{
    startAtOldPlace();
    voice.pause();
    render(100);
    const uint32_t jump = voice.jumpTo(4.0, false);
    bring(jump, 4.0, kRate, kNewPlace);
    EXPECT_EQ(render(100), constant(100, 0));
    EXPECT_EQ(voice.position(), 4.0);
    voice.play();
    EXPECT_EQ(render(10), constant(10, kNewPlace)) << "a new place is not the resumption of a pause";
}

} // namespace
