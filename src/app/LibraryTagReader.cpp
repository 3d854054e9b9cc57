#include "app/LibraryTagReader.h"

#include "platform/Preferences.h"
#include "tags/AudioMetadataLoader.h"

LibraryTagReader::LibraryTagReader(const Preferences& preferences)
    : m_readsWindows1251(preferences.readsWindows1251Tags.get())
{
    connect(&preferences, &Preferences::changed, this, [this, &preferences](const QString& key) {
        if (key == preferences.readsWindows1251Tags.key())
            m_readsWindows1251 = preferences.readsWindows1251Tags.get();
    });
}

std::optional<LoadedTrackMetadata> LibraryTagReader::read(const QUrl& url, const AudioTags& fallbackTags)
{
    return AudioMetadataLoader::loadIfReadable(url, fallbackTags, m_readsWindows1251);
}
