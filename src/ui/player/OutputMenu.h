#pragma once

#include "ui/context/WindowContext.h"

#include <QBasicTimer>
#include <QMenu>

/// The outputs to choose from: the system's default, then the devices, with a mark at the present one. Looks for new
/// devices when it opens and follows what is found while it is open. The choice is remembered in the preferences.
class OutputMenu : public QMenu {
    Q_OBJECT

public:
    OutputMenu(const WindowContext& context, QWidget* parent);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void fill();

    WindowContext m_context;
    QBasicTimer m_looking;
    QStringList m_shown; ///< what the rows were made of
};
