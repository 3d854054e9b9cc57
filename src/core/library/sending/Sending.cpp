#include "core/library/sending/Sending.h"

#include "async/MainQueue.h"
#include "core/library/reading/MetadataLoads.h"
#include "core/library/status/StatusLine.h"
#include "core/library/workspace/Workspace.h"

namespace {

/// The tracks with these ids, in list order.
QList<Track> inListOrder(const TrackList& tracks, const QSet<TrackID>& ids)
{
    QList<int> rows;
    for (const TrackID& id : ids) {
        if (const std::optional<int> row = tracks.indexOf(id))
            rows.append(*row);
    }
    std::ranges::sort(rows);
    QList<Track> result;
    for (const int row : std::as_const(rows))
        result.append(tracks.at(row));
    return result;
}

/// A row of its own for a track's file: same tags and facts, member of nothing. It shows what the file says, which its
/// read tells: edits that are not in the file stay with their row.
Track copied(const Track& track)
{
    Track copy = track.withID(freshID());
    copy.forgetEdits(TagFieldSet::kAll);
    copy.setTagSource(Track::TagSource::Remembered);
    copy.setMetadataVersion(Track::MetadataVersion());
    copy.setIsFavorite(false);
    copy.setIsInPlaylist(false);
    copy.setIsInCoverWorkspace(false);
    return copy;
}

} // namespace

Sending::Sending(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

void Sending::addTracksToAnalysis(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_dependencies.workspace;
    QList<Track> added;
    QSet<TrackID> addedIDs;
    for (const Track& track : inListOrder(workspace.tracks(), ids)) {
        if (workspace.analysisTracks().indexOfURL(track.url()))
            continue;
        added.append(copied(track));
        addedIDs.insert(added.last().id());
    }
    if (added.isEmpty())
        return;
    workspace.setList(Track::MetadataDestination::Analysis, workspace.analysisTracks().rows() + added);
    m_dependencies.loads.schedule(added, Track::MetadataDestination::Analysis);
    emit qualityWanted(addedIDs);
    m_dependencies.status.showCounted(QStringLiteral("Отправлено в анализ: %d"), {added.size()}, StatusIcon::Tempo,
                                      WorkspaceStatus::Tone::Success);
}

int Sending::addTracksToConversion(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QList<QUrl> urls;
    for (const Track& track : inListOrder(m_dependencies.workspace.tracks(), ids))
        urls.append(track.url());
    const int added = appendToConversion(urls);
    if (added > 0)
        m_dependencies.status.showCounted(QStringLiteral("Добавлено в конвертер: %d"), {added}, StatusIcon::Conversion,
                                          WorkspaceStatus::Tone::Success);
    return added;
}

int Sending::appendToConversion(const QList<QUrl>& urls)
{
    QList<ConversionItem> items = m_dependencies.workspace.conversionItems();
    QSet<QUrl> queued;
    for (const ConversionItem& item : std::as_const(items))
        queued.insert(item.url);
    const qsizetype before = items.size();
    for (const QUrl& url : urls) {
        if (queued.contains(url))
            continue;
        queued.insert(url);
        ConversionItem item;
        item.url = url;
        items.append(item);
    }
    const int added = static_cast<int>(items.size() - before);
    if (added > 0)
        m_dependencies.workspace.setConversionItems(std::move(items));
    return added;
}
