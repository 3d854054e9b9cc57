#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

/// Collects the levels of a sound that arrives block by block, so that the sound itself is never held. The sound's
/// length is cut into equal buckets by integer division; in a sound of fewer frames than buckets these overlap, so that
/// each has at least one frame. Not a number and infinite samples count as silence.
class EnvelopeBuilder {
public:
    /// \param frameCount length of the whole sound. \param bucketCount values of the result. \param channelCount of
    /// every block. All three at least 1.
    EnvelopeBuilder(qint64 frameCount, int bucketCount, int channelCount);

    /// The next frames, interleaved, whole ones. Frames beyond the length are left out.
    void add(std::span<const float> block);
    /// The envelope of what was added, values from 0 to 1: the energies of the channels are averaged, of their peaks
    /// the largest counts. Buckets that got nothing are 0.
    std::vector<float> envelope() const;

private:
    struct Bucket {
        double energy = 0; ///< squares of all channels over the channel count
        float peak = 0;
        qint64 frames = 0;
    };

    qint64 startOf(qint64 bucket) const;
    qint64 endOf(qint64 bucket) const;

    const qint64 m_frameCount;
    const qint64 m_channelCount;
    std::vector<Bucket> m_buckets;
    qint64 m_position = 0;
};

/// The envelope of one channel that is held as a whole; empty without samples or with a count below 1.
std::vector<float> normalizedEnvelope(std::span<const float> samples, int sampleCount);
