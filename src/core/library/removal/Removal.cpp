#include "core/library/removal/Removal.h"

#include "async/MainQueue.h"
#include "core/library/files/FileEvents.h"
#include "core/library/files/FinishedJob.h"
#include "core/library/removal/RemovalStep.h"
#include "core/library/removal/TrashCan.h"
#include "core/library/selection/Selection.h"
#include "core/library/status/StatusLine.h"
#include "core/library/workspace/Workspace.h"
#include "core/model/LibrarySection.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"
#include "platform/files/TrashError.h"

namespace {

using List = Track::MetadataDestination;
using Tone = WorkspaceStatus::Tone;

constexpr List kAllLists[] = {List::Library, List::Analysis, List::MusicalKey, List::Duplicates};

/// What became of one file.
struct Move {
    std::optional<TrashedItem> item; ///< set if it went
    QString error;                   ///< empty if nothing went wrong
    std::optional<FileStamp> before;
    std::optional<FileStamp> after;
};

Move moveToTrash(TrashCan& can, const QUrl& url)
{
    Move move;
    move.before = FileStamp::of(url);
    try {
        move.item = can.moveToTrash(url);
        move.after = FileStamp::of(move.item->trashedURL());
    } catch (const TrashError& error) {
        move.error = error.message();
    }
    return move;
}

Move moveBack(TrashCan& can, const TrashedItem& item, const QUrl& url)
{
    Move move;
    move.before = FileStamp::of(item.trashedURL());
    try {
        can.restore(item);
        move.after = FileStamp::of(url);
    } catch (const TrashError& error) {
        move.error = error.message();
    }
    return move;
}

} // namespace

/// Files on their way to the Trash. Their paths stay held until the rows are gone: a write that waits for one of them
/// then finds that there is nothing to write.
class Removal::TrashRound final : public FileRound {
public:
    TrashRound(Removal& removal, std::shared_ptr<RemovalStep> step, LibraryTab tab, QList<QUrl> files)
        : step(std::move(step))
        , tab(tab)
        , m_removal(removal)
        , m_files(std::move(files))
    {
    }

    QList<QUrl> begin() override
    {
        m_removal.m_isRestoring = false;
        return m_files;
    }

    async::Task<std::optional<FileFailure>> work(qsizetype file, FileLocks::HeldPath held,
                                                 std::stop_token stop) override
    {
        m_held.append(std::move(held));
        const QUrl url = m_files.at(file);
        auto job = [can = m_removal.m_dependencies.trashCan, url](const std::stop_token&) {
            return moveToTrash(*can, url);
        };
        const Move move = co_await finishedJob(m_removal.m_dependencies.executor, stop, std::move(job));
        if (!move.item)
            co_return FileFailure{url, move.error};
        trashed.insert(url, *move.item);
        m_removal.m_dependencies.events.tell({FileChange::Kind::Trashed, url, url, move.before, move.after});
        co_return std::nullopt;
    }

    void end(const End& end) override
    {
        if (end.firstFailure)
            m_removal.m_dependencies.workspace.setLastError(
                end.firstFailure->message,
                VelmoraLocalization::string(QStringLiteral("Не удалось переместить в Корзину")));
        m_removal.finishTrash(*this, end.left);
        m_held.clear();
    }

    const std::shared_ptr<RemovalStep> step;
    const LibraryTab tab; ///< whose rows playback goes on with
    QHash<QUrl, TrashedItem> trashed;

private:
    Removal& m_removal;
    QList<QUrl> m_files;
    QList<FileLocks::HeldPath> m_held;
};

/// Files on their way back. Rows come back a few files at a time, and until then they stay in the history: an end in
/// the middle costs no row whose file is back.
class Removal::RestoreRound final : public FileRound {
public:
    RestoreRound(Removal& removal, std::shared_ptr<RemovalStep> step)
        : m_removal(removal)
        , m_step(std::move(step))
    {
    }

    QList<QUrl> begin() override
    {
        m_removal.m_isRestoring = true;
        m_files = RemovalPlan::byFile(m_step->entries());
        QList<QUrl> urls;
        for (const QList<RemovedTrack>& entries : std::as_const(m_files))
            urls.append(entries.first().track.url());
        return urls;
    }

