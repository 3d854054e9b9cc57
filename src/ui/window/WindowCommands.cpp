#include "ui/window/WindowCommands.h"

#include "core/library/LibraryStore.h"
#include "core/library/undo/History.h"
#include "platform/Preferences.h"
#include "ui/context/DashboardActions.h"
#include "ui/player/PlayerBar.h"
#include "ui/player/VolumeControl.h"
#include "ui/sections/SectionDescriptor.h"
#include "ui/sections/SectionParts.h"
#include "ui/sections/SectionView.h"
#include "ui/tempo/TapButton.h"
#include "ui/text/Texts.h"
#include "ui/window/MainWindow.h"

#include <QAction>
#include <QMenu>

namespace {

using ID = CommandID;

/// The menu of the header, nothing for a line between.
constexpr std::optional<ID> kMenu[] = {ID::AddFiles, ID::AddFilesHere, ID::PastePicture, std::nullopt, ID::Undo,
                                       ID::Redo,     std::nullopt,     ID::SelectAll,    ID::Favorite, ID::Reveal,
                                       std::nullopt, ID::Remove,       ID::Trash,        std::nullopt, ID::ShowTags};

} // namespace

WindowCommands::WindowCommands(const WindowContext& context, MainWindow& window)
    : QObject(&window)
    , m_context(context)
    , m_window(window)
{
    bindWindow();
    for (const Command& command : Commands::all())
        addAction(command);
    action(ID::ShowTags).setCheckable(true);
    connect(&context.store.history(), &History::changed, this, &WindowCommands::refreshUndo);
    retranslate();
}

/// What only the window can do.
void WindowCommands::bindWindow()
{
    CommandCenter& commands = m_context.actions.commands();
    commands.bind(ID::SelectAll, [this](const CommandTarget&) { m_window.activeSection().selectAll(); });
    commands.bind(ID::ToggleMute, [this](const CommandTarget&) { m_window.player().volume().toggleMute(); });
    commands.bind(ID::TapTempo, [this](const CommandTarget&) { m_window.player().tapButton().tap(); });
    commands.bind(
        ID::PastePicture, [this](const CommandTarget&) { m_window.activeSection().parts()->paste(); },
        [this](const CommandTarget&) {
            const SectionParts* parts = m_window.activeSection().parts();
            return CommandState{parts && parts->takesPictures()};
        });
}

/// A key always reaches its command, which looks by itself whether it can be done now.
void WindowCommands::addAction(const Command& command)
{
    auto* action = new QAction(this);
    action->setShortcuts(command.keys);
    action->setAutoRepeat(command.repeat == Command::Repeat::Yes);
    connect(action, &QAction::triggered, this,
            [this, id = command.id] { m_context.actions.commands().perform(id, target(id)); });
    m_actions[static_cast<size_t>(command.id)] = action;
    if (!command.keys.isEmpty())
        m_window.addAction(action);
}

CommandTarget WindowCommands::target(CommandID id) const
{
    if (Commands::of(id).actsOn == Command::ActsOn::Nothing)
        return {};
    return {.ids = m_window.activeSection().selectedIDs()};
}

/// In the words of the section shown, where it has its own.
QString WindowCommands::text(CommandID id) const
{
    const SectionDescriptor::Words& words = m_window.activeSection().descriptor().words;
    if (id == ID::Remove && !words.removal.isEmpty())
        return Texts::localized(words.removal);
    if (id == ID::AddFilesHere && !words.addFromMenu.isEmpty())
        return Texts::localized(words.addFromMenu);
    return Commands::text(id);
}

void WindowCommands::retranslate()
{
    for (const Command& command : Commands::all()) {
        action(command.id).setText(text(command.id));
        action(command.id).setToolTip(Texts::localized(command.hint));
    }
    refreshUndo();
}

void WindowCommands::refreshUndo()
{
    const History& undo = m_context.store.history();
    const auto show = [this](ID id, bool can, const QString& step) {
        action(id).setText(step.isEmpty() ? Commands::text(id)
                                          : QStringLiteral("%1: %2").arg(Commands::text(id), step));
        action(id).setEnabled(can);
    };
    show(ID::Undo, undo.canUndo(), undo.undoActionName());
    show(ID::Redo, undo.canRedo(), undo.redoActionName());
}

bool WindowCommands::isInMenu(CommandID id, bool hasSelection) const
{
    const SectionDescriptor& section = m_window.activeSection().descriptor();
    const Command& command = Commands::of(id);
    if (!command.isIn(section.section()) || (command.actsOn == Command::ActsOn::Rows && !hasSelection))
        return false;
    switch (id) {
    case ID::AddFilesHere:
        return !section.addsByMainButton();
    case ID::Remove:
        return !section.words.removal.isEmpty();
    case ID::PastePicture:
        return m_context.actions.commands().state(id).isEnabled;
    default:
        return true;
    }
}

void WindowCommands::fillMenu(QMenu& menu) const
{
    const bool hasSelection = !m_window.activeSection().selectedIDs().isEmpty();
    menu.setToolTipsVisible(true);
    action(ID::ShowTags).setChecked(m_context.store.preferences().inspectorVisible.get());
    for (const std::optional<ID> id : kMenu) {
        if (!id) {
            menu.addSeparator();
        } else if (isInMenu(*id, hasSelection)) {
            if (*id == ID::Remove || *id == ID::AddFilesHere)
                action(*id).setText(text(*id));
            menu.addAction(&action(*id));
        }
    }
}
