#pragma once

#include "ui/commands/Command.h"
#include "ui/context/WindowContext.h"

#include <QWidget>

class ThemeButton;
class ThemeLabel;
struct SectionDescriptor;

/// What a section without rows shows: an icon, a sentence, a button, and what may be dropped here; where a filter
/// hides all rows, that and a button that clears it. Owned by the page.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    /// \param descriptor whose words it shows; outlives it.
    EmptyState(const WindowContext& context, const SectionDescriptor& descriptor, QWidget* parent = nullptr);
    /// Takes the language of the interface over.
    void retranslate();
    /// What keeps the list empty may be another thing now.
    void refresh();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    WindowContext m_context;
    const SectionDescriptor& m_descriptor;
    CommandID m_command = CommandID::AddFilesHere; ///< of the button
    QWidget* m_iconSpace;
    ThemeLabel* m_sentence;
    ThemeButton* m_button;
    ThemeLabel* m_hint;
};
