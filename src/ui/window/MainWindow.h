#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/Track.h"

#include <QWidget>

#include <array>
#include <functional>
#include <memory>

class AudioPlayer;
class AudioSystem;
class Banner;
class DashboardActions;
class Inspector;
class LibraryStore;
class PlayerBar;
class RowWaveforms;
class QStackedWidget;
class QVBoxLayout;
class SectionView;
class Sidebar;
class StatusStrip;
class Theme;
class ThumbnailCache;
class WaveformCache;
class WindowCommands;
class WorkspaceWindowSizer;
struct LibrarySection;
struct ListChange;
struct TagInventory;
struct WindowContext;

namespace async {
class Clock;
class Executor;
} // namespace async

/// What the window stands on. The references outlive it.
struct WindowServices {
    /// As WindowContext has them, before there is a window.
    LibraryStore& store;
    DashboardActions& actions;
    AudioPlayer& player;
    AudioSystem& audio;
    async::Executor& executor;
    async::Clock& clock;
    WaveformCache& waveforms;
    /// Reads the picture of an audio file again; called on worker threads. Null if there is none.
    std::function<QByteArray(const QUrl&)> readArtwork = {};
    /// Looks through an audio file for what a save may take away; called on worker threads. Null if nothing can.
    std::function<TagInventory(const QUrl&)> readTagInventory = {};
};

/// The one window: sidebar, the seven sections, the player and the status line. Draws what the store
/// says and calls the dashboard for everything else. Thread: main.
class MainWindow : public QWidget {
    Q_OBJECT

public:
    /// Builds all its pieces and follows the store from then on. Not shown yet; its place and size are those that the
    /// preferences keep.
    explicit MainWindow(const WindowServices& services);
    ~MainWindow() override;

    /// The page of a section, shown or not; all seven are there from the beginning.
    SectionView& section(LibraryTab tab) const { return *m_sections[static_cast<size_t>(tab)]; }
    /// The page that the user sees.
    SectionView& activeSection() const;
    /// Its pieces; owned by the window.
    PlayerBar& player() const { return *m_player; }
    Sidebar& sidebar() const { return *m_sidebar; }
    /// The panel of tags, which moves to the section that is shown.
    Inspector& inspector() const { return *m_inspector; }
    Theme& theme() const { return *m_theme; }
    RowWaveforms& rowWaveforms() const { return *m_rowWaveforms; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;

private:
    void buildSections();
    void buildLayout();
    void connectWorkspace();
    void connectPreferences();
    void listChanged(Track::MetadataDestination list);
    /// The pages that show something else now.
    void markDirty(const std::function<bool(const LibrarySection&)>& concerns);
    void showTab(LibraryTab tab);
    void placePlayer();
    void applySidebar();
    void toggleSidebar();
    void openTrackMenu(const QPoint& globalPosition);
    void openSettings(const QPoint& globalPosition);
    /// Takes the language of the interface over.
    void retranslate();

    std::unique_ptr<Theme> m_theme;
    std::unique_ptr<ThumbnailCache> m_thumbnails;
    std::unique_ptr<RowWaveforms> m_rowWaveforms;
    std::unique_ptr<WindowContext> m_context;
    std::array<SectionView*, kAllLibraryTabs.size()> m_sections{};
    Sidebar* m_sidebar = nullptr;
    Inspector* m_inspector = nullptr;
    QStackedWidget* m_stack = nullptr;
    QVBoxLayout* m_column = nullptr; ///< sections and player
    PlayerBar* m_player = nullptr;
    StatusStrip* m_status = nullptr;
    Banner* m_banner = nullptr;
    std::unique_ptr<WindowCommands> m_commands;
    std::unique_ptr<WorkspaceWindowSizer> m_sizer;
};
