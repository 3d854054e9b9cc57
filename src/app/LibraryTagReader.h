#pragma once

#include "core/library/reading/TagReader.h"

#include <QObject>

#include <atomic>

class Preferences;

/// The readers of tags, as the user's preferences want them. Made on the main thread, outlives the executor's jobs.
class LibraryTagReader final : public QObject, public TagReader {
public:
    /// Takes the preference over at once and with every change, so that workers need not ask for it. \param
    /// preferences outlives this; asked on the main thread alone.
    explicit LibraryTagReader(const Preferences& preferences);

    std::optional<LoadedTrackMetadata> read(const QUrl& url, const AudioTags& fallbackTags) override;

private:
    std::atomic_bool m_readsWindows1251;
};
