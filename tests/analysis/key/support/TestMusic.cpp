#include "key/support/TestMusic.h"

#include <cmath>
#include <numbers>

namespace TestMusic {

namespace {

void add(std::span<float> samples, double hertz, double level)
{
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] += float(level * std::sin(2 * std::numbers::pi * hertz * double(i) / kSampleRate));
}

} // namespace

std::vector<float> played(std::span<const Chord> chords, double cents)
{
    std::vector<float> samples;
    for (const Chord& chord : chords) {
        const std::size_t start = samples.size();
        samples.resize(start + std::size_t(chord.seconds * kSampleRate));
        for (const int note : chord.notes) {
            const double hertz = 440 * std::exp2((note - 69 + cents / 100) / 12);
            for (int overtone = 1; overtone <= 5; ++overtone)
                add(std::span(samples).subspan(start), hertz * overtone, 0.1 / overtone / overtone);
        }
    }
    return samples;
}

std::vector<float> tone(double hertz, double seconds)
{
    std::vector<float> samples(std::size_t(seconds * kSampleRate));
    add(samples, hertz, 0.5);
    return samples;
}

std::vector<float> cadence(int tonic, bool isMinor, double seconds, double cents)
{
    const int third = isMinor ? 3 : 4;
    const auto chord = [&](int root) {
        const bool isDominant = root == 7;
        const int bass = 36 + (tonic + root) % 12;
        return Chord{{bass, bass + 24, bass + 24 + (isDominant ? 4 : third), bass + 31}, 0.8};
    };
    std::vector<Chord> chords;
    for (double length = 0; length < seconds; length += 3.2)
        chords.insert(chords.end(), {chord(0), chord(5), chord(7), chord(0)});
    return played(chords, cents);
}

} // namespace TestMusic