    async::Task<std::optional<FileFailure>> work(qsizetype file, FileLocks::HeldPath /*held*/,
                                                 std::stop_token stop) override
    {
        const QList<RemovedTrack> entries = m_files.at(file);
        const QUrl url = entries.first().track.url();
        auto job = [can = m_removal.m_dependencies.trashCan, item = *entries.first().trashed,
                    url](const std::stop_token&) { return moveBack(*can, item, url); };
        const Move move = co_await finishedJob(m_removal.m_dependencies.executor, stop, std::move(job));
        if (move.error.isEmpty()) {
            m_waiting.append(entries);
            m_removal.m_dependencies.events.tell({FileChange::Kind::CameBack, url, url, move.before, move.after});
            co_return std::nullopt;
        }
        m_step->forget(RemovalPlan::idsOf(entries)); // another try would fail as well
        co_return FileFailure{url, move.error};
    }

    void update() override
    {
        const QList<RemovedTrack> entries = std::exchange(m_waiting, {});
        m_step->forget(RemovalPlan::idsOf(entries));
        m_removal.putBack(entries, m_restored);
    }

    void end(const End& end) override
    {
        if (end.firstFailure)
            m_removal.m_dependencies.workspace.setLastError(
                VelmoraLocalization::format(
                    QStringLiteral("Не удалось восстановить «%@»: %@"),
                    {FileURL::lastPathComponent(end.firstFailure->url), end.firstFailure->message}),
                VelmoraLocalization::string(QStringLiteral("Не удалось вернуть из Корзины")));
        m_restored.left = end.left;
        m_removal.m_dependencies.history.ended(*m_step);
        m_removal.announceRestored(m_restored);
    }

private:
    Removal& m_removal;
    std::shared_ptr<RemovalStep> m_step;
    QList<QList<RemovedTrack>> m_files;
    QList<RemovedTrack> m_waiting; ///< their files are there, the rows not yet
    Restored m_restored;
};

Removal::Removal(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_line(dependencies.locks)
{
    connect(&m_line, &FileLine::progressChanged, this, &Removal::progressChanged);
}

Removal::~Removal() = default;

void Removal::removeTracksFromPlaylist(const QSet<TrackID>& ids)
{
    remove(RemovalPlan::outOfPlaylist(m_dependencies.workspace.tracks(), ids),
           m_dependencies.selection.tracks(LibraryTab::Playlist), QStringLiteral("Убрать из плейлиста"),
           QStringLiteral("Убрано из плейлиста: %d"));
}

void Removal::removeFromCoverWorkspace(const QSet<TrackID>& ids)
{
    const TrackList& tracks = m_dependencies.workspace.tracks();
    const auto refused = std::ranges::count_if(ids, [&](const TrackID& id) {
        const Track* track = tracks.find(id);
        return track && track->isFavorite();
    });
    if (refused > 0) {
        const QString key =
            refused == 1 ? QStringLiteral("Этот трек нельзя удалить из «Обложек», пока он находится в «Избранном». "
                                          "Сначала уберите его из «Избранного».")
                         : QStringLiteral("Эти треки нельзя удалить из «Обложек», пока они находятся в «Избранном». "
                                          "Сначала уберите их из «Избранного».");
        m_dependencies.workspace.setNotice(VelmoraLocalization::string(key));
    }
    remove(RemovalPlan::outOfCovers(tracks, ids), {}, QStringLiteral("Убрать из обложек"),
           QStringLiteral("Убрано из обложек: %d"));
}

void Removal::removeFromAnalysis(const QSet<TrackID>& ids)
{
    const TrackList& rows = m_dependencies.workspace.analysisTracks();
    remove(RemovalPlan::outOfList(List::Analysis, rows, ids), rows.rows(), QStringLiteral("Убрать из анализа"),
           QStringLiteral("Убрано из анализа: %d"));
}

void Removal::removeFromMusicalKeyAnalysis(const QSet<TrackID>& ids)
{
    const TrackList& rows = m_dependencies.workspace.keyAnalysisTracks();
    remove(RemovalPlan::outOfList(List::MusicalKey, rows, ids), rows.rows(), QStringLiteral("Удалить из тональности"),
           QStringLiteral("Убрано из тональности: %d"));
}

/// \param rows that playback goes on in; empty where it stays.
void Removal::remove(RemovalPlan::Cut cut, const QList<Track>& rows, const QString& actionName, const QString& message)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (cut.removed.isEmpty())
        return;
    const QSet<TrackID> removed = RemovalPlan::idsOf(cut.removed);
    m_dependencies.history.push(std::make_shared<RemovalStep>(*this, History::Kind::Removal, actionName, cut.removed));
    m_dependencies.workspace.setList(cut.removed.first().list, std::move(cut.rows));
    dropSelected(removed);
    if (!rows.isEmpty())
        emit rowsLeft(removed, rows);
    m_dependencies.status.showCounted(message, {cut.removed.size()}, StatusIcon::Done, Tone::Success);
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
    auto step = std::make_shared<RemovalStep>(*this, History::Kind::Trash, QStringLiteral("Переместить в Корзину"));
    m_dependencies.history.push(step);
    m_line.append(std::make_shared<TrashRound>(*this, std::move(step), tab, files));
}

