#pragma once

#include "app/ToolkitTexts.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <memory>

class ContentView;
class LibraryStore;
class Lifecycle;
class MainWindow;
class Notifications;
class Preferences;
class TagWriter;
class TerminationSignals;

namespace async {
class Clock;
class Executor;
} // namespace async

/// The entry of the program: migrates old preferences, owns the long-lived objects, opens the one window and ties the
/// life of the process to the store. Created once, after QApplication. Thread: main.
class VelmoraApp : public QObject {
    Q_OBJECT

public:
    /// \param preferences the user's; migrated here. The objects come into being with open().
    explicit VelmoraApp(std::unique_ptr<Preferences> preferences);
    ~VelmoraApp() override;

    /// Builds the scene and shows the window. \param files handed over by the desktop: a drop on the playlist.
    void open(const QList<QUrl>& files);

    LibraryStore& library() const { return *m_library; }
    ContentView& contentView() const { return *m_contentView; }
    MainWindow& window() const { return *m_window; }
    Preferences& preferences() const { return *m_preferences; }

private:
    void buildStore();
    void buildWindow();
    void watchLifecycle();
    void loadIcon();

    std::unique_ptr<Preferences> m_preferences;
    ToolkitTexts m_toolkitTexts;
    std::unique_ptr<Notifications> m_notifications;
    std::unique_ptr<async::Clock> m_clock;
    std::unique_ptr<async::Executor> m_executor;
    std::unique_ptr<TagWriter> m_tagWriter;
    std::unique_ptr<LibraryStore> m_library;
    std::unique_ptr<ContentView> m_contentView;
    std::unique_ptr<Lifecycle> m_lifecycle;
    std::unique_ptr<TerminationSignals> m_terminationSignals;
    std::unique_ptr<MainWindow> m_window;
};
