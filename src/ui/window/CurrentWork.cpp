#include "ui/window/CurrentWork.h"

#include "core/library/LibraryStore.h"
#include "core/library/imports/Imports.h"
#include "core/library/keys/Keys.h"
#include "core/library/removal/Removal.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/workspace/Workspace.h"
#include "ui/context/DashboardActions.h"
#include "ui/text/Texts.h"

namespace {

CurrentWork work(const QString& text, int done, int total, void (DashboardActions::*stop)())
{
    return {VelmoraLocalization::format(text, {done, total}), done, total, stop};
}

std::optional<CurrentWork> tempoWork(const LibraryStore& library)
{
    const std::optional<WorkProgress> tempos = library.tempo().bpmAnalysisProgress();
    if (!tempos || tempos->done >= tempos->total)
        return std::nullopt;
    return work(QStringLiteral("Анализ BPM: %d из %d"), tempos->done, tempos->total,
                &DashboardActions::stopTempoAnalysis);
}

std::optional<CurrentWork> keyWork(const LibraryStore& library)
{
    const WorkProgress keys = library.keys().progress();
    if (keys.done >= keys.total)
        return std::nullopt;
    return work(QStringLiteral("Определение тональности: %d из %d"), keys.done, keys.total,
                &DashboardActions::stopMusicalKeyAnalysis);
}

/// Keys were asked for, tempos come by themselves; but keys that wait for the end of playing tell something new in
/// their own section alone, where the user looks for a way to stop them.
std::optional<CurrentWork> analysis(const LibraryStore& library)
{
    const bool keysFirst = library.keys().activeMusicalKeyTrackID().has_value() ||
                           library.workspace().activeTab() == LibraryTab::MusicalKey;
    const std::optional<CurrentWork> first = keysFirst ? keyWork(library) : tempoWork(library);
    return first ? first : keysFirst ? tempoWork(library) : keyWork(library);
}

} // namespace

std::optional<CurrentWork> CurrentWork::of(const LibraryStore& library)
{
    const Removal::Progress moves = library.removal().progress();
    if (moves.total > 1 && moves.done < moves.total)
        return work(moves.isRestoring ? QStringLiteral("Возврат из Корзины: %d из %d")
                                      : QStringLiteral("Перемещение в Корзину: %d из %d"),
                    moves.done, moves.total, &DashboardActions::stopMovingFiles);
    const TagSaver::Progress writes = library.tagWriting().saver().progress();
    if (writes.total > 1 && writes.done < writes.total)
        return work(QStringLiteral("Запись тегов: %d из %d"), writes.done, writes.total,
                    &DashboardActions::cancelTagWrites);
    const Imports::Progress reads = library.imports().metadataProgress();
    if (reads.done < reads.total)
        return work(QStringLiteral("Чтение тегов: %d из %d"), reads.done, reads.total, nullptr);
    return analysis(library);
}
