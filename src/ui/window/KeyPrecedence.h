#pragma once

class QKeyEvent;
class QWidget;

/// Who gets the keys that are commands of the window as well as keys of a control: space, the arrows, M and the keys
/// that delete.
namespace KeyPrecedence {

/// Whether the control under focus keeps a key. Fields, drop-down lists and menus keep them all, the volume's slider
/// the arrows, a button the space bar; lists of tracks leave them to the window. \param focused may be null.
bool focusKeeps(const QWidget* focused, const QKeyEvent& event);

} // namespace KeyPrecedence
