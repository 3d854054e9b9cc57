#pragma once

#include "ui/WindowContext.h"
#include "ui/covers/CoverChoice.h"

class CoverChoiceCard;
class QMimeData;
class SectionView;
class ThemeButton;

/// Choosing a picture in Covers and assigning it to the selected tracks: the header's two actions, the card, what is
/// dropped or pasted, and the program's events for both. Owned by the section. Thread: main.
class CoverAssignment : public QObject {
    Q_OBJECT

public:
    /// \param section the section of covers, whose list exists already.
    CoverAssignment(const WindowContext& context, SectionView& section);

    CoverChoiceCard& card() const { return *m_card; }
    const CoverChoice& choice() const { return m_choice; }

    /// Opens the dialog for a picture.
    void choose();
    /// Takes the picture of a drop.
    void take(const QMimeData& data);
    /// Takes the picture of the clipboard; says so where there is none.
    void paste();
    /// Assigns the chosen picture to the selected tracks; says what is missing.
    void apply();
    void retranslate();

private:
    void refresh();
    void warn(const QString& message);

    WindowContext m_context;
    SectionView& m_section;
    CoverChoice m_choice;
    CoverChoiceCard* m_card;
    ThemeButton* m_chooseButton;
    ThemeButton* m_applyButton;
};
