#pragma once

#include "app/ToolkitTexts.h"
#include "async/TaskSlot.h"

#include <QList>
#include <QObject>
#include <QUrl>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

class AudioAnalyser;
class AudioPlayer;
class AudioSystem;
class ContentView;
class EditJournal;
class Envelopes;
class LibraryPlayer;
class LibraryStore;
class Lifecycle;
class MainWindow;
class Notifications;
class Preferences;
class ResourceWatch;
class TagFiles;
class TagReader;
class TrashCan;
class TerminationSignals;
class WaveformCache;
class WorkspaceSessionStorage;

namespace async {
class Clock;
class Executor;
} // namespace async

/// The entry of the program: migrates old preferences, owns the long-lived objects, opens the one window and ties the
/// life of the process to the store. Created once, after QApplication. Thread: main.
class VelmoraApp : public QObject {
    Q_OBJECT

public:
    /// \param preferences the user's; migrated here. \param audio the sound output. \param storage where the workspace
    /// is kept; null where nothing is. The other objects come into being with open().
    VelmoraApp(std::unique_ptr<Preferences> preferences, std::unique_ptr<AudioSystem> audio,
               std::unique_ptr<WorkspaceSessionStorage> storage);
    /// Keeps no workspace.
    VelmoraApp(std::unique_ptr<Preferences> preferences, std::unique_ptr<AudioSystem> audio);
    /// Saves what is to be saved, then takes the scene down and waits for a file that is being written.
    ~VelmoraApp() override;

    /// Builds the scene and shows the window. \param files handed over by the desktop: a drop on the playlist.
    void open(const QList<QUrl>& files);
    /// Files of another start of the program: a drop on the playlist. The window comes to the front.
    void openAgain(const QList<QUrl>& files);

    /// The objects of the scene, owned here; there from open() on.
    LibraryStore& store() const { return *m_library; }
    AudioPlayer& player() const { return *m_player; }
    ContentView& contentView() const { return *m_contentView; }
    MainWindow& window() const { return *m_window; }
    /// There from the beginning.
    Preferences& preferences() const { return *m_preferences; }

private:
    /// open() in its steps. The store and what it stands on; what is needed later is made earlier.
    void buildStore();
    void buildPlayer();
    /// The dashboard, the window, and what the dashboard asks of the desktop.
    void buildWindow();
    /// What is saved when the window loses the user's attention, at the end, and when the system asks the program to
    /// end.
    void watchLifecycle();
    void loadIcon();
    async::Task<> sweepTemporaryFiles(std::stop_token stop);
    void chooseImage(std::function<void(const QByteArray&)> chosen);
    /// Reads the file of a picture on a worker; empty bytes where it cannot be read.
    async::Task<> readImage(QUrl url, std::function<void(const QByteArray&)> chosen, std::stop_token stop);

    std::unique_ptr<Preferences> m_preferences;
    ToolkitTexts m_toolkitTexts;
    std::unique_ptr<AudioSystem> m_audio; // before the executor, whose last jobs may be opening a file
    std::unique_ptr<Notifications> m_notifications;
    std::unique_ptr<async::Clock> m_clock;
    std::unique_ptr<TagFiles> m_tagFiles; // before the executor, whose last job may be writing a file
    std::unique_ptr<TagReader> m_tagReader;
    std::unique_ptr<AudioAnalyser> m_analyser;
    std::unique_ptr<WorkspaceSessionStorage> m_sessionStorage; // likewise
    std::unique_ptr<EditJournal> m_editJournal;                // and so
    std::unique_ptr<TrashCan> m_trashCan;                      // or moving one
    std::unique_ptr<async::Executor> m_executor;
    std::unique_ptr<ResourceWatch> m_resourceWatch;
    std::unique_ptr<WaveformCache> m_waveforms;
    std::unique_ptr<Envelopes> m_envelopes;
    std::unique_ptr<LibraryStore> m_library;
    std::unique_ptr<AudioPlayer> m_player;
    std::unique_ptr<LibraryPlayer> m_libraryPlayer;
    std::unique_ptr<ContentView> m_contentView;
    std::unique_ptr<Lifecycle> m_lifecycle;
    std::unique_ptr<TerminationSignals> m_terminationSignals;
    std::unique_ptr<MainWindow> m_window;
    async::TaskSlot m_sweep;
    async::TaskSlot m_imageRead;
};
