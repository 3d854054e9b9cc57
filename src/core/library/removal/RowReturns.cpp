#include "core/library/removal/RowReturns.h"

#include "async/MainQueue.h"
#include "core/library/removal/RemovalPlan.h"
#include "core/library/removal/RemovalStep.h"
#include "core/library/selection/Selection.h"
#include "core/library/status/StatusLine.h"
#include "core/library/workspace/Workspace.h"
#include "core/model/LibrarySection.h"
#include "platform/Notifications.h"

#include <algorithm>

namespace {

using List = Track::MetadataDestination;
using Tone = WorkspaceStatus::Tone;
using Stamps = QHash<QUrl, FileStamp>;

constexpr List kAllLists[] = {List::Library, List::Analysis, List::MusicalKey, List::Duplicates};

Stamps stampsOf(const QList<QUrl>& urls, const std::stop_token& stop)
{
    Stamps stamps;
    for (const QUrl& url : urls) {
        if (stop.stop_requested())
            break;
        if (const std::optional<FileStamp> stamp = FileStamp::of(url))
            stamps.insert(url, *stamp);
    }
    return stamps;
}

/// Rows that stayed in their list, and those that know nothing of their files, have nothing to lose.
QList<QUrl> knownFiles(const QList<RemovedTrack>& entries)
{
    QList<QUrl> urls;
    for (const RemovedTrack& entry : entries) {
        if (entry.track.isRead() && !entry.isStillListed())
            urls.append(entry.track.url());
    }
    return urls;
}

} // namespace

RowReturns::RowReturns(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

RowReturns::~RowReturns() = default;

void RowReturns::noteFiles(const std::shared_ptr<RemovalStep>& step)
{
    const QList<QUrl> urls = knownFiles(step->entries());
    if (!urls.isEmpty())
        m_tasks.add([this, step = std::weak_ptr(step), urls](std::stop_token stop) {
            return note(step, urls, std::move(stop));
        });
}

async::Task<> RowReturns::note(std::weak_ptr<RemovalStep> step, QList<QUrl> urls, std::stop_token stop)
{
    auto job = [urls](const std::stop_token& jobStop) { return stampsOf(urls, jobStop); };
    const Stamps stamps = co_await m_dependencies.executor.run(async::Priority::Utility, stop, std::move(job));
    if (const std::shared_ptr<RemovalStep> kept = step.lock())
        kept->setStamps(stamps);
}

void RowReturns::lookForChanges(const QList<RemovedTrack>& entries)
{
    if (!knownFiles(entries).isEmpty())
        m_tasks.add([this, entries](std::stop_token stop) { return look(entries, std::move(stop)); });
}

async::Task<> RowReturns::look(QList<RemovedTrack> entries, std::stop_token stop)
{
    auto job = [urls = knownFiles(entries)](const std::stop_token& jobStop) { return stampsOf(urls, jobStop); };
    const Stamps stamps = co_await m_dependencies.executor.run(async::Priority::Utility, stop, std::move(job));
    QHash<List, QSet<TrackID>> changed;
    for (const RemovedTrack& entry : entries) {
        const auto now = stamps.constFind(entry.track.url());
        if (now != stamps.cend() && !entry.isSameFile(*now))
            changed[entry.list].insert(entry.track.id());
    }
    for (auto list = changed.cbegin(); list != changed.cend(); ++list)
        readAgain(list.key(), *list);
}

void RowReturns::readAgain(List list, const QSet<TrackID>& ids)
{
    Workspace& workspace = m_dependencies.workspace;
    QList<Track> rows = workspace.list(list).rows();
    QList<Track> unread;
    for (const TrackID& id : ids) {
        const std::optional<int> place = workspace.list(list).indexOf(id);
        if (!place || !std::as_const(rows)[*place].isRead())
            continue;
        rows[*place].setTagSource(Track::TagSource::Remembered);
        unread.append(std::as_const(rows)[*place]);
    }
    if (unread.isEmpty())
        return;
    workspace.setList(list, std::move(rows));
    emit rowsCameBack(list, {}, unread);
}

/// \param entries what comes back into the lists; its files are there.
void RowReturns::putBack(QList<RemovedTrack> entries, Restored& restored)
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
void RowReturns::putBackInto(List list, const QList<RemovedTrack>& entries, Restored& restored)
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

void RowReturns::announce(const Restored& restored)
{
    if (restored.files.isEmpty())
        return;
    select(restored);
    const StatusIcon icon = StatusIcon::Undo;
    if (restored.left > 0)
        m_dependencies.status.showCounted(QStringLiteral("Восстановлено: %d · остановлено, осталось: %d"),
                                          {restored.files.size(), restored.left}, icon, Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Восстановлено: %d"), {restored.files.size()}, icon,
                                          Tone::Success);
}

/// What the section shows of them becomes its selection; where it shows none, the selection stays as it is.
void RowReturns::select(const Restored& restored)
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
