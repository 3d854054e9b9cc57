#pragma once

#include <QWidget>

class Theme;

/// The accent frame and tint over the place where a drag would land. Covers its area, hidden at first, and lets every
/// event through.
class DropOutline : public QWidget {
    Q_OBJECT

public:
    /// \param area what it lies over, as large as that; its owner.
    DropOutline(const Theme& theme, QWidget& area);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
    QWidget& m_area;
};
