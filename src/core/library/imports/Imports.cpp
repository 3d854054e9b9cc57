#include "core/library/imports/Imports.h"

#include "async/MainQueue.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/imports/StrayTemporaries.h"
#include "core/library/sending/Sending.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/waveforms/Waveforms.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Preferences.h"

namespace {

using Destination = Track::MetadataDestination;
using Tone = WorkspaceStatus::Tone;

constexpr int kSlice = 200;           // rows that join the list in one assignment
constexpr double kSlicePause = 0.016; // seconds: one frame for the window between slices
constexpr int kParallelWalks = 4;     // a folder on a slow disk does not hold up the next drop

/// Those of the rows that are in the list still, with what was edited meanwhile.
QList<Track> asTheyAre(const TrackList& list, const QList<Track>& rows)
{
    QList<Track> result;
    for (const Track& row : rows) {
        if (const Track* now = list.find(row.id()))
            result.append(*now);
    }
    return result;
}

} // namespace

/// How the sections with lists of their own take files in.
struct Imports::SectionImport {
    Destination destination;
    QString message; ///< counted; empty says nothing
    StatusIcon icon;
    bool wantsQuality;
};

Imports::Imports(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_expansions(kParallelWalks)
{
}

Imports::~Imports() = default;

void Imports::expandThen(const QList<QUrl>& urls, bool (*isWanted)(QStringView), Expanded then)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_expansions.add([this, urls, isWanted, then = std::move(then)](std::stop_token stop) {
        return expandTask(urls, isWanted, then, stop);
    });
}

async::Task<> Imports::expandTask(QList<QUrl> urls, bool (*isWanted)(QStringView), Expanded then, std::stop_token stop)
{
    auto job = [urls, isWanted](std::stop_token jobStop) { return AudioFileList::expand(urls, isWanted, jobStop); };
    const AudioFileList::Expansion expansion =
        co_await m_dependencies.executor.run(async::Priority::UserInitiated, stop, std::move(job));
    if (!expansion.strayTemporaries.isEmpty())
        m_dependencies.strayTemporaries.add(expansion.strayTemporaries);
    then(expansion);
}

void Imports::importURLs(const QList<QUrl>& urls, Completion completion)
{
    expandThen(urls, AudioFileList::isPlayable,
               [this, completion = std::move(completion)](const AudioFileList::Expansion& expansion) {
                   enqueuePlaylistImport(expansion, completion);
               });
}

void Imports::enqueuePlaylistImport(const AudioFileList::Expansion& expansion, Completion completion)
{
    m_libraryImports.append([this, expansion, completion = std::move(completion)](std::stop_token stop) {
        return completePlaylistImport(expansion, completion, stop);
    });
}

async::Task<> Imports::completePlaylistImport(AudioFileList::Expansion expansion, Completion completion,
                                              std::stop_token stop)
{
    forgetScrollPositionIfEmpty();
    Workspace& workspace = m_dependencies.workspace;
    const ImportPlan::Split split = ImportPlan::split(workspace.tracks(), expansion.files);
    QList<TrackID> ids;
    for (const int row : split.knownRows)
        ids.append(workspace.tracks().at(row).id());
    if (!ids.isEmpty()) {
        workspace.setTracks(ImportPlan::withMembership(workspace.tracks(), split.knownRows, {.playlist = true}));
        m_dependencies.tempo.detectBPM(QSet<TrackID>(ids.cbegin(), ids.cend()));
    }
    const ImportPlan::Membership joining{.playlist = true};
    const Appended appended = co_await appendInSlices(Destination::Library, split.freshURLs, joining, stop);
    ids.append(appended.ids);
    m_dependencies.tempo.detectBPM(appended.found);
    if (!appended.added.isEmpty())
        m_dependencies.waveforms.preloadWaveforms(appended.addedURLs);
    announceAdded(QStringLiteral("Добавлено в плейлист: %d"), appended.added.size(), expansion.leftOut(),
                  StatusIcon::Playlist);
    if (completion)
        completion({ids, expansion.leftOut()});
}

