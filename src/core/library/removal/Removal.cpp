#include "core/library/removal/Removal.h"

#include "async/MainQueue.h"
#include "core/library/files/FileLocks.h"
#include "core/library/files/FinishedJob.h"
#include "core/library/removal/TrashCan.h"
#include "core/library/selection/Selection.h"
#include "core/library/status/StatusLine.h"
#include "core/library/undo/UndoMoment.h"
#include "core/library/workspace/Workspace.h"
#include "core/model/LibrarySection.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"
#include "platform/files/TrashError.h"

namespace {

using List = Track::MetadataDestination;
using Tone = WorkspaceStatus::Tone;

constexpr int kFilesPerUpdate = 8; // restored files between two updates of the lists
constexpr List kAllLists[] = {List::Library, List::Analysis, List::MusicalKey, List::Duplicates};

/// The key of what the menu calls a move to the Trash.
QString trashName()
{
    return QStringLiteral("Переместить в Корзину");
}

/// What became of one file.
struct Move {
    std::optional<TrashedItem> item; ///< set if it went
    QString error;
};

Move moveToTrash(TrashCan& can, const QUrl& url)
{
    try {
        return {can.moveToTrash(url), {}};
    } catch (const TrashError& error) {
        return {std::nullopt, error.message()};
    }
}

/// The text of what went wrong; empty if nothing did.
QString restore(TrashCan& can, const TrashedItem& item)
{
    try {
        can.restore(item);
        return {};
    } catch (const TrashError& error) {
        return error.message();
    }
}

QSet<TrackID> idsOf(const QList<RemovedTrack>& entries)
{
    QSet<TrackID> ids;
    for (const RemovedTrack& entry : entries)
        ids.insert(entry.track.id());
    return ids;
}

/// The entries file by file, those of one file together, in the order of the rows.
QList<QList<RemovedTrack>> byFile(QList<RemovedTrack> entries)
{
    std::ranges::stable_sort(entries, {}, &RemovedTrack::originalIndex);
    QList<QList<RemovedTrack>> files;
    QHash<QUrl, qsizetype> places;
    for (const RemovedTrack& entry : std::as_const(entries)) {
        const auto known = places.constFind(entry.track.url());
        if (known != places.cend()) {
            files[*known].append(entry);
            continue;
        }
        places.insert(entry.track.url(), files.size());
        files.append({entry});
    }
    return files;
}

} // namespace

/// What a round of moves came to.
struct Removal::Moves {
    QHash<QUrl, TrashedItem> trashed;
    QString error; ///< the first one's text; empty if there was none
    int left = 0;  ///< files that a stop left where they were
};

Removal::Removal(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

Removal::~Removal() = default;

void Removal::removeTracksFromPlaylist(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_dependencies.workspace;
    const QList<Track> rows = m_dependencies.selection.tracks(LibraryTab::Playlist);
    RemovalPlan::Cut cut = RemovalPlan::outOfPlaylist(workspace.tracks(), ids);
    if (cut.removed.isEmpty())
        return;
    const QSet<TrackID> removed = idsOf(cut.removed);
    push({cut.removed, QStringLiteral("Убрать из плейлиста"), nextUndoMoment()});
    workspace.setTracks(std::move(cut.rows));
    dropSelected(removed);
    m_dependencies.continuePlaybackAfterRemoving(removed, rows);
    m_dependencies.status.showCounted(QStringLiteral("Убрано из плейлиста: %d"), {cut.removed.size()},
                                      QStringLiteral("checkmark.circle"), Tone::Success);
}

void Removal::removeFromAnalysis(const QSet<TrackID>& ids)
{
    removeFromList(List::Analysis, ids, {{}, QStringLiteral("Убрать из анализа"), 0},
                   QStringLiteral("Убрано из анализа: %d"));
}

void Removal::removeFromMusicalKeyAnalysis(const QSet<TrackID>& ids)
{
    removeFromList(List::MusicalKey, ids, {{}, QStringLiteral("Удалить из тональности"), 0},
                   QStringLiteral("Убрано из тональности: %d"));
}

void Removal::removeFromList(List list, const QSet<TrackID>& ids, const RemovalStep& step, const QString& message)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_dependencies.workspace;
    const QList<Track> rows = workspace.list(list).rows();
    RemovalPlan::Cut cut = RemovalPlan::outOfList(list, workspace.list(list), ids);
    if (cut.removed.isEmpty())
        return;
    const QSet<TrackID> removed = idsOf(cut.removed);
    push({cut.removed, step.actionName, nextUndoMoment()});
    workspace.setList(list, std::move(cut.rows));
    dropSelected(removed);
    m_dependencies.continuePlaybackAfterRemoving(removed, rows);
    m_dependencies.status.showCounted(message, {cut.removed.size()}, QStringLiteral("checkmark.circle"), Tone::Success);
}

void Removal::trashTracks(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const Workspace& workspace = m_dependencies.workspace;
    QList<const TrackList*> lists;
    for (const List list : kAllLists)
        lists.append(&workspace.list(list));
    trash(workspace.activeTab(), RemovalPlan::filesOf(lists, ids));
}

