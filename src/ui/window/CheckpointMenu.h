#pragma once

#include <QPoint>

class QWidget;
struct WindowContext;

/// The copies of earlier workspaces, as a menu.
namespace CheckpointMenu {

/// Reads the copies in the background, then opens the menu, in which each is told by its date and its counts; of
/// copies that read alike the newest stands there alone. The one chosen comes with the next start.
/// \param parent owns the menu; it may go before the copies are read
/// \param globalPosition of the menu's corner, in pixels of the screen
void open(QWidget& parent, const WindowContext& context, const QPoint& globalPosition);

} // namespace CheckpointMenu
