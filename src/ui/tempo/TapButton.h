#pragma once

#include "async/TaskSlot.h"
#include "core/model/Track.h"
#include "ui/context/WindowContext.h"
#include "ui/controls/ThemeButton.h"
#include "ui/tempo/TapTempo.h"

/// Tap it along with the music: shows the tempo of the taps, in the status line while it is hidden itself, and a pause
/// later makes it the estimate of the track that was tapped to.
class TapButton : public ThemeButton {
    Q_OBJECT

public:
    /// Has no track at first, and is disabled.
    explicit TapButton(const WindowContext& context, QWidget* parent = nullptr);

    /// The track that taps are for; nothing disables the button. Another track gives unfinished taps up.
    void setTrack(const std::optional<Track>& track);
    /// Takes the language of the interface over.
    void retranslate();
    /// One beat, by the button or its key; ignored without a track. Two seconds after the last one the tempo is
    /// taken.
    void tap();
    /// As wide as the widest text asks for, so that nothing beside it moves.
    QSize sizeHint() const override;

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    void show();
    void tell() const;
    async::Task<> finishLater(std::stop_token stop);

    WindowContext m_context;
    std::optional<TrackID> m_trackID;
    TapTempo m_taps;
    async::TaskSlot m_finish;
};
