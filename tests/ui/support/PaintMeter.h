#pragma once

#include <QObject>
#include <QPaintEvent>
#include <QRegion>
#include <QWidget>

/// Adds up what a widget repaints.
class PaintMeter : public QObject {
public:
    explicit PaintMeter(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            ++count;
            region += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
    /// What was repainted since the last look.
    QRegion take() { return std::exchange(region, {}); }

    int count = 0;
    QRegion region;
};
