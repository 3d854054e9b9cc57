#pragma once

#include "ui/context/Delay.h"
#include "ui/context/WindowContext.h"
#include "ui/controls/Panel.h"
#include "work/WorkBoard.h"

#include <QPointer>

class ThemeButton;

/// The line at the bottom: a message with its icon in the colour of its tone, what can be undone, leftovers that may go
/// to the Trash, and how far the work in the background is, most of which can be stopped.
class StatusStrip : public Panel {
    Q_OBJECT

public:
    /// Follows the store by itself; progress is redrawn ten times a second at most.
    explicit StatusStrip(const WindowContext& context, QWidget* parent = nullptr);

    /// Takes the language of the interface over.
    void retranslate();

Q_SIGNALS:
    /// A link that had the focus hides, and where the focus was before is gone: back to the section.
    void leaveWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void focusMoved(QWidget* from, QWidget* to);
    void setShown(ThemeButton& link, bool isShown, bool isEnabled = true);
    void refreshMessage();
    void refreshUndo();
    void refreshOffer();
    void refreshAgain();
    void progressMoved();
    void refreshProgress();
    void stopWork();
    void refreshRestore();
    /// Lays the message, the links behind it, and the progress at the right out; the message gives way first.
    void place();
    void paintMessage(QPainter& painter) const;
    void paintProgress(QPainter& painter) const;
    int messageWidth() const;
    QList<ThemeButton*> links() const;
    int linksWidth() const;
    int progressLeft() const;
    int barLeft() const;

    WindowContext m_context;
    ThemeButton* m_undo;
    ThemeButton* m_offer;            ///< moves what interrupted writes left behind to the Trash
    ThemeButton* m_stop;             ///< stops what runs
    ThemeButton* m_restore;          ///< there while the last start is known to have left files out
    ThemeButton* m_again;            ///< writes edits that are not in their files again
    QPointer<QWidget> m_focusBefore; ///< where the focus was before it came to a link
    QString m_message;
    QString m_iconName;
    QColor ThemeColours::*m_tone = &ThemeColours::text3;
    /// The first of the board as it is shown.
    struct Work {
        QPointer<WorkEntry> entry;
        QString text; ///< in words, with its counts
        WorkProgress progress;
        QString kind; ///< the text before its counts: another one is another work
    };
    std::optional<Work> currentWork() const;
    std::optional<Work> m_work;
    Delay m_pause; ///< runs after a step of the progress was shown
};
