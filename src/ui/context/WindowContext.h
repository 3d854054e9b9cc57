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

/// What the pieces of the window share. A value of references, which outlive the pieces; the window makes it once and
/// hands it on. Thread: main.
struct WindowContext {
    /// To be asked and listened to; changed by commands and by `actions` alone.
    LibraryStore& store;
    DashboardActions& actions;
    AudioPlayer& player;
    /// The sound outputs, for the menu that chooses one.
    AudioSystem& audio;
    /// Colours and fonts of all that is drawn.
    Theme& theme;
    /// Covers and waveforms, drawn from what is at hand and asked for where nothing is.
    ThumbnailCache& thumbnails;
    WaveformCache& waveforms;
    RowWaveforms& rowWaveforms;
    /// For delays and background work of the pieces themselves.
    async::Clock& clock;
    async::Executor& executor;
};
