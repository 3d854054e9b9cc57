#pragma once

#include <QObject>
#include <QSize>

class Preferences;
class QWidget;

/// Keeps the window's size in step with its layout, and its place over restarts.
class WorkspaceWindowSizer : public QObject {
    Q_OBJECT

public:
    /// Device-independent pixels, by WorkspaceLayout: the smallest size, and the one that a change of the layout
    /// gives.
    static constexpr QSize kFullMinimum{1280, 760};
    static constexpr QSize kFullDefault{1440, 900};
    static constexpr QSize kCompactMinimum{900, 620};
    static constexpr QSize kCompactDefault{1040, 700};

    /// Restores the remembered place at once, or takes the layout's default size.
    WorkspaceWindowSizer(QWidget& window, Preferences& preferences);

    /// Stores the window's place.
    void remember();

private:
    bool isCompact() const;
    void applyMinimum();
    void layoutChanged();

    QWidget& m_window;
    Preferences& m_preferences;
};
