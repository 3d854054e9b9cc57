#pragma once

#include "ui/controls/Panel.h"

class ThemeButton;
class WrappedText;

/// The foot of the inspector: what a save does to the files, and the two buttons.
class SaveBar : public Panel {
    Q_OBJECT

public:
    explicit SaveBar(const Theme& theme, QWidget* parent = nullptr);

    /// \param summary localised; may be empty. \param link what the button behind it says; empty hides it.
    void setSummary(const QString& summary, const QString& link);
    /// What a save keeps and drops, in words.
    const QString& summary() const;
    /// Which of the two buttons have something to do.
    void setEnabled(bool canSave, bool canRevert);
    /// Whether the two buttons have their row here.
    void setButtonsShown(bool areShown);
    /// Takes the language of the interface over.
    void retranslate();
    /// Its buttons, for the panel to connect.
    ThemeButton& save() const { return *m_save; }
    ThemeButton& revert() const { return *m_revert; }
    ThemeButton& link() const { return *m_link; }

private:
    WrappedText* m_summary;
    ThemeButton* m_link;
    QWidget* m_buttons;
    ThemeButton* m_save;
    ThemeButton* m_revert;
};
