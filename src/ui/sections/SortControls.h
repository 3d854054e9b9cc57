#pragma once

#include "core/model/TrackSort.h"
#include "ui/context/WindowContext.h"

#include <QObject>

class ColumnHeader;
class QMenu;
class SectionHeader;
class ThemeButton;
class TrackTable;
struct SectionDescriptor;

/// What a section is sorted by, shown and chosen: a button with a menu in the header of the section, and in Favorites
/// the column headings too. Thread: main.
class SortControls : public QObject {
    Q_OBJECT

public:
    /// \param header gets the button. \param table its headings are clickable in Favorites.
    SortControls(const WindowContext& context, const SectionDescriptor& descriptor, SectionHeader& header,
                 TrackTable& table);

    /// Says what the section is sorted by and opens the menu; owned by the header.
    ThemeButton& button() const { return *m_button; }
    void retranslate() { refresh(); }
    /// Puts the fields and the directions into a menu, the present ones marked.
    void fillMenu(QMenu& menu) const;

private:
    void refresh();
    void openMenu();
    void connectHeadings(TrackTable& table);
    void addFields(QMenu& menu) const;
    void addDirections(QMenu& menu) const;

    WindowContext m_context;
    const SectionDescriptor& m_descriptor;
    ThemeButton* m_button;
    ColumnHeader* m_headings = nullptr; ///< null where they cannot be clicked
};
