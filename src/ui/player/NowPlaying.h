#pragma once

#include "core/model/Track.h"
#include "ui/context/WindowContext.h"

#include <QWidget>

#include <optional>

class ThemeButton;

/// The track of the player's bar: cover, title, artist, heart. Long texts are elided, with the whole as tooltip.
class NowPlaying : public QWidget {
    Q_OBJECT

public:
    explicit NowPlaying(const WindowContext& context, QWidget* parent = nullptr);

    /// \param track nothing if there is none to show.
    void setTrack(const std::optional<Track>& track);
    /// As setTrack() was last told.
    const std::optional<Track>& track() const { return m_track; }
    /// Takes the language of the interface over.
    void retranslate();
    /// The width at which the words have \p words pixels.
    static int widthFor(int words);
    /// Toggles whether the track is a favourite.
    ThemeButton& heart() const { return *m_heart; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRect coverRect() const;
    QRect wordsRect() const;
    void place();

    WindowContext m_context;
    ThemeButton* m_heart;
    std::optional<Track> m_track;
};
