#pragma once

#include "core/model/LibraryTab.h"
#include "ui/WindowContext.h"
#include "ui/window/Panel.h"

class QHBoxLayout;
class ThemeButton;
class ThemeLabel;

/// Title and facts of a section at the left, its actions at the right.
class SectionHeader : public Panel {
    Q_OBJECT

public:
    SectionHeader(const WindowContext& context, LibraryTab tab, QWidget* parent = nullptr);

    void setFacts(const QString& facts);
    const QString& facts() const;
    /// Adds an action before the main button. Owned by the header.
    ThemeButton* addAction();
    /// Button of the menu that holds the commands.
    ThemeButton& menuButton() const { return *m_menuButton; }
    void retranslate();

private:
    WindowContext m_context;
    LibraryTab m_tab;
    ThemeLabel* m_title;
    ThemeLabel* m_facts;
    QHBoxLayout* m_actions;
    ThemeButton* m_menuButton;
    ThemeButton* m_mainButton;
};
