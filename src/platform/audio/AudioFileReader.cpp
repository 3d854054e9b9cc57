#include "platform/audio/AudioFileReader.h"

#include "platform/audio/FileImage.h"
#include "platform/audio/RateConverter.h"
#include "platform/audio/SoundStream.h"

#include <numeric>

namespace {

/// Frames that are read from the file at a time while the rate is converted.
constexpr qint64 kPieceFrames = 4096;
/// Sound before the target that a rate converter sees after a seek, so that its filter is filled: 100 ms, far longer
/// than the filter for any pair of rates.
constexpr qint64 kFilterPieces = 10;

} // namespace

struct AudioFileReader::State {
    State(std::shared_ptr<FileImage> image, const Wanted& wanted)
        : stream(std::move(image), wanted.channelCount)
        , sampleRate(wanted.sampleRate > 0 ? wanted.sampleRate : stream.sampleRate())
    {
        if (sampleRate != stream.sampleRate())
            rate.emplace(stream.sampleRate(), sampleRate, stream.channelCount());
        frameCount = delivered(stream.measure());
    }

    /// Delivered frames in that many of the file's, rounded up.
    qint64 delivered(qint64 frames) const
    {
        return rate ? av_rescale_rnd(frames, sampleRate, stream.sampleRate(), AV_ROUND_UP) : frames;
    }

    qint64 readSafely(std::span<float> into);
    qint64 readConverted(std::span<float> into);
    bool refill();
    void seekConverted(qint64 frame);

    SoundStream stream;
    int sampleRate;
    qint64 frameCount = 0;
    qint64 position = 0;
    bool hasFailed = false; ///< the file can no longer be read: the sound ends here

    // With another rate only.
    std::optional<RateConverter> rate;
    std::vector<float> piece;
    std::vector<float> ready;
    size_t readyOffset = 0;
    qint64 toDrop = 0; ///< converted frames before the target
    bool isDrained = false;
};

bool AudioFileReader::State::refill()
{
    ready.clear();
    readyOffset = 0;
    while (ready.empty() && !isDrained) {
        const auto channels = static_cast<size_t>(stream.channelCount());
        piece.resize(static_cast<size_t>(kPieceFrames) * channels);
        const qint64 got = stream.read(piece);
        isDrained = got == 0;
        rate->convert(std::span(piece).first(static_cast<size_t>(got) * channels), ready);
        const size_t dropped = std::min(ready.size(), static_cast<size_t>(toDrop) * channels);
        ready.erase(ready.begin(), ready.begin() + static_cast<std::ptrdiff_t>(dropped));
        toDrop -= static_cast<qint64>(dropped / channels);
    }
    return !ready.empty();
}

qint64 AudioFileReader::State::readConverted(std::span<float> into)
{
    size_t done = 0;
    while (done < into.size()) {
        if (readyOffset == ready.size() && !refill())
            break;
        const size_t count = std::min(into.size() - done, ready.size() - readyOffset);
        std::copy_n(ready.begin() + static_cast<std::ptrdiff_t>(readyOffset), count,
                    into.begin() + static_cast<std::ptrdiff_t>(done));
        readyOffset += count;
        done += count;
    }
    return static_cast<qint64>(done) / stream.channelCount();
}

qint64 AudioFileReader::State::readSafely(std::span<float> into)
{
    try {
        if (!hasFailed)
            return rate ? readConverted(into) : stream.read(into);
    } catch (const AudioFileError&) {
        hasFailed = true;
    }
    return 0;
}

void AudioFileReader::State::seekConverted(qint64 frame)
{
    // Both rates share a frame every so often; from such a one on the converter's phases are those of a reading from
    // the beginning.
    const qint64 shared = std::gcd(sampleRate, stream.sampleRate());
    const qint64 periodIn = stream.sampleRate() / shared;
    const qint64 periodOut = sampleRate / shared;
    const qint64 runUp = stream.sampleRate() / kFilterPieces / periodIn + 1;
    const qint64 periods = std::max<qint64>(0, frame / periodOut - runUp);
    stream.seek(periods * periodIn);
    rate->reset();
    ready.clear();
    readyOffset = 0;
    isDrained = false;
    toDrop = frame - periods * periodOut;
}

AudioFileReader::AudioFileReader(std::unique_ptr<State> state)
    : m_state(std::move(state))
{
}

AudioFileReader::~AudioFileReader() = default;

std::unique_ptr<AudioFileReader> AudioFileReader::open(std::shared_ptr<FileImage> image, const Wanted& wanted)
{
    auto state = std::make_unique<State>(std::move(image), wanted);
    return std::unique_ptr<AudioFileReader>(new AudioFileReader(std::move(state)));
}

std::unique_ptr<AudioFileReader> AudioFileReader::open(const QString& path, const Wanted& wanted)
{
    return open(FileImage::open(path), wanted);
}

int AudioFileReader::sampleRate() const
{
    return m_state->sampleRate;
}

int AudioFileReader::channelCount() const
{
    return m_state->stream.channelCount();
}

int AudioFileReader::fileSampleRate() const
{
    return m_state->stream.sampleRate();
}

int AudioFileReader::fileChannelCount() const
{
    return m_state->stream.fileChannelCount();
}

qint64 AudioFileReader::frameCount() const
{
    return m_state->frameCount;
}

qint64 AudioFileReader::position() const
{
    return m_state->position;
}

bool AudioFileReader::hasFailed() const
{
    return m_state->hasFailed;
}

qint64 AudioFileReader::read(std::span<float> into)
{
    const auto channels = static_cast<size_t>(channelCount());
    into = into.first(into.size() / channels * channels);
    const qint64 count = m_state->readSafely(into);
    m_state->position += count;
    if (static_cast<size_t>(count) * channels < into.size())
        m_state->frameCount = m_state->position;
    else
        m_state->frameCount = std::max(m_state->frameCount, m_state->position);
    return count;
}

void AudioFileReader::seek(qint64 frame)
{
    State& state = *m_state;
    frame = std::clamp<qint64>(frame, 0, state.frameCount);
    state.position = frame;
    try {
        if (state.rate) {
            state.seekConverted(frame);
            return;
        }
        state.stream.seek(frame);
        state.position = state.stream.position();
    } catch (const AudioFileError&) {
        state.hasFailed = true;
    }
    // The sound ended before: the length that was told was too long.
    if (state.position < frame)
        state.frameCount = state.position;
}
