#pragma once

class DashboardActions;
class LibraryStore;
class Theme;
class ThumbnailCache;

/// What the pieces of the window share. The references outlive them.
struct WindowContext {
    LibraryStore& library;
    DashboardActions& actions;
    Theme& theme;
    ThumbnailCache& thumbnails;
};