void Removal::trashDuplicateTracks(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    trash(LibraryTab::Duplicates, RemovalPlan::filesOf({&m_dependencies.workspace.duplicateTracks()}, ids));
}

void Removal::trash(LibraryTab tab, const QList<QUrl>& files)
{
    if (files.isEmpty() || !m_dependencies.trashCan)
        return;
    const Request request{nextUndoMoment(), tab, files};
    m_history.beginTrashing(request.moment);
    emit historyChanged();
    m_moves.append([this, request](std::stop_token stop) { return trashTask(request, std::move(stop)); });
}

async::Task<> Removal::trashTask(Request request, std::stop_token stop)
{
    Moves moves;
    // Held until the rows are gone: a write that waits for its file then finds that there is nothing to write.
    QList<FileLocks::HeldPath> held;
    beginProgress(static_cast<int>(request.files.size()), false);
    for (const QUrl& url : request.files) {
        if (m_isStopping)
            break;
        held.append(co_await m_dependencies.locks.hold(url, stop));
        auto job = [can = m_dependencies.trashCan, url](const std::stop_token&) { return moveToTrash(*can, url); };
        const Move move = co_await finishedJob(m_dependencies.executor, stop, std::move(job));
        if (move.item)
            moves.trashed.insert(url, *move.item);
        else if (moves.error.isEmpty())
            moves.error = move.error;
        advanceProgress();
    }
    moves.left = endProgress();
    finishTrash(request, moves);
}

void Removal::finishTrash(const Request& request, const Moves& moves)
{
    Workspace& workspace = m_dependencies.workspace;
    const QList<Track> rows = m_dependencies.selection.tracks(request.tab);
    QHash<List, QList<Track>> left;
    RemovalStep step{{}, trashName(), request.moment};
    for (const List list : kAllLists) {
        RemovalPlan::Cut cut = RemovalPlan::withoutFiles(list, workspace.list(list), moves.trashed);
        if (cut.removed.isEmpty())
            continue;
        left.insert(list, std::move(cut.rows));
        step.entries.append(cut.removed);
    }
    m_history.endTrashing(request.moment);
    if (!moves.error.isEmpty())
        workspace.setLastError(moves.error);
    if (step.entries.isEmpty()) {
        m_history.endTakingBack(request.moment);
        emit historyChanged();
        return;
    }
    const QSet<TrackID> removed = idsOf(step.entries);
    push(std::move(step));
    for (auto list = left.begin(); list != left.end(); ++list)
        workspace.setList(list.key(), std::move(*list));
    dropSelected(removed);
    m_dependencies.selection.forget(removed);
    emit m_dependencies.notifications.velmoraFavoriteMembershipDidChange();
    m_dependencies.continuePlaybackAfterRemoving(removed, rows);
    if (moves.left > 0)
        m_dependencies.status.showCounted(QStringLiteral("Перемещено в Корзину: %d · остановлено, осталось: %d"),
                                          {moves.trashed.size(), moves.left}, QStringLiteral("trash"), Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Перемещено в Корзину: %d"), {moves.trashed.size()},
                                          QStringLiteral("trash"), Tone::Success);
}

void Removal::push(RemovalStep step)
{
    m_history.push(std::move(step));
    emit historyChanged();
}

bool Removal::canUndoPhysicalTrash() const
{
    return !removalHistory().isEmpty() && removalHistory().last().holdsTrashedFile();
}

QString Removal::undoActionName() const
{
    const quint64 moment = m_history.undoMoment();
    if (moment == 0)
        return {};
    const RemovalStep* const step = m_history.find(moment);
    return VelmoraLocalization::string(step ? step->actionName : trashName());
}

void Removal::stopMoving()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_isStopping = m_progress.done < m_progress.total;
}

void Removal::undoLastRemoval()
{
    VELMORA_ASSERT_MAIN_THREAD();
    const quint64 moment = m_history.undoMoment();
    if (moment == 0)
        return;
    const RemovalStep* const step = m_history.find(moment);
    if (step && !step->holdsTrashedFile()) {
        Restored restored;
        putBack(m_history.take(moment)->entries, restored);
        emit historyChanged();
        announceRestored(restored);
        return;
    }
    m_history.beginTakingBack(moment);
    emit historyChanged();
    m_moves.append([this, moment](std::stop_token stop) { return restoreTask(moment, std::move(stop)); });
}

