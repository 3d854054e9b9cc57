#pragma once

#include "ui/context/WindowContext.h"
#include "ui/controls/Panel.h"

class QHBoxLayout;
class ThemeButton;
class ThemeLabel;
struct SectionDescriptor;

/// Title and facts of a section at the left, its actions at the right.
class SectionHeader : public Panel {
    Q_OBJECT

public:
    SectionHeader(const WindowContext& context, const SectionDescriptor& descriptor, QWidget* parent = nullptr);

    /// An empty text leaves the title alone.
    void setFacts(const QString& facts);
    /// The line under the title as it is shown.
    const QString& facts() const;
    /// Adds an action before the main button. Owned by the header.
    ThemeButton* addAction();
    /// Adds a link behind the facts. Owned by the header.
    ThemeButton* addLink();
    /// The accented button at the end: adds files, but in Covers and the key section, which say what it does.
    ThemeButton& mainButton() const { return *m_mainButton; }
    /// Button of the menu that holds the commands.
    ThemeButton& menuButton() const { return *m_menuButton; }
    /// Takes the language of the interface over.
    void retranslate();

private:
    void addTagsButton();
    void showTagsButton();

    WindowContext m_context;
    const SectionDescriptor& m_descriptor;
    ThemeLabel* m_title;
    ThemeLabel* m_facts;
    QHBoxLayout* m_factsLine;
    QHBoxLayout* m_actions;
    ThemeButton* m_tagsButton = nullptr; ///< where the rows have tags to edit
    ThemeButton* m_menuButton;
    ThemeButton* m_mainButton;
};
