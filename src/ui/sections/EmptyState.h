#pragma once

#include "core/model/LibraryTab.h"
#include "ui/WindowContext.h"

#include <QWidget>

class ThemeButton;
class ThemeLabel;

/// What a section without rows shows: an icon, a sentence, a button, and what may be dropped here.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    EmptyState(const WindowContext& context, LibraryTab tab, QWidget* parent = nullptr);
    void retranslate();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    WindowContext m_context;
    LibraryTab m_tab;
    QWidget* m_iconSpace;
    ThemeLabel* m_sentence;
    ThemeButton* m_button;
    ThemeLabel* m_hint;
};
