#pragma once

#include "ui/context/WindowContext.h"

#include <QPointer>
#include <QWidget>

class ThemeButton;
class ThemeLabel;

/// A calm sheet inside the window for what the user has to know or decide: whether to close with edits that are in no
/// file, what saves shall keep of a file, a failed save, or why something was refused. One at a time in this order.
/// The question of what saves keep stays until one of its two answers is chosen; the others can be closed by their
/// button, Return or Escape, which for the first means to stay.
class Banner : public QWidget {
    Q_OBJECT

public:
    /// \param area the window's content, over which it is centred.
    Banner(const WindowContext& context, QWidget& area);

    /// Takes the language of the interface over.
    void retranslate();

Q_SIGNALS:
    /// It goes, and what had the focus before it is gone too.
    void leaveWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Subject { None, Closing, Question, Error, Notice };

    Subject subject() const;
    void refresh();
    void fill();
    void fillClosing();
    void focusFirst();
    void giveFocusBack();
    void setAnswers(const QString& first, const QString& second);
    void answer(bool isFirst);
    void dismiss();
    bool isQuestion() const { return m_subject == Subject::Question || m_subject == Subject::Closing; }
    void place();

    WindowContext m_context;
    QWidget& m_area;
    ThemeLabel* m_title;
    ThemeLabel* m_text;
    ThemeButton* m_keep; ///< the answers of the question
    ThemeButton* m_drop;
    ThemeButton* m_close;
    Subject m_subject = Subject::None;
    QPointer<QWidget> m_focusBefore;
};