void Imports::forgetScrollPositionIfEmpty()
{
    const TrackList& tracks = m_dependencies.workspace.tracks();
    if (std::ranges::any_of(tracks, [](const Track& track) { return track.isInPlaylist(); }))
        return;
    m_dependencies.preferences.playlistScrollOffset.remove();
    m_dependencies.preferences.playlistScrollAnchorTrackID.remove();
}

/// Between slices rows may come to the list from elsewhere, out of the history or from another section: then each
/// location is looked for again, so that no file gets two rows.
async::Task<Imports::Appended> Imports::appendInSlices(Destination destination, QList<QUrl> urls,
                                                       ImportPlan::Membership membership, std::stop_token stop)
{
    Workspace& workspace = m_dependencies.workspace;
    quint64 known = workspace.listRevision();
    Appended result;
    QList<Track> added;
    for (qsizetype first = 0; first < urls.size(); first += kSlice) {
        ImportPlan::Split split{{}, urls.mid(first, kSlice)};
        if (workspace.listRevision() != known)
            split = ImportPlan::split(workspace.list(destination), split.freshURLs);
        for (const int row : std::as_const(split.knownRows)) {
            const TrackID& id = workspace.list(destination).at(row).id();
            result.ids.append(id);
            result.found.insert(id);
        }
        const QList<Track> slice = ImportPlan::freshTracks(split.freshURLs, membership);
        workspace.setList(destination,
                          ImportPlan::withMembership(workspace.list(destination), split.knownRows, membership) + slice);
        known = workspace.listRevision();
        added.append(slice);
        result.addedURLs.append(split.freshURLs);
        for (const Track& track : slice) {
            result.ids.append(track.id());
            result.added.insert(track.id());
        }
        if (first + kSlice < urls.size())
            co_await m_dependencies.clock.sleep(async::seconds(kSlicePause), stop);
    }
    m_dependencies.loads.schedule(asTheyAre(workspace.list(destination), added), destination);
    co_return result;
}

void Imports::announceAdded(const QString& message, qsizetype added, AudioFileList::LeftOut leftOut, StatusIcon icon)
{
    if (leftOut.notTaken == 0 && leftOut.strayTemporaries == 0) {
        if (added > 0)
            m_dependencies.status.showCounted(message, {added}, icon, Tone::Success);
        return;
    }
    QStringList parts;
    if (added > 0)
        parts.append(VelmoraLocalization::format(message, {added}));
    if (leftOut.notTaken > 0)
        parts.append(VelmoraLocalization::format(QStringLiteral("Не удалось взять: %d"), {leftOut.notTaken}));
    if (leftOut.strayTemporaries > 0)
        parts.append(VelmoraLocalization::format(QStringLiteral("Найдены незавершённые временные файлы: %d"),
                                                 {leftOut.strayTemporaries}));
    m_dependencies.status.showText(parts.join(QStringLiteral(" · ")), StatusIcon::Warning, Tone::Warning);
}

void Imports::importForFavorites(const QList<QUrl>& urls)
{
    importURLs(urls, [this](const Outcome& outcome) {
        const QSet<TrackID> ids(outcome.ids.cbegin(), outcome.ids.cend());
        const int joined = m_dependencies.favorites.addToFavorites(ids);
        announceAdded(QStringLiteral("Добавлено в избранное: %d"), joined, outcome.leftOut, StatusIcon::FavoriteAdded);
    });
}

void Imports::importForCovers(const QList<QUrl>& urls, Completion completion)
{
    expandThen(urls, AudioFileList::isPlayable,
               [this, completion = std::move(completion)](const AudioFileList::Expansion& expansion) {
                   m_libraryImports.append([this, expansion, completion](std::stop_token stop) {
                       return completeCoverImport(expansion, completion, stop);
                   });
               });
}

