#pragma once

#include "ui/context/WindowContext.h"
#include "ui/controls/Panel.h"
#include "ui/covers/ChosenPicture.h"

#include <QPixmap>

class ThemeButton;
class ThemeLabel;

/// A strip below the header of Covers: the chosen picture, what it is, how it will be written, and what to do with it.
/// Hidden while nothing is chosen. Thread: main.
class CoverChoiceCard : public Panel {
    Q_OBJECT

public:
    /// Hidden until a picture is set.
    explicit CoverChoiceCard(const WindowContext& context, QWidget* parent = nullptr);

    /// Shows a picture, or hides the card for none.
    void setPicture(const std::optional<ChosenPicture>& picture);
    /// How many tracks the picture would go to.
    void setTargetCount(qsizetype count);
    /// Takes the language of the interface over.
    void retranslate();

Q_SIGNALS:
    /// The button of the card that assigns the picture.
    void applyWanted();
    /// The button of the card that drops the picture.
    void removeWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildLayout();
    void refreshWords();
    void refreshApply();
    void paintPicture(QPainter& painter);

    WindowContext m_context;
    std::optional<ChosenPicture> m_picture;
    qsizetype m_targetCount = 0;
    QPixmap m_scaled; ///< the preview in the pixels of the screen
    QWidget* m_pictureArea;
    ThemeLabel* m_title;
    ThemeLabel* m_facts;
    ThemeLabel* m_format; ///< what it will be written as
    ThemeLabel* m_hint;
    ThemeButton* m_apply;
    ThemeButton* m_remove;
};
