#include "ui/sections/SectionRows.h"

#include "core/library/LibraryStore.h"
#include "core/library/keys/Keys.h"
#include "core/library/order/Order.h"
#include "core/library/selection/Selection.h"
#include "core/library/workspace/Workspace.h"
#include "ui/keys/KeyState.h"
#include "ui/text/Texts.h"
#include "ui/tracks/RowLayout.h"
#include "ui/tracks/TrackColumns.h"

namespace {

QString statusText(const ConversionItem::Status& status)
{
    using Case = ConversionItem::Status::Case;
    switch (status.value) {
    case Case::Waiting:
        return Texts::localized(QStringLiteral("В очереди"));
    case Case::Converting:
        return Texts::localized(QStringLiteral("Конвертируется…"));
    case Case::Completed:
        return Texts::localized(QStringLiteral("Готово"));
    case Case::Failed:
        return Texts::localized(status.message);
    }
    Q_UNREACHABLE();
}

/// One track per job, under the job's own id, with what the file's name tells.
QList<Track> conversionRows(const Workspace& workspace, const QList<Track>& before)
{
    QHash<TrackID, Track> known;
    known.reserve(before.size());
    for (const Track& track : before)
        known.insert(track.id(), track);
    QList<Track> rows;
    const QList<ConversionItem>& items = workspace.conversionItems();
    rows.reserve(items.size());
    for (const ConversionItem& item : items) {
        const auto track = known.constFind(item.id);
        rows.append(track != known.constEnd() ? *track : Track(item.id, item.url));
    }
    return rows;
}

double totalLength(const QList<Track>& rows)
{
    double seconds = 0;
    for (const Track& track : rows)
        seconds += track.duration();
    return seconds;
}

QString fileCount(qint64 count)
{
    return VelmoraLocalization::plural(QStringLiteral("%n файлов"), count);
}

QString folderCount(qint64 count)
{
    return VelmoraLocalization::plural(QStringLiteral("%n папок"), count);
}

QString coverFacts(const QList<Track>& rows)
{
    const auto missing =
        std::count_if(rows.begin(), rows.end(), [](const Track& t) { return t.artworkData().isNull(); });
    const QString without =
        missing > 0 ? VelmoraLocalization::format(QStringLiteral("без обложки %d"), {static_cast<qint64>(missing)})
                    : QString();
    return Texts::facts({Texts::trackCount(rows.size()), without});
}

QString keyFacts(const Keys& keys, const QList<Track>& rows)
{
    using Step = KeyState::Step;
    QHash<Step, qint64> counts;
    for (const Track& track : rows)
        ++counts[KeyState::of(keys, track.id()).step];
    const auto counted = [&](const QString& text, qint64 count) {
        return count > 0 ? VelmoraLocalization::format(text, {count}) : QString();
    };
    const bool waits = counts.value(Step::Queued) > 0 && !keys.activeMusicalKeyTrackID();
    return Texts::facts(
        {fileCount(rows.size()), counted(QStringLiteral("определено %d"), counts.value(Step::Determined)),
         counted(QStringLiteral("без результата %d"), counts.value(Step::Undetermined)),
         counted(QStringLiteral("в очереди %d"), counts.value(Step::Queued) + counts.value(Step::Running)),
         waits ? Texts::localized(QStringLiteral("пауза")) : QString()});
}

} // namespace

