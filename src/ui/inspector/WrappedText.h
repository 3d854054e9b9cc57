#pragma once

#include "ui/theme/Theme.h"

#include <QWidget>

/// A text that fills its width in up to some lines, left-aligned; what is left out is shown as tooltip.
class WrappedText : public QWidget {
    Q_OBJECT

public:
    using ColourOf = QColor ThemeColours::*;

    /// How the text looks, for good.
    struct Look {
        TextRole role;
        ColourOf colour;
        int lines = 1; ///< at most
    };

    /// \param theme outlives the text
    WrappedText(const Theme& theme, const Look& look, QWidget* parent = nullptr);

    /// What does not fit the lines ends in an ellipsis, with the full text as tooltip.
    void setText(const QString& text);
    /// In full, whatever is shown of it.
    const QString& text() const { return m_text; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QStringList brokenLines(int width) const;

    const Theme& m_theme;
    Look m_look;
    QString m_text;
};
