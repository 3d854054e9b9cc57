#pragma once

#include "core/model/TagField.h"
#include "ui/theme/Theme.h"

#include <QWidget>

class QLineEdit;
class QPlainTextEdit;
class QStringListModel;
class ThemeButton;

/// One tag to be edited: the label above the text in one box, an accent bar and a button that takes it back once it was
/// touched. Thread: main.
class InspectorField : public QWidget {
    Q_OBJECT

public:
    /// A comment has several lines, all else one.
    enum class Lines { One, Several };

    /// What the box shows besides the label.
    struct State {
        QString text;
        QString hint;   ///< in place of an empty text
        QString remark; ///< behind the label
        bool isTouched = false;
        bool isEnabled = true;
    };

    /// \param theme outlives the field. \param field, lines never change.
    InspectorField(const Theme& theme, TagField field, Lines lines, QWidget* parent = nullptr);

    /// The tag that is edited here.
    TagField field() const { return m_field; }
    /// Shows a state. A text that is there already keeps its cursor and its steps of undo.
    void setState(const State& state);
    /// As setState() was last told; what was typed since is in text().
    const State& state() const { return m_state; }
    /// \param label localised. \param revert what the button says that takes an edit back.
    void setWords(const QString& label, const QString& revert);
    /// Values to choose from while typing.
    void setSuggestions(const QStringList& values);
    /// The widget that takes the keys.
    QWidget& editor() const;
    /// What stands in the editor now.
    QString text() const;

Q_SIGNALS:
    /// By the user; a text that is set says nothing.
    void edited(const QString& text);
    /// The button of the field, or Escape in an edited one.
    void revertWanted();
    /// Return.
    void saveWanted();
    /// Escape in a field that was not touched.
    void leaveWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildLine();
    void buildText();
    void place();
    void applyColours();
    void forgetSteps();
    void setText(const QString& text);
    bool handleKey(int key, bool hasShift);

    const Theme& m_theme;
    TagField m_field;
    State m_state;
    QString m_label;
    QLineEdit* m_line = nullptr;      ///< for one line
    QPlainTextEdit* m_text = nullptr; ///< for several
    QStringListModel* m_suggestions = nullptr;
    ThemeButton* m_revert;
    bool m_isSetting = false;
};