namespace SectionRows {

const std::vector<TrackColumn>& columns(LibraryTab tab)
{
    switch (tab) {
    case LibraryTab::Playlist:
        return TrackColumns::playlist();
    case LibraryTab::Favorites:
        return TrackColumns::full();
    case LibraryTab::Covers:
        return TrackColumns::covers();
    case LibraryTab::Converter:
        return TrackColumns::conversion();
    case LibraryTab::MusicalKey:
        return TrackColumns::keys();
    default:
        return TrackColumns::brief();
    }
}

QList<Track> rows(LibraryStore& library, LibraryTab tab, const QList<Track>& before)
{
    if (tab == LibraryTab::Converter)
        return conversionRows(library.workspace(), before);
    return library.selection().tracks(tab);
}

QList<FolderRun> folders(LibraryStore& library, LibraryTab tab)
{
    QList<FolderRun> runs;
    if (tab != LibraryTab::Playlist)
        return runs;
    const auto& sections = library.order().playlistFolderSections();
    runs.reserve(sections.size());
    for (const Order::PlaylistFolderSection& section : sections)
        runs.append({section.folder, section.first, section.end});
    return runs;
}

QHash<TrackID, QString> statusTexts(const LibraryStore& library)
{
    QHash<TrackID, QString> texts;
    for (const ConversionItem& item : library.workspace().conversionItems())
        texts.insert(item.id, statusText(item.status));
    return texts;
}

QString facts(LibraryStore& library, LibraryTab tab, const QList<Track>& rows)
{
    const Workspace& workspace = library.workspace();
    if (tab == LibraryTab::Duplicates && !workspace.duplicateSearchRoots().isEmpty())
        return Texts::facts(
            {VelmoraLocalization::plural(QStringLiteral("%n мест для поиска"), workspace.duplicateSearchRoots().size()),
             fileCount(rows.size())});
    if (rows.isEmpty())
        return {};
    const QString length = Texts::totalLength(totalLength(rows));
    switch (tab) {
    case LibraryTab::Playlist:
        return Texts::facts(
            {Texts::trackCount(rows.size()), folderCount(library.order().playlistFolderSections().size()), length});
    case LibraryTab::Favorites:
        return Texts::facts({Texts::trackCount(rows.size()), length});
    case LibraryTab::Covers:
        return coverFacts(rows);
    case LibraryTab::MusicalKey:
        return keyFacts(library.keys(), rows);
    default:
        return Texts::facts({fileCount(rows.size()), length});
    }
}

qsizetype count(LibraryStore& library, LibraryTab tab)
{
    const Workspace& workspace = library.workspace();
    const TrackList& tracks = workspace.tracks();
    switch (tab) {
    case LibraryTab::Playlist:
        return std::count_if(tracks.begin(), tracks.end(), [](const Track& t) { return t.isInPlaylist(); });
    case LibraryTab::Favorites:
        return std::count_if(tracks.begin(), tracks.end(), [](const Track& t) { return t.isFavorite(); });
    case LibraryTab::Covers:
        return std::count_if(tracks.begin(), tracks.end(),
                             [](const Track& t) { return t.isInCoverWorkspace() || t.isFavorite(); });
    case LibraryTab::Converter:
        return workspace.conversionItems().size();
    case LibraryTab::Analysis:
        return workspace.analysisTracks().size();
    case LibraryTab::MusicalKey:
        return workspace.keyAnalysisTracks().size();
    case LibraryTab::Duplicates:
        return workspace.duplicateTracks().size();
    }
    Q_UNREACHABLE();
}

bool sharesSelection(LibraryTab tab)
{
    return tab != LibraryTab::Converter && tab != LibraryTab::Duplicates;
}

bool holdsLibraryTracks(LibraryTab tab)
{
    return tab == LibraryTab::Playlist || tab == LibraryTab::Favorites || tab == LibraryTab::Covers;
}

QString removalText(LibraryTab tab)
{
    switch (tab) {
    case LibraryTab::Playlist:
        return Texts::localized(QStringLiteral("Убрать из плейлиста"));
    case LibraryTab::Favorites:
        return Texts::localized(QStringLiteral("Убрать из избранного"));
    case LibraryTab::Covers:
        return Texts::localized(QStringLiteral("Убрать из обложек"));
    case LibraryTab::Analysis:
        return Texts::localized(QStringLiteral("Убрать из анализа"));
    case LibraryTab::MusicalKey:
        return Texts::localized(QStringLiteral("Удалить из тональности"));
    default:
        return {};
    }
}

} // namespace SectionRows
