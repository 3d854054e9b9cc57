#pragma once

#include "ui/context/Delay.h"
#include "ui/context/WindowContext.h"
#include "ui/keys/KeyPanel.h"
#include "ui/sections/SectionParts.h"

#include <QSet>

class LibraryStore;
class SectionView;
class ThemeButton;
enum class CommandID;

/// What the key section has beyond a list: the actions of its header, the states of its rows, and the panel with the
/// wheel, where a click on a key selects the rows that were found to have it. Owned by the section. Thread: main.
class KeySection : public SectionParts {
    Q_OBJECT

public:
    /// \param section the key section, whose list exists already.
    KeySection(const WindowContext& context, SectionView& section);

    /// The panel at the right; owned by the page.
    KeyPanel& panel() const { return *m_panel; }
    /// Estimates the keys of the selected rows; hidden where the header is narrow.
    ThemeButton& selectedButton() const { return *m_selected; }
    /// Estimates all keys that are not queued yet; stopping is a matter of the status line.
    ThemeButton& allButton() const { return *m_all; }
    /// Writes the keys of all rows that have one into their files.
    ThemeButton& writeButton() const { return *m_write; }
    void retranslate() override;
    void fitHeader(int width) override;
    /// How many rows have a key, none, or wait for one.
    static QString facts(LibraryStore& library, const QList<Track>& rows);

private:
    void perform(CommandID id, const QSet<TrackID>& ids) const;
    QSet<TrackID> allIDs() const;
    void selectRowsIn(const MusicalKey& key);
    void statesChanged(const QSet<TrackID>& ids);
    void refreshButtons();
    void refreshPanel();
    void count();

    WindowContext m_context;
    SectionView& m_section;
    ThemeButton* m_add;
    ThemeButton* m_selected;
    ThemeButton* m_all;
    ThemeButton* m_write;
    KeyPanel* m_panel;
    bool m_hasResults = false; ///< any row has
    Delay m_count;
};