async::Task<> Imports::completeCoverImport(AudioFileList::Expansion expansion, Completion completion,
                                           std::stop_token stop)
{
    Workspace& workspace = m_dependencies.workspace;
    const ImportPlan::Split split = ImportPlan::split(workspace.tracks(), expansion.files);
    QList<TrackID> ids;
    qsizetype joined = 0;
    for (const int row : split.knownRows) {
        ids.append(workspace.tracks().at(row).id());
        joined += workspace.tracks().at(row).isInCoverWorkspace() ? 0 : 1;
    }
    if (!ids.isEmpty())
        workspace.setTracks(ImportPlan::withMembership(workspace.tracks(), split.knownRows, {.covers = true}));
    const ImportPlan::Membership joining{.covers = true};
    const Appended appended = co_await appendInSlices(Destination::Library, split.freshURLs, joining, stop);
    ids.append(appended.ids);
    joined += appended.added.size();
    announceAdded(QStringLiteral("Добавлено в обложки: %d"), joined, expansion.leftOut(), StatusIcon::Covers);
    if (completion)
        completion({ids, expansion.leftOut()});
}

void Imports::importForAnalysis(const QList<QUrl>& urls)
{
    static const SectionImport kAnalysis{Destination::Analysis, QStringLiteral("Добавлено в анализ: %d"),
                                         StatusIcon::Tempo, true};
    expandThen(urls, AudioFileList::isPlayable, [this](const AudioFileList::Expansion& expansion) {
        m_sectionImports.append(
            [this, expansion](std::stop_token stop) { return completeSectionImport(&kAnalysis, expansion, stop); });
    });
}

void Imports::importForMusicalKeyAnalysis(const QList<QUrl>& urls)
{
    static const SectionImport kMusicalKey{Destination::MusicalKey, QStringLiteral("Добавлено в тональность: %d"),
                                           StatusIcon::Key, false};
    expandThen(urls, AudioFileList::isPlayable, [this](const AudioFileList::Expansion& expansion) {
        m_sectionImports.append(
            [this, expansion](std::stop_token stop) { return completeSectionImport(&kMusicalKey, expansion, stop); });
    });
}

void Imports::importDuplicateSearchURLs(const QList<QUrl>& urls)
{
    VELMORA_ASSERT_MAIN_THREAD();
    static const SectionImport kDuplicates{Destination::Duplicates, QString(), StatusIcon::Info, false};
    QList<QUrl> roots = m_dependencies.workspace.duplicateSearchRoots();
    for (const QUrl& url : urls) {
        const QUrl root = FileURL::standardized(url);
        if (!roots.contains(root))
            roots.append(root);
    }
    m_dependencies.workspace.setDuplicateSearchRoots(std::move(roots));
    expandThen(urls, AudioFileList::isPlayable, [this](const AudioFileList::Expansion& expansion) {
        m_sectionImports.append(
            [this, expansion](std::stop_token stop) { return completeSectionImport(&kDuplicates, expansion, stop); });
    });
}

async::Task<> Imports::completeSectionImport(const SectionImport* section, AudioFileList::Expansion expansion,
                                             std::stop_token stop)
{
    const ImportPlan::Split split =
        ImportPlan::split(m_dependencies.workspace.list(section->destination), expansion.files);
    const Appended appended = co_await appendInSlices(section->destination, split.freshURLs, {}, stop);
    if (section->wantsQuality && !appended.added.isEmpty())
        emit qualityWanted(appended.added);
    announceAdded(section->message, section->message.isEmpty() ? 0 : appended.added.size(), expansion.leftOut(),
                  section->icon);
}

void Imports::importForConversion(const QList<QUrl>& urls)
{
    expandThen(urls, AudioFileList::isConvertible, [this](const AudioFileList::Expansion& expansion) {
        m_dependencies.sending.appendToConversion(expansion.files);
        announceAdded(QString(), 0, expansion.leftOut(), StatusIcon::Info);
    });
}

void Imports::scheduleMetadataLoads(const QList<Track>& tracks, Destination destination)
{
    m_dependencies.loads.schedule(tracks, destination);
}

void Imports::scheduleDeferredMetadataFlush()
{
    m_dependencies.loads.scheduleDeferredFlush();
}

int Imports::metadataLoadOperationCount() const
{
    return m_dependencies.loads.operationCount();
}

bool Imports::isApplyingMetadataBatch() const
{
    return m_dependencies.loads.isApplyingBatch();
}