/// Rows come back a few files at a time, and until then they stay in the history: an end in the middle costs no row
/// whose file is back.
async::Task<> Removal::restoreTask(quint64 moment, std::stop_token stop)
{
    const RemovalStep* const step = m_history.find(moment);
    const QList<QList<RemovedTrack>> files = step ? byFile(step->entries) : QList<QList<RemovedTrack>>(); // none went
    Restored restored;
    QList<RemovedTrack> waiting;
    QString firstError;
    beginProgress(static_cast<int>(files.size()), true);
    for (qsizetype file = 0; file < files.size() && !m_isStopping; ++file) {
        const QList<RemovedTrack> entries = files[file];
        QString error;
        if (entries.first().trashed) {
            auto job = [can = m_dependencies.trashCan, item = *entries.first().trashed](const std::stop_token&) {
                return restore(*can, item);
            };
            error = co_await finishedJob(m_dependencies.executor, stop, std::move(job));
        }
        if (error.isEmpty()) {
            waiting.append(entries);
        } else {
            m_history.forget(moment, idsOf(entries)); // another try would fail as well
            if (firstError.isEmpty())
                firstError =
                    VelmoraLocalization::format(QStringLiteral("Не удалось восстановить «%@»: %@"),
                                                {FileURL::lastPathComponent(entries.first().track.url()), error});
        }
        advanceProgress();
        if ((file + 1) % kFilesPerUpdate == 0)
            putBackMoved(moment, std::exchange(waiting, {}), restored);
    }
    putBackMoved(moment, waiting, restored);
    if (!firstError.isEmpty())
        m_dependencies.workspace.setLastError(firstError);
    restored.left = endProgress();
    m_history.endTakingBack(moment);
    emit historyChanged();
    announceRestored(restored);
}

/// What is back in the lists is no longer to be taken back.
void Removal::putBackMoved(quint64 moment, const QList<RemovedTrack>& entries, Restored& restored)
{
    m_history.forget(moment, idsOf(entries));
    putBack(entries, restored);
}

/// \param entries what comes back into the lists; its files are there.
void Removal::putBack(QList<RemovedTrack> entries, Restored& restored)
{
    std::ranges::stable_sort(entries, {}, &RemovedTrack::originalIndex);
    for (const List list : kAllLists) {
        QList<RemovedTrack> ofList;
        std::ranges::copy_if(entries, std::back_inserter(ofList), [&](const auto& e) { return e.list == list; });
        if (!ofList.isEmpty())
            putBackInto(list, ofList, restored);
    }
}

/// \param entries of one list, ascending.
void Removal::putBackInto(List list, const QList<RemovedTrack>& entries, Restored& restored)
{
    Workspace& workspace = m_dependencies.workspace;
    RemovalPlan::Back back = RemovalPlan::putBack(workspace.list(list), entries);
    restored.ids[list].append(back.ids);
    for (const RemovedTrack& entry : entries)
        restored.files.insert(entry.track.url());
    workspace.setList(list, std::move(back.rows));
    QList<Track> unread; // what was read of them in the meantime found no row
    QSet<TrackID> read;
    for (const TrackID& id : std::as_const(back.ids)) {
        const Track* const track = workspace.list(list).find(id);
        if (track && !track->isRead())
            unread.append(*track);
        else if (track)
            read.insert(id);
    }
    if (!unread.isEmpty())
        m_dependencies.readTags(unread, list);
    if (list != List::Library)
        return;
    for (const TrackID& id : std::as_const(back.ids))
        m_dependencies.writePendingEdits(id);
    m_dependencies.detectBPM(read);
}

void Removal::announceRestored(const Restored& restored)
{
    if (restored.files.isEmpty())
        return;
    QList<TrackID> ids = restored.ids.value(LibrarySection::of(m_dependencies.workspace.activeTab()).list);
    if (ids.isEmpty()) {
        for (const List list : kAllLists)
            ids.append(restored.ids.value(list));
    }
    selectRestored(ids);
    const QString icon = QStringLiteral("arrow.uturn.backward");
    if (restored.left > 0)
        m_dependencies.status.showCounted(QStringLiteral("Восстановлено: %d · остановлено, осталось: %d"),
                                          {restored.files.size(), restored.left}, icon, Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Восстановлено: %d"), {restored.files.size()}, icon,
                                          Tone::Success);
}

void Removal::selectRestored(const QList<TrackID>& ids)
{
    const LibraryTab tab = m_dependencies.workspace.activeTab();
    std::optional<TrackID> focused;
    if (!ids.isEmpty() && m_dependencies.selection.isSelectable(tab, ids.last()))
        focused = ids.last();
    m_dependencies.workspace.setSelection(QSet<TrackID>(ids.cbegin(), ids.cend()), focused);
    emit m_dependencies.notifications.velmoraFavoriteMembershipDidChange();
    if (focused && tab == LibraryTab::Favorites)
        emit m_dependencies.notifications.velmoraFocusFavoriteTrack(*focused);
}

void Removal::dropSelected(const QSet<TrackID>& ids)
{
    Workspace& workspace = m_dependencies.workspace;
    std::optional<TrackID> focused = workspace.selectedID();
    if (focused && ids.contains(*focused))
        focused.reset();
    workspace.setSelection(workspace.selectedIDs() - ids, focused);
}

void Removal::beginProgress(int files, bool isRestoring)
{
    m_isStopping = false;
    m_progress = {0, files, isRestoring};
    emit progressChanged();
}

void Removal::advanceProgress()
{
    ++m_progress.done;
    emit progressChanged();
}

/// \return the files that a stop left undone.
int Removal::endProgress()
{
    const int left = m_progress.total - m_progress.done;
    m_progress = {};
    m_isStopping = false;
    emit progressChanged();
    return left;
}
