#pragma once

#include "ui/WindowContext.h"
#include "ui/window/Panel.h"

class ThemeButton;

/// The line at the bottom: a message with its icon in the colour of its tone, what can be undone, and the progress of
/// reading tags.
class StatusStrip : public Panel {
    Q_OBJECT

public:
    explicit StatusStrip(const WindowContext& context, QWidget* parent = nullptr);

    void retranslate();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void refreshMessage();
    void refreshUndo();
    void refreshProgress();
    void place();
    void paintMessage(QPainter& painter) const;
    void paintProgress(QPainter& painter) const;
    int messageWidth() const;
    int progressLeft() const;

    WindowContext m_context;
    ThemeButton* m_undo;
    QString m_message;
    QString m_iconName;
    QColor ThemeColours::*m_tone = &ThemeColours::text3;
    QString m_progressText;
    double m_progress = 0; ///< 0 to 1
};
