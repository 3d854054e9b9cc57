#include "ui/commands/CommandMenu.h"

#include "ui/text/Texts.h"

#include <QMenu>

namespace CommandMenu {

QAction* add(QMenu& menu, CommandCenter& commands, CommandID id, const CommandTarget& target, const QString& text)
{
    const QString keys = Commands::keys(id);
    const CommandState state = commands.state(id, target);
    QAction* action =
        menu.addAction((text.isEmpty() ? Commands::text(id) : text) + (keys.isEmpty() ? QString() : u'\t' + keys),
                       [&commands, id, target] { commands.perform(id, target); });
    action->setEnabled(state.isEnabled);
    const QString& hint = state.reason.isEmpty() ? Commands::of(id).hint : state.reason;
    if (!hint.isEmpty())
        action->setToolTip(Texts::localized(hint));
    return action;
}

} // namespace CommandMenu
