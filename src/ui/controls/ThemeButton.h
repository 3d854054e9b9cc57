#pragma once

#include <QAbstractButton>
#include <QBasicTimer>

class Theme;

/// The window's button: accented, plain, quiet (icon only), a link in a line of text, or the player's round one.
class ThemeButton : public QAbstractButton {
    Q_OBJECT

public:
    /// How it looks; a window has one accented button at most.
    enum class Kind { Accent, Plain, Quiet, Link, Round };

    /// \param theme outlives the button. \param kind never changes.
    ThemeButton(const Theme& theme, Kind kind, QWidget* parent = nullptr);

    /// \param text label, spoken name too. \param iconName drawing before the text; may be empty.
    void setContent(const QString& text, const QString& iconName = {});
    /// For buttons without text. \param name spoken and shown as tooltip. \param hotkey shown behind it; may be empty.
    void setIconOnly(const QString& iconName, const QString& name, const QString& hotkey = {});
    /// The icon's colour instead of the text's.
    void setIconColour(const QColor& colour);
    /// A ring around a round button: what was asked for is under way. It turns unless the desktop wants no animations.
    void setBusy(bool isBusy);
    /// As setBusy() was last told.
    bool isBusy() const { return m_isBusy; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    QColor textColour() const;
    const QFont& labelFont() const;
    double cornerRadius() const;
    void paintBackground(QPainter& painter) const;
    void paintBusyRing(QPainter& painter) const;

    const Theme& m_theme;
    Kind m_kind;
    QString m_iconName;
    QColor m_iconColour;
    bool m_isBusy = false;
    int m_turn = 0; ///< of the ring, degrees
    QBasicTimer m_turning;
};
