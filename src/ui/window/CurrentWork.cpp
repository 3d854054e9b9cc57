#include "ui/window/CurrentWork.h"

#include "core/library/LibraryStore.h"
#include "core/library/imports/Imports.h"
#include "core/library/removal/Removal.h"
#include "core/library/tagwriting/TagWriting.h"
#include "ui/text/Texts.h"
#include "work/WorkBoard.h"

#include <QPointer>

namespace {

CurrentWork work(const QString& text, int done, int total, std::function<void()> stop)
{
    return {VelmoraLocalization::format(text, {done, total}), done, total, text, std::move(stop)};
}

std::optional<CurrentWork> onBoard(const WorkBoard& board)
{
    WorkEntry* entry = board.first();
    if (!entry)
        return std::nullopt;
    std::function<void()> stop;
    if (entry->isStoppable())
        stop = [entry = QPointer(entry)] {
            if (entry)
                entry->stop();
        };
    return work(entry->text(), static_cast<int>(entry->progress().done), static_cast<int>(entry->progress().total),
                std::move(stop));
}

} // namespace

std::optional<CurrentWork> CurrentWork::of(LibraryStore& library)
{
    const Removal::Progress moves = library.removal().progress();
    if (moves.total > 1 && moves.done < moves.total)
        return work(moves.isRestoring ? QStringLiteral("Возврат из Корзины: %d из %d")
                                      : QStringLiteral("Перемещение в Корзину: %d из %d"),
                    moves.done, moves.total, [&library] { library.removal().stopMoving(); });
    TagSaver& saver = library.tagWriting().saver();
    const TagSaver::Progress writes = saver.progress();
    if (writes.total > 1 && writes.done < writes.total)
        return work(QStringLiteral("Запись тегов: %d из %d"), writes.done, writes.total,
                    [&saver] { saver.cancelBatches(); });
    const Imports::Progress reads = library.imports().metadataProgress();
    if (reads.done < reads.total)
        return work(QStringLiteral("Чтение тегов: %d из %d"), reads.done, reads.total, {});
    return onBoard(library.board());
}
