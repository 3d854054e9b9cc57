#pragma once

#include "ui/context/WindowContext.h"

#include <QWidget>

class ThemeButton;
enum class CommandID;

/// Previous track, play or pause, next track.
class TransportControls : public QWidget {
    Q_OBJECT

public:
    /// Its buttons give the commands of the table.
    explicit TransportControls(const WindowContext& context, QWidget* parent = nullptr);

    /// \param hasTrack whether there is one that could be played, loaded or focused.
    void refresh(bool hasTrack);

private:
    void perform(CommandID id) const;
    void playOrPause();

    WindowContext m_context;
    ThemeButton* m_previous;
    ThemeButton* m_play;
    ThemeButton* m_next;
};
