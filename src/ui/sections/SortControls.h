#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/TrackSort.h"
#include "ui/WindowContext.h"

#include <QObject>

class ColumnHeader;
class QMenu;
class SectionHeader;
class ThemeButton;
class TrackTable;

/// What a section is sorted by, shown and chosen: a button with a menu in the header of the section, and in Favorites
/// the column headings too. Thread: main.
class SortControls : public QObject {
    Q_OBJECT

public:
    /// \param header gets the button. \param table its headings are clickable in Favorites.
    SortControls(const WindowContext& context, LibraryTab tab, SectionHeader& header, TrackTable& table);

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
    LibraryTab m_tab;
    ThemeButton* m_button;
    ColumnHeader* m_headings = nullptr; ///< null where they cannot be clicked
};
