#pragma once

#include "core/model/Track.h"
#include "ui/WindowContext.h"
#include "ui/window/Panel.h"

#include <optional>

class ThemeButton;

/// The bar of the focused track: cover, title, artist, star, and what is known about it. Shows nothing that it cannot
/// do.
class PlayerBar : public Panel {
    Q_OBJECT

public:
    explicit PlayerBar(const WindowContext& context, QWidget* parent = nullptr);

    /// Looks at the focused track again.
    void refresh();
    void retranslate();
    /// Whether the bar stands above the sections or below them.
    void setOnTop(bool onTop);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void place();
    void paintWords(QPainter& painter) const;
    void paintFacts(QPainter& painter) const;
    QRect wordsRect() const;

    WindowContext m_context;
    ThemeButton* m_heart;
    std::optional<Track> m_track;
};
