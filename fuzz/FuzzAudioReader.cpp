#include "platform/audio/AudioFileReader.h"
#include "platform/audio/FileImage.h"

#include <cstdlib>
#include <vector>

namespace {

/// Reads up to a second; a count or a position that does not agree is a find like a crash.
void readSome(AudioFileReader& reader)
{
    // A rate that nobody could play would only cost memory here.
    const qint64 frames = std::min(reader.sampleRate(), 48000);
    std::vector<float> sound(static_cast<size_t>(frames * reader.channelCount()));
    const qint64 before = reader.position();
    const qint64 got = reader.read(sound);
    if (got < 0 || got > frames || reader.position() != before + got || reader.position() > reader.frameCount())
        std::abort();
}

} // namespace

/// The input is the file; its last byte picks the rate and the channels that are wanted, and where to go.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const uint8_t choice = data[size - 1];
    const AudioFileReader::Wanted wanted{choice & 1 ? 44100 : 0, choice & 2 ? 2 : 0};
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        const auto reader = AudioFileReader::open(FileImage::ofBytes(bytes), wanted);
        readSome(*reader);
        reader->seek(reader->frameCount() * choice / 255);
        readSome(*reader);
        reader->seek(0);
        readSome(*reader);
    } catch (const AudioFileError&) {
    }
    return 0;
}
