#pragma once

#include <QAbstractButton>

class Theme;

/// The window's button: accented, plain, quiet (icon only), a link in a line of text, or the player's round one.
class ThemeButton : public QAbstractButton {
    Q_OBJECT

public:
    enum class Kind { Accent, Plain, Quiet, Link, Round };

    ThemeButton(const Theme& theme, Kind kind, QWidget* parent = nullptr);

    /// \param text label, spoken name too. \param iconName drawing before the text; may be empty.
    void setContent(const QString& text, const QString& iconName = {});
    /// For buttons without text. \param name spoken and shown as tooltip. \param hotkey shown behind it; may be empty.
    void setIconOnly(const QString& iconName, const QString& name, const QString& hotkey = {});
    /// The icon's colour instead of the text's.
    void setIconColour(const QColor& colour);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QColor textColour() const;
    const QFont& labelFont() const;
    double cornerRadius() const;
    void paintBackground(QPainter& painter) const;

    const Theme& m_theme;
    Kind m_kind;
    QString m_iconName;
    QColor m_iconColour;
};
