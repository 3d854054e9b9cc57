#pragma once

#include "ui/theme/Theme.h"

#include <QWidget>

/// A plain area in one of the theme's colours, with a hairline at some of its edges. Follows the theme. Thread: main,
/// as all widgets.
class Panel : public QWidget {
    Q_OBJECT

public:
    /// \param fill the colour of its ground. \param lines the edges with a hairline.
    Panel(const Theme& theme, QColor ThemeColours::*fill, Qt::Edges lines, QWidget* parent = nullptr);
    /// The edges that have a hairline from now on.
    void setLines(Qt::Edges lines);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
    QColor ThemeColours::*m_fill;
    Qt::Edges m_lines;
};
