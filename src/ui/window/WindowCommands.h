#pragma once

#include "ui/commands/CommandCenter.h"
#include "ui/context/WindowContext.h"

#include <QObject>

class MainWindow;
class QAction;
class QMenu;

/// The table of commands as actions of the window: their keys, and the menu that a button of the header opens. There is
/// no menu bar. Thread: main.
class WindowCommands : public QObject {
    Q_OBJECT

public:
    /// \param window its section shown gives the rows; also binds what the window itself does.
    WindowCommands(const WindowContext& context, MainWindow& window);

    /// Adds what the section shown has of the commands, in its own words where it has some; called each time the menu
    /// opens.
    void fillMenu(QMenu& menu) const;
    /// Takes the language of the interface over.
    void retranslate();

private:
    void bindWindow();
    void addAction(const Command& command);
    QAction& action(CommandID id) const { return *m_actions[static_cast<size_t>(id)]; }
    CommandTarget target(CommandID id) const;
    QString text(CommandID id) const;
    bool isInMenu(CommandID id, bool hasSelection) const;
    void refreshUndo();

    WindowContext m_context;
    MainWindow& m_window;
    std::array<QAction*, kCommandCount> m_actions{};
};
