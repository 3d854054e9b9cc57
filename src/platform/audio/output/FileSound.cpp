#include "platform/audio/output/FileSound.h"

#include "platform/audio/AudioFileReader.h"
#include "platform/audio/FileImage.h"

FileSound::FileSound(std::shared_ptr<FileImage> image, std::unique_ptr<AudioFileReader> reader)
    : filler(image, std::move(reader), voice)
    , duration(filler.duration())
    , m_reading([image](const std::stop_token& stop) { image->fill(stop); })
{
}

void FileSound::setFinishHandler(std::function<void(bool)> handler)
{
    const std::lock_guard lock(m_handlerMutex);
    m_handler = std::move(handler);
}

void FileSound::finish(bool successfully)
{
    const std::lock_guard lock(m_handlerMutex);
    if (m_handler)
        m_handler(successfully);
}
