#pragma once

#include "ui/cells/KeyState.h"

#include <QWidget>

class Theme;

/// What the panel says below the wheel: tuning, confidence, and the keys that mix. Empty without a result.
class KeyFacts : public QWidget {
    Q_OBJECT

public:
    /// \param theme outlives the facts; likewise for the other parts of the panel
    explicit KeyFacts(const Theme& theme, QWidget* parent = nullptr);

    /// A state without a result empties it.
    void setState(const KeyState& state);
    /// Takes the language of the interface over.
    void retranslate();
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect valueRect(int row) const;
    void paintLabel(QPainter& painter, int row, const QString& text) const;

    const Theme& m_theme;
    KeyState m_state;
};
