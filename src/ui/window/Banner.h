#pragma once

#include "ui/WindowContext.h"

#include <QWidget>

class ThemeButton;
class ThemeLabel;

/// A calm sheet inside the window for what the user has to know: a failed save, or why something was refused. Stays
/// until it is closed, by its button, Return or Escape.
class Banner : public QWidget {
    Q_OBJECT

public:
    /// \param area the window's content, over which it is centred.
    Banner(const WindowContext& context, QWidget& area);

    void retranslate();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    void dismiss();
    void place();

    WindowContext m_context;
    QWidget& m_area;
    ThemeLabel* m_title;
    ThemeLabel* m_text;
    ThemeButton* m_close;
    bool m_isError = false;
};
