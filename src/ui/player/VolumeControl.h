#pragma once

#include "ui/context/WindowContext.h"

#include <QBasicTimer>
#include <QWidget>

class ThemeButton;
class VolumeSlider;

/// Speaker button and volume slider. The button mutes and brings the volume back that was there before. Where there is
/// no room for the slider, it stands upright above the button while the pointer or the focus is on one of them.
class VolumeControl : public QWidget {
    Q_OBJECT

public:
    explicit VolumeControl(const WindowContext& context, QWidget* parent = nullptr);

    /// Whether the slider stands beside the button.
    void setWide(bool isWide);
    /// As setWide() was last told.
    bool isWide() const { return m_isWide; }
    /// Pixels that it takes, with the slider or without.
    static int widthFor(bool isWide);
    /// Silence, or back to the volume that was chosen last; 80 % where none was since the start.
    void toggleMute();
    /// Takes the language of the interface over.
    void retranslate();
    /// The upright slider's frame, a child of the window.
    QWidget& popup() const { return *m_popup; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void volumeChanged();
    void openPopup();
    bool isPopupWanted() const;

    WindowContext m_context;
    ThemeButton* m_speaker;
    VolumeSlider* m_slider;
    QWidget* m_popup;
    VolumeSlider* m_upright;
    QBasicTimer m_closing;
    double m_audible; ///< volume to come back to
    bool m_isWide = true;
};
