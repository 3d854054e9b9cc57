#pragma once

#include "ui/theme/Theme.h"

#include <QWidget>

/// A time beside the position: figures of one width in a column of one width, so that nothing moves when it changes.
class TimeLabel : public QWidget {
    Q_OBJECT

public:
    /// \param alignment side of the column that the text keeps to: right for elapsed time, left for what remains.
    TimeLabel(const Theme& theme, Qt::Alignment alignment, QWidget* parent = nullptr);

    /// Widths do not jump with the figures.
    void setText(const QString& text);
    const QString& text() const { return m_text; }
    /// Wide enough for ten hours.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
    Qt::Alignment m_alignment;
    QString m_text;
};
