#pragma once

class AudioPlayer;
class AudioSystem;
class DashboardActions;
class LibraryStore;
class RowWaveforms;
class Theme;
class ThumbnailCache;
class WaveformCache;

namespace async {
class Clock;
class Executor;
} // namespace async

/// What the pieces of the window share. The references outlive them.
struct WindowContext {
    LibraryStore& store;
    DashboardActions& actions;
    AudioPlayer& player;
    AudioSystem& audio;
    Theme& theme;
    ThumbnailCache& thumbnails;
    WaveformCache& waveforms;
    RowWaveforms& rowWaveforms;
    async::Clock& clock;
    async::Executor& executor;
};
