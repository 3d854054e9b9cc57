#pragma once

#include "ui/context/WindowContext.h"

#include <QList>
#include <QObject>

class MainWindow;
class QAction;
class QKeySequence;
class QMenu;

/// The window's commands with their shortcuts; there is no menu bar, a button of the header opens them as a menu.
class WindowCommands : public QObject {
    Q_OBJECT

public:
    WindowCommands(const WindowContext& context, MainWindow& window);

    void fillMenu(QMenu& menu) const;
    void retranslate();

private:
    QAction* add(const QList<QKeySequence>& shortcuts, std::function<void()> perform);
    void refreshUndo();
    void toggleFavorites();
    void remove();
    void moveToTrash();
    void reveal();
    void pastePicture();
    void scaleTempo(double factor);

    WindowContext m_context;
    MainWindow& m_window;
    QAction* m_open;
    QAction* m_add;   ///< files into Covers, whose header has other buttons
    QAction* m_paste; ///< a picture into Covers
    QAction* m_undo;
    QAction* m_redo;
    QAction* m_selectAll;
    QAction* m_favorite;
    QAction* m_remove; ///< from the section shown
    QAction* m_trash;
    QAction* m_reveal;
    QAction* m_doubleTempo;
    QAction* m_halveTempo;
    QAction* m_tags;
};
