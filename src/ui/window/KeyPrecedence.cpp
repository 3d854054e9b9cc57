#include "ui/window/KeyPrecedence.h"

#include "ui/inspector/Inspector.h"
#include "ui/keys/KeyWheel.h"
#include "ui/player/VolumeSlider.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace {

bool isArrow(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

bool isEditing(const QWidget& focused)
{
    return qobject_cast<const QLineEdit*>(&focused) || qobject_cast<const QTextEdit*>(&focused) ||
           qobject_cast<const QPlainTextEdit*>(&focused) || qobject_cast<const QAbstractSpinBox*>(&focused) ||
           qobject_cast<const QComboBox*>(&focused) || qobject_cast<const QMenu*>(&focused);
}

/// Whether the widget lies in the panel that edits tags, which has a use of its own for a picture that is pasted.
bool isInInspector(const QWidget* widget)
{
    while (widget && !qobject_cast<const Inspector*>(widget))
        widget = widget->parentWidget();
    return widget;
}

} // namespace

namespace KeyPrecedence {

bool focusKeeps(const QWidget* focused, const QKeyEvent& event)
{
    const int key = event.key();
    if (key == Qt::Key_V && event.modifiers() == Qt::ControlModifier)
        return isInInspector(focused);
    const bool deletes = key == Qt::Key_Delete || key == Qt::Key_Backspace;
    const bool isLetter = key >= Qt::Key_A && key <= Qt::Key_Z && event.modifiers() == Qt::NoModifier;
    const bool isContested = isArrow(key) || deletes || key == Qt::Key_Space || isLetter;
    if (!focused || !isContested)
        return false;
    if (isEditing(*focused))
        return true;
    if (event.modifiers().testFlag(Qt::ControlModifier))
        return false;
    if (qobject_cast<const QAbstractButton*>(focused))
        return key == Qt::Key_Space;
    if (qobject_cast<const KeyWheel*>(focused))
        return isArrow(key) || key == Qt::Key_Space;
    return isArrow(key) && qobject_cast<const VolumeSlider*>(focused);
}

} // namespace KeyPrecedence
