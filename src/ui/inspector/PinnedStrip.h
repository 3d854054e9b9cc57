#pragma once

#include "ui/controls/Panel.h"

class ThemeButton;
class WrappedText;

/// Says whose unsaved edits the inspector holds on to while something else is selected.
class PinnedStrip : public Panel {
    Q_OBJECT

public:
    explicit PinnedStrip(const Theme& theme, QWidget* parent = nullptr);

    /// \param whose the tracks of the edits, localised.
    void setSubject(const QString& whose);
    /// Whose edits they are, in words.
    const QString& text() const;
    /// Takes the language of the interface over.
    void retranslate();
    /// Its buttons, for the panel to connect.
    ThemeButton& save() const { return *m_save; }
    ThemeButton& revert() const { return *m_revert; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
    QString m_whose;
    WrappedText* m_text;
    ThemeButton* m_save;
    ThemeButton* m_revert;
};
