#pragma once

#include "ui/context/WindowContext.h"
#include "ui/covers/CoverChoice.h"
#include "ui/sections/SectionParts.h"

#include "core/model/Track.h"

class CoverChoiceCard;
class LibraryStore;
class QAbstractItemView;
class QMimeData;
class SectionView;
class ThemeButton;

/// Choosing a picture in Covers and assigning it to the selected tracks: the header's two actions, the card, what is
/// dropped or pasted, and the program's events for both. Owned by the section. Thread: main.
class CoverAssignment : public SectionParts {
    Q_OBJECT

public:
    /// \param section the section of covers, whose list exists already.
    CoverAssignment(const WindowContext& context, SectionView& section);

    /// The strip below the header; owned by the page.
    CoverChoiceCard& card() const { return *m_card; }
    /// The picture that would be assigned.
    const CoverChoice& choice() const { return m_choice; }

    /// Opens the dialog for a picture.
    void choose();
    void take(const QMimeData& data) override;
    /// Takes the picture of the clipboard; says so where there is none.
    void paste() override;
    /// Assigns the chosen picture to the selected tracks; says what is missing.
    void apply();
    void retranslate() override;
    QWidget* banner() const override;
    bool takesPictures() const override { return true; }

    /// The grid that stands in the section's page instead of a table.
    static QAbstractItemView* makeGrid(const WindowContext& context, SectionView& page);
    /// Tracks, and how many of them have no picture.
    static QString facts(LibraryStore& library, const QList<Track>& rows);

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
