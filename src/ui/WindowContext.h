#pragma once

class AudioPlayer;
class AudioSystem;
class DashboardActions;
class LibraryStore;
class Theme;
class ThumbnailCache;

/// What the pieces of the window share. The references outlive them.
struct WindowContext {
    LibraryStore& library;
    DashboardActions& actions;
    AudioPlayer& player;
    AudioSystem& audio;
    Theme& theme;
    ThumbnailCache& thumbnails;
};
