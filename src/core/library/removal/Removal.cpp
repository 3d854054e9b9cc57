#include "core/library/removal/Removal.h"

#include "async/MainQueue.h"
#include "core/library/files/FileEvents.h"
#include "core/library/files/FinishedJob.h"
#include "core/library/kinds/WorkKinds.h"
#include "core/library/removal/RemovalStep.h"
#include "core/library/removal/TrashMove.h"
#include "core/library/selection/Selection.h"
#include "core/library/status/StatusLine.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"

namespace {

using List = Track::MetadataDestination;
using Tone = WorkspaceStatus::Tone;

QString movingText()
{
    return QStringLiteral("Перемещение в Корзину: %d из %d");
}

constexpr List kAllLists[] = {List::Library, List::Analysis, List::MusicalKey, List::Duplicates};

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
        m_removal.m_line.setText(movingText());
        return m_files;
    }

    async::Task<std::optional<FileFailure>> work(qsizetype file, FileLocks::HeldPath held,
                                                 std::stop_token stop) override
    {
        m_held.append(std::move(held));
        const QUrl url = m_files.at(file);
        auto job = [can = m_removal.m_dependencies.trashCan, url](const std::stop_token&) {
            return TrashMove::away(*can, url);
        };
        const TrashMove move = co_await finishedJob(m_removal.m_dependencies.executor, stop, std::move(job));
        if (!move.item)
            co_return FileFailure{url, move.error};
        trashed.insert(url, {*move.item, move.before});
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
    QHash<QUrl, RemovalPlan::TrashedFile> trashed;

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
        m_removal.m_line.setText(QStringLiteral("Возврат из Корзины: %d из %d"));
        m_removal.m_restoring = this;
        m_files = RemovalPlan::byFile(m_step->entries());
        QList<QUrl> urls;
        for (const QList<RemovedTrack>& entries : std::as_const(m_files))
            urls.append(entries.first().track.url());
        return urls;
    }

    async::Task<std::optional<FileFailure>> work(qsizetype file, FileLocks::HeldPath /*held*/,
                                                 std::stop_token stop) override
    {
        const QList<RemovedTrack> entries = m_inHand = m_files.at(file);
        const QUrl url = entries.first().track.url();
        auto job = [can = m_removal.m_dependencies.trashCan, item = *entries.first().trashed,
                    url](const std::stop_token&) { return TrashMove::back(*can, item, url); };
        const TrashMove move = co_await finishedJob(m_removal.m_dependencies.executor, stop, std::move(job));
        m_inHand.clear();
        if (move.error.isEmpty()) {
            m_waiting.append(RemovalPlan::asOf(entries, move.after));
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
        m_removal.m_returns.putBack(entries, m_restored);
    }

    void settleForTheEnd()
    {
        update();
        RowReturns::Restored last;
        m_removal.m_returns.putBack(m_inHand, last);
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
        m_removal.m_restoring = nullptr;
        m_removal.m_dependencies.history.ended(*m_step);
        m_removal.m_returns.announce(m_restored);
    }

private:
    Removal& m_removal;
    std::shared_ptr<RemovalStep> m_step;
    QList<QList<RemovedTrack>> m_files;
    QList<RemovedTrack> m_waiting; ///< their files are there, the rows not yet
    QList<RemovedTrack> m_inHand;  ///< of the file that is on its way
    RowReturns::Restored m_restored;
};

Removal::Removal(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_returns({dependencies.workspace, dependencies.selection, dependencies.status, dependencies.notifications,
                 dependencies.executor})
    , m_line(dependencies.locks, {dependencies.board, WorkKinds::MovingFiles, movingText()})
{
    connect(&m_returns, &RowReturns::rowsCameBack, this, &Removal::rowsCameBack);
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
    const auto step = std::make_shared<RemovalStep>(*this, History::Kind::Removal, actionName, cut.removed);
    m_dependencies.history.push(step);
    m_returns.noteFiles(step);
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

void Removal::restore(std::shared_ptr<RemovalStep> step)
{
    m_line.append(std::make_shared<RestoreRound>(*this, std::move(step)));
}

/// \return whether anything was not there as it had been.
bool Removal::putBack(const QList<RemovedTrack>& entries)
{
    RowReturns::Restored restored;
    m_returns.putBack(entries, restored);
    if (restored.isChanged) {
        m_returns.announce(restored);
        m_returns.lookForChanges(entries);
    }
    return restored.isChanged;
}

void Removal::settle()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_restoring)
        m_restoring->update();
}

void Removal::settleForTheEnd()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_restoring)
        m_restoring->settleForTheEnd();
}

void Removal::dropSelected(const QSet<TrackID>& ids)
{
    Workspace& workspace = m_dependencies.workspace;
    std::optional<TrackID> focused = workspace.selectedID();
    if (focused && ids.contains(*focused))
        focused.reset();
    workspace.setSelection(workspace.selectedIDs() - ids, focused);
}
