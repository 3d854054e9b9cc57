#pragma once

#include "core/model/Track.h"
#include "ui/context/WindowContext.h"
#include "ui/controls/Panel.h"

#include <optional>

class NowPlaying;
class PositionBar;
class TapButton;
class ThemeButton;
class TransportControls;
class VolumeControl;

/// The player: the current track, or the focused one while nothing was started; transport, position, volume, output.
/// In a narrow window the button for tapping the tempo goes first, then the choice of the output and the volume's
/// slider.
class PlayerBar : public Panel {
    Q_OBJECT

public:
    /// Follows the player by itself; the focused track is the window's to tell, by refresh().
    explicit PlayerBar(const WindowContext& context, QWidget* parent = nullptr);

    /// Looks at the current and the focused track again.
    void refresh();
    /// Takes the language of the interface over.
    void retranslate();
    /// Whether the bar stands above the sections or below them: its hairline lies on the side of the sections.
    void setOnTop(bool onTop);
    /// For the commands that the window binds to it.
    VolumeControl& volume() const { return *m_volume; }
    TapButton& tapButton() const { return *m_tap; }
    /// The menu of the output devices, at its button.
    void openOutputs();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    std::optional<Track> shownTrack() const;
    std::optional<Track> tappedTrack() const;
    void showWaveform(const std::optional<Track>& track);
    void place();

    WindowContext m_context;
    NowPlaying* m_nowPlaying;
    TransportControls* m_transport;
    PositionBar* m_position;
    TapButton* m_tap;
    VolumeControl* m_volume;
    ThemeButton* m_output;
};