void Removal::finishTrash(TrashRound& round, int left)
{
    Workspace& workspace = m_dependencies.workspace;
    const QList<Track> rows = m_dependencies.selection.tracks(round.tab);
    QHash<List, QList<Track>> remaining;
    QList<RemovedTrack> removed;
    for (const List list : kAllLists) {
        RemovalPlan::Cut cut = RemovalPlan::withoutFiles(list, workspace.list(list), round.trashed);
        if (cut.removed.isEmpty())
            continue;
        remaining.insert(list, std::move(cut.rows));
        removed.append(cut.removed);
    }
    round.step->moved(removed);
    if (removed.isEmpty()) {
        m_dependencies.history.withdraw(*round.step);
        return;
    }
    const QSet<TrackID> ids = RemovalPlan::idsOf(removed);
    for (auto list = remaining.begin(); list != remaining.end(); ++list)
        workspace.setList(list.key(), std::move(*list));
    dropSelected(ids);
    m_dependencies.selection.forget(ids);
    emit m_dependencies.notifications.velmoraFavoriteMembershipDidChange();
    emit rowsLeft(ids, rows);
    if (left > 0)
        m_dependencies.status.showCounted(QStringLiteral("Перемещено в Корзину: %d · остановлено, осталось: %d"),
                                          {round.trashed.size(), left}, StatusIcon::Trash, Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Перемещено в Корзину: %d"), {round.trashed.size()},
                                          StatusIcon::Trash, Tone::Success);
}

void Removal::stopMoving()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_line.stop();
}

Removal::Progress Removal::progress() const
{
    const FileLine::Progress progress = m_line.progress();
    return {progress.done, progress.total, m_isRestoring};
}

void Removal::restore(std::shared_ptr<RemovalStep> step)
{
    m_line.append(std::make_shared<RestoreRound>(*this, std::move(step)));
}

/// \return whether anything was not there as it had been.
bool Removal::putBack(const QList<RemovedTrack>& entries)
{
    Restored restored;
    putBack(entries, restored);
    if (restored.isChanged)
        announceRestored(restored);
    return restored.isChanged;
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
    if (!back.isChanged)
        return;
    restored.isChanged = true;
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
    emit rowsCameBack(list, read, unread);
}

void Removal::announceRestored(const Restored& restored)
{
    if (restored.files.isEmpty())
        return;
    selectRestored(restored);
    const StatusIcon icon = StatusIcon::Undo;
    if (restored.left > 0)
        m_dependencies.status.showCounted(QStringLiteral("Восстановлено: %d · остановлено, осталось: %d"),
                                          {restored.files.size(), restored.left}, icon, Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Восстановлено: %d"), {restored.files.size()}, icon,
                                          Tone::Success);
}

/// What the section shows of them becomes its selection; where it shows none, the selection stays as it is.
void Removal::selectRestored(const Restored& restored)
{
    const LibraryTab tab = m_dependencies.workspace.activeTab();
    QList<TrackID> ids = restored.ids.value(LibrarySection::of(tab).list);
    ids.removeIf([&](const TrackID& id) { return !m_dependencies.selection.isSelectable(tab, id); });
    if (!ids.isEmpty())
        m_dependencies.selection.select(QSet<TrackID>(ids.cbegin(), ids.cend()), ids.last());
    emit m_dependencies.notifications.velmoraFavoriteMembershipDidChange();
    if (!ids.isEmpty() && tab == LibraryTab::Favorites)
        emit m_dependencies.notifications.velmoraFocusFavoriteTrack(ids.last());
}

void Removal::dropSelected(const QSet<TrackID>& ids)
{
    Workspace& workspace = m_dependencies.workspace;
    std::optional<TrackID> focused = workspace.selectedID();
    if (focused && ids.contains(*focused))
        focused.reset();
    workspace.setSelection(workspace.selectedIDs() - ids, focused);
}
