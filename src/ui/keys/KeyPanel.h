#pragma once

#include "core/model/Track.h"
#include "ui/cells/KeyState.h"
#include "ui/context/WindowContext.h"
#include "ui/controls/Panel.h"

#include <optional>

class KeyFacts;
class KeyWheel;
class ThemeLabel;

/// The panel at the right of the key section: the focused track, its key on the Camelot wheel, and what else was heard.
class KeyPanel : public Panel {
    Q_OBJECT

public:
    /// Pixels: the panel's width stays between the two.
    static constexpr int kNarrowest = 340;
    static constexpr int kWidest = 420;

    explicit KeyPanel(const Theme& theme, QWidget* parent = nullptr);

    /// Shows a row. \param track nothing if no row is focused. \param state of that row; an empty one without it.
    void setTrack(const std::optional<Track>& track, const KeyState& state);
    /// Takes the language of the interface over.
    void retranslate();
    /// For the section, which gives it counts and answers its clicks.
    KeyWheel& wheel() const { return *m_wheel; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    std::optional<Track> m_track;
    KeyState m_state;
    ThemeLabel* m_title;
    ThemeLabel* m_artist;
    KeyWheel* m_wheel;
    KeyFacts* m_facts;
};
