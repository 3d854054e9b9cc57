#include "ui/tempo/TempoMenu.h"

#include "core/library/LibraryStore.h"
#include "core/library/order/TrackSorter.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/workspace/Workspace.h"
#include "ui/context/DashboardActions.h"
#include "ui/text/Texts.h"

#include <QMenu>

namespace {

/// What of the rows the commands can work with.
struct Rows {
    bool haveEstimate = false;
    bool haveTempo = false; ///< a number that can be doubled
    bool lackTag = false;
};

Rows look(const LibraryStore& library, const QSet<TrackID>& ids)
{
    Rows rows;
    for (const TrackID& id : ids) {
        const Track* track = library.workspace().tracks().find(id);
        if (!track)
            continue;
        const bool hasTag = !track->tags().bpm.trimmed().isEmpty();
        const bool hasEstimate = library.tempo().playlistBPMState(id).estimatedBPM.has_value();
        rows.haveEstimate = rows.haveEstimate || hasEstimate;
        rows.haveTempo = rows.haveTempo || hasEstimate || TrackSorter::bpmValue(*track, {}).has_value();
        rows.lackTag = rows.lackTag || !hasTag;
    }
    return rows;
}

/// How strongly the rhythm speaks for each. They are not kept from one run to the next, unlike the estimate.
void addAlternatives(QMenu& menu, const WindowContext& context, const TrackID& id, const Rows& row)
{
    const Tempo& tempo = context.store.tempo();
    const QString shown = tempo.playlistBPMState(id).estimatedBPM.value_or(QString());
    const QList<TempoEstimate::Alternative> alternatives = tempo.alternatives(id);
    for (const TempoEstimate::Alternative& other : alternatives) {
        const int bpm = qRound(other.bpm);
        const int share = qRound(other.relativeStrength * 100);
        QAction* action =
            menu.addAction(VelmoraLocalization::format(QStringLiteral("%d BPM · сила %d %"), {bpm, share}),
                           [&actions = context.actions, bpm, id] { actions.setTempo(bpm, {id}); });
        action->setCheckable(true);
        action->setChecked(QString::number(bpm) == shown.trimmed());
    }
    if (alternatives.isEmpty() && row.haveEstimate && row.lackTag)
        menu.addAction(Texts::localized(QStringLiteral("Другие варианты даст новое определение")))->setEnabled(false);
    menu.addSeparator();
}

} // namespace

void TempoMenu::fill(QMenu& menu, const WindowContext& context, const QSet<TrackID>& ids)
{
    DashboardActions& actions = context.actions;
    const Rows rows = look(context.store, ids);
    menu.setToolTipsVisible(true);
    if (ids.size() == 1)
        addAlternatives(menu, context, *ids.cbegin(), rows);
    menu.addAction(Texts::localized(QStringLiteral("Удвоить темп")) + QStringLiteral("\tAlt+↑"),
                   [&actions, ids] { actions.scaleTempo(2, ids); })
        ->setEnabled(rows.haveTempo);
    menu.addAction(Texts::localized(QStringLiteral("Уменьшить темп вдвое")) + QStringLiteral("\tAlt+↓"),
                   [&actions, ids] { actions.scaleTempo(0.5, ids); })
        ->setEnabled(rows.haveTempo);
    menu.addSeparator();
    menu.addAction(Texts::localized(QStringLiteral("Записать темп в тег")),
                   [&actions, ids] { actions.writeTempo(ids); })
        ->setEnabled(rows.haveEstimate);
    QAction* again = menu.addAction(Texts::localized(QStringLiteral("Определить темп заново")),
                                    [&actions, ids] { actions.detectTempoAgain(ids); });
    again->setEnabled(rows.lackTag);
    if (!rows.lackTag)
        again->setToolTip(Texts::localized(QStringLiteral("Темп записан в теге: он не определяется")));
}
