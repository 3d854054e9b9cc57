#pragma once

#include <span>
#include <vector>

/// Sounds whose key is known because they are made from it.
namespace TestMusic {

inline constexpr int kSampleRate = 22050;

/// Notes of equal loudness, as MIDI numbers (69 is the A of 440 Hz), with four overtones each.
struct Chord {
    std::vector<int> notes;
    double seconds = 1;
};

/// \param cents   how far all notes are off.
std::vector<float> played(std::span<const Chord> chords, double cents = 0);
/// A bare sine.
std::vector<float> tone(double hertz, double seconds);
/// Tonic, subdominant, dominant and tonic, with their basses, over and over. \param tonic   pitch class.
std::vector<float> cadence(int tonic, bool isMinor, double seconds, double cents = 0);

} // namespace TestMusic
