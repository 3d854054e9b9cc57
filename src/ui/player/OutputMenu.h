#pragma once

#include "ui/context/Delay.h"
#include "ui/context/WindowContext.h"

#include <QMenu>

/// The outputs to choose from: the system's default, then the devices, with a mark at the present one. Looks for new
/// devices when it opens and follows what is found while it is open. The choice is remembered in the preferences.
class OutputMenu : public QMenu {
    Q_OBJECT

public:
    /// Looks for devices at once and as long as it is open.
    OutputMenu(const WindowContext& context, QWidget* parent);

protected:
private:
    void fill();

    WindowContext m_context;
    Delay m_look;
    QStringList m_shown; ///< what the rows were made of
};
