#pragma once

#include "ui/context/WindowContext.h"

#include <QList>
#include <QObject>

#include <functional>

class QAction;
class QKeySequence;
class QWidget;

/// The player's keys: space, arrows without modifiers, M, and Ctrl with left and right. KeyPrecedence says when a
/// control keeps them.
class PlayerCommands : public QObject {
    Q_OBJECT

public:
    /// \param toggleMute what M does. \param tap what T does.
    PlayerCommands(const WindowContext& context, QWidget& window, std::function<void()> toggleMute,
                   std::function<void()> tap);

    void retranslate();

private:
    struct Command {
        QAction* action;
        QString name; ///< key of its text
    };
    enum class Repeat { Yes, No };
    void add(const QString& name, const QList<QKeySequence>& keys, Repeat repeat, std::function<void()> perform);

    QWidget& m_window;
    QList<Command> m_commands;
};
