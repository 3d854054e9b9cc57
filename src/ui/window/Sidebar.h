#pragma once

#include "core/model/LibraryTab.h"
#include "ui/context/Delay.h"
#include "ui/context/WindowContext.h"
#include "ui/controls/Panel.h"

#include <QUrl>

#include <array>

class SidebarRow;
class ThemeButton;

/// The sections with their counts, and the settings. Wide, or narrow with icons only.
class Sidebar : public Panel {
    Q_OBJECT

public:
    explicit Sidebar(const WindowContext& context, QWidget* parent = nullptr);

    /// Marks the section shown; sends nothing.
    void setActiveTab(LibraryTab tab);
    /// Narrow, with icons only.
    void setCollapsed(bool collapsed);
    /// As setCollapsed() was last told.
    bool isCollapsed() const { return m_isCollapsed; }
    /// The lists changed; the counts follow a tenth of a second later.
    void countsChanged();
    /// Takes the language of the interface over.
    void retranslate();
    /// The row of a section; owned by the sidebar.
    SidebarRow& row(LibraryTab tab) const { return *m_rows[static_cast<size_t>(tab)]; }

Q_SIGNALS:
    /// The button at the bottom.
    void collapseToggled();
    /// \param globalPosition where their menu belongs.
    void settingsWanted(const QPoint& globalPosition);
    /// On the row of a section, which need not be the one shown.
    void filesDropped(const QList<QUrl>& urls, LibraryTab tab);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SidebarRow* addRow(LibraryTab tab);
    void updateCounts();

    WindowContext m_context;
    std::array<SidebarRow*, kAllLibraryTabs.size()> m_rows{};
    SidebarRow* m_settings;
    ThemeButton* m_collapse;
    Delay m_countDelay;
    bool m_isCollapsed = false;
};
