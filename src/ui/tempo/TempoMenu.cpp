#include "ui/tempo/TempoMenu.h"

#include "core/library/LibraryStore.h"
#include "core/library/tempo/Tempo.h"
#include "ui/commands/CommandMenu.h"
#include "ui/context/DashboardActions.h"
#include "ui/text/Texts.h"

#include <QMenu>

namespace {

/// How strongly the rhythm speaks for each. They are not kept from one run to the next, unlike the estimate.
void addAlternatives(QMenu& menu, const WindowContext& context, const TrackID& id)
{
    CommandCenter& commands = context.actions.commands();
    const Tempo& tempo = context.store.tempo();
    const QString shown = tempo.playlistBPMState(id).estimatedBPM.value_or(QString());
    const QList<TempoEstimate::Alternative> alternatives = tempo.alternatives(id);
    for (const TempoEstimate::Alternative& other : alternatives) {
        const int bpm = qRound(other.bpm);
        const int share = qRound(other.relativeStrength * 100);
        QAction* action =
            CommandMenu::add(menu, commands, CommandID::SetTempo, {.ids = {id}, .number = bpm},
                             VelmoraLocalization::format(QStringLiteral("%d BPM · сила %d %"), {bpm, share}));
        action->setCheckable(true);
        action->setChecked(QString::number(bpm) == shown.trimmed());
    }
    const bool couldBeFoundAgain = commands.state(CommandID::WriteTempo, {.ids = {id}}).isEnabled &&
                                   commands.state(CommandID::DetectTempo, {.ids = {id}}).isEnabled;
    if (alternatives.isEmpty() && couldBeFoundAgain)
        menu.addAction(Texts::localized(QStringLiteral("Другие варианты даст новое определение")))->setEnabled(false);
    menu.addSeparator();
}

} // namespace

void TempoMenu::fill(QMenu& menu, const WindowContext& context, const QSet<TrackID>& ids)
{
    menu.setToolTipsVisible(true);
    if (ids.size() == 1)
        addAlternatives(menu, context, *ids.cbegin());
    const auto add = [&](CommandID id) { CommandMenu::add(menu, context.actions.commands(), id, {.ids = ids}); };
    add(CommandID::DoubleTempo);
    add(CommandID::HalveTempo);
    menu.addSeparator();
    add(CommandID::WriteTempo);
    add(CommandID::DetectTempo);
}
