#include "ui/commands/CommandCenter.h"

#include "async/MainQueue.h"
#include "core/library/LibraryStore.h"
#include "core/library/selection/Selection.h"
#include "core/library/workspace/Workspace.h"

CommandCenter::CommandCenter(const LibraryStore& library)
    : m_library(library)
{
}

void CommandCenter::bind(CommandID id, Perform perform, State state)
{
    m_bindings[static_cast<size_t>(id)] = {std::move(perform), std::move(state)};
}

const LibrarySection& CommandCenter::section() const
{
    return LibrarySection::of(m_library.workspace().activeTab());
}

QSet<TrackID> CommandCenter::rows(const CommandTarget& target) const
{
    if (target.of == CommandTarget::Of::Player)
        return target.ids;
    const Workspace& workspace = m_library.workspace();
    const LibraryTab tab = workspace.activeTab();
    const bool isKnown = m_reduced && m_reduced->tab == tab && m_reduced->listRevision == workspace.listRevision() &&
                         m_reduced->ids == target.ids && !section().holdsJobs;
    if (!isKnown)
        m_reduced = {target.ids, m_library.selection().shown(target.ids), tab, workspace.listRevision()};
    return m_reduced->rows;
}

CommandTarget CommandCenter::reduced(const CommandTarget& target) const
{
    CommandTarget result = target;
    result.ids = rows(target);
    return result;
}

CommandState CommandCenter::state(CommandID id, const CommandTarget& target) const
{
    return stateOfReduced(id, reduced(target));
}

CommandState CommandCenter::stateOfReduced(CommandID id, const CommandTarget& target) const
{
    const Command& command = Commands::of(id);
    const Binding& binding = m_bindings[static_cast<size_t>(id)];
    const bool isHere = target.of == CommandTarget::Of::Player || command.isIn(section());
    // The converter's queue has a selection that only its own view knows.
    const bool lacksRows = command.actsOn == Command::ActsOn::Rows && target.ids.isEmpty() && !section().holdsJobs;
    if (!binding.perform || !isHere || lacksRows)
        return {false, {}};
    return binding.state ? binding.state(target) : CommandState();
}

bool CommandCenter::perform(CommandID id, const CommandTarget& target)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const CommandTarget acted = reduced(target);
    if (!stateOfReduced(id, acted).isEnabled)
        return false;
    emit performing(id, acted);
    m_bindings[static_cast<size_t>(id)].perform(acted);
    return true;
}
