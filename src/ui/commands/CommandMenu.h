#pragma once

#include "ui/commands/CommandCenter.h"

class QAction;
class QMenu;

/// Entries of menus that stand for commands. Thread: main.
namespace CommandMenu {

/// Adds an entry with the command's text, its first key, whether it can be given, and why not. \param text another text
/// than that of the table, localised.
QAction* add(QMenu& menu, CommandCenter& commands, CommandID id, const CommandTarget& target = {},
             const QString& text = {});

} // namespace CommandMenu
