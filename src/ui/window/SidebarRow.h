#pragma once

#include <QAbstractButton>

class Theme;

/// One row of the sidebar: icon, label, count.
class SidebarRow : public QAbstractButton {
    Q_OBJECT

public:
    /// \param iconName of the icon set.
    SidebarRow(const Theme& theme, const QString& iconName, QWidget* parent = nullptr);

    /// The row's words; in a collapsed row they are its tooltip. \param label shown and spoken. \param hotkey for the
    /// tooltip; may be empty.
    void setLabel(const QString& label, const QString& hotkey);
    /// Shown right-aligned; nothing for 0.
    void setCount(qint64 count);
    /// The icon alone; the label becomes the tooltip.
    void setCollapsed(bool collapsed);
    /// A drag that would land here is held over the row.
    void setDropHighlighted(bool isOn);
    /// As setDropHighlighted() was last told.
    bool isDropHighlighted() const { return m_isDropHighlighted; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void describe();

    const Theme& m_theme;
    QString m_iconName;
    QString m_label;
    QString m_hotkey;
    qint64 m_count = 0;
    bool m_isCollapsed = false;
    bool m_isDropHighlighted = false;
};
