#pragma once

#include "platform/audio/AudioFileReader.h"

#include <QByteArray>

#include <ostream>
#include <vector>

/// Files made by the encoders of ffmpeg, and what ffmpeg itself decodes them to.
namespace SoundFiles {

struct Kind {
    const char* name;      ///< file name, unique in a program
    const char* arguments; ///< of ffmpeg, between input and output
    int sampleRate = 44100;
    int channelCount = 2;
};
void PrintTo(const Kind& kind, std::ostream* out);

/// Path of a file of five seconds; made once.
QString make(const Kind& kind);
/// A file of that name with these bytes.
QString write(const QString& name, const QByteArray& bytes);
QByteArray bytesOf(const QString& path);
/// What ffmpeg delivers for the file, interleaved floats.
std::vector<float> decoded(const QString& path);
/// The rest of the file, read in pieces of odd sizes. Fails the test if it comes to no end.
std::vector<float> rest(AudioFileReader& reader);

} // namespace SoundFiles
