#pragma once

class QKeyEvent;
class QWidget;

/// Which keys a control keeps that are commands of the window too: space, the arrows, plain letters, the keys that
/// delete, and the one that pastes.
namespace KeyPrecedence {

/// Whether the control under focus keeps a key. Fields, drop-down lists and menus keep them all, the volume's slider
/// the arrows, a button the space bar, the wheel of keys both; lists of tracks leave them to the window. With Ctrl
/// only fields keep any, and the panel of tags keeps the one that pastes, for its cover.
/// \param focused may be null
bool focusKeeps(const QWidget* focused, const QKeyEvent& event);

} // namespace KeyPrecedence
