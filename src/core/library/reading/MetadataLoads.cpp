#include "core/library/reading/MetadataLoads.h"

#include "async/MainQueue.h"
#include "core/library/kinds/WorkKinds.h"
#include "core/library/reading/TagReader.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"
#include "work/Scheduler.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <atomic>
#include <limits>

namespace {

constexpr int kConcurrentReads = 2;                         // a disk is not thrashed and the player keeps running
constexpr int kManyLanes = std::numeric_limits<int>::max(); // the permits bound the reads, not the group
constexpr double kFlushDelay = 0.09;                        // seconds after scrolling stopped
constexpr double kFlushPause = 0.08;                        // seconds between two flushed batches
constexpr int kFlushBatch = 250;
// One trip to a worker reads several files, so that its thread does not wait for the main thread between small ones; a
// slow file ends the trip.
constexpr int kFilesPerTrip = 16;
constexpr std::chrono::milliseconds kTripTime{20};

/// The work of one load, shared by its lanes. Tracks are taken in order through the counter, the focused one first.
struct ReadList {
    QList<Track> tracks;
    qsizetype focused = 0; ///< row that comes first; those before it follow
    std::atomic<qsizetype> next{0};

    const Track& track(qsizetype place) const
    {
        if (place == 0)
            return tracks[focused];
        return tracks[place <= focused ? place - 1 : place];
    }
};

struct Trip {
    QList<PendingMetadataResult> results;
    int filesRead = 0;
};

/// A file whose read throws (a hostile one may ask for all memory) gives no result and stops nothing else.
std::optional<LoadedTrackMetadata> readOne(TagReader& reader, const Track& track)
{
    try {
        return reader.read(track.url(), track.tags());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

Trip readSome(ReadList& list, TagReader& reader, std::stop_token stop)
{
    Trip trip;
    const auto end = std::chrono::steady_clock::now() + kTripTime;
    while (trip.filesRead < kFilesPerTrip && !stop.stop_requested()) {
        const qsizetype index = list.next.fetch_add(1);
        if (index >= list.tracks.size())
            break;
        const Track& track = list.track(index);
        ++trip.filesRead;
        if (std::optional<LoadedTrackMetadata> metadata = readOne(reader, track))
            trip.results.append({track.id(), track.url(), track.metadataVersion(), std::move(*metadata)});
        if (std::chrono::steady_clock::now() >= end)
            break;
    }
    return trip;
}

/// Gives a permit back however the coroutine that holds it ends. Refers to nothing that dies before.
class HeldPermit {
public:
    explicit HeldPermit(std::shared_ptr<async::Permits> permits)
        : m_permits(std::move(permits))
    {
    }
    HeldPermit(const HeldPermit&) = delete;
    HeldPermit& operator=(const HeldPermit&) = delete;
    ~HeldPermit() { m_permits->release(); }

private:
    std::shared_ptr<async::Permits> m_permits;
};

} // namespace

struct MetadataLoads::Operation {
    Track::MetadataDestination destination{};
    std::shared_ptr<ReadList> list = std::make_shared<ReadList>();
    QList<PendingMetadataResult> batch;
    qsizetype batchSize = 0; ///< results that the present batch waits for
    qsizetype furtherBatchSize = 0;
    int lanes = 0; ///< still running
};

MetadataLoads::MetadataLoads(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_permits(std::make_shared<async::Permits>(kConcurrentReads))
    , m_entry(dependencies.board, WorkKinds::ReadingTags, QStringLiteral("Чтение тегов: %d из %d"),
              WorkEntry::Stop::None)
    , m_lanes(kManyLanes)
{
    connect(&m_dependencies.scheduler, &Scheduler::circumstancesChanged, this, &MetadataLoads::followScrolling);
}

MetadataLoads::~MetadataLoads() = default;

void MetadataLoads::schedule(const QList<Track>& tracks, Track::MetadataDestination destination)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (tracks.isEmpty())
        return;
    const auto operation = std::make_shared<Operation>();
    operation->destination = destination;
    operation->list->tracks = tracks;
    if (destination == Track::MetadataDestination::Library && m_dependencies.workspace.selectedID()) {
        const auto focused = std::ranges::find(tracks, *m_dependencies.workspace.selectedID(), &Track::id);
        if (focused != tracks.end())
            operation->list->focused = focused - tracks.begin();
    }
    const MetadataBatch::Sizes sizes = MetadataBatch::sizes(tracks.size());
    operation->batchSize = sizes.first;
    operation->furtherBatchSize = sizes.further;
    operation->lanes = static_cast<int>(std::min<qsizetype>(kConcurrentReads, tracks.size()));
    ++m_operationCount;
    tellBusy();
    m_progress.total += static_cast<int>(tracks.size());
    tellProgress();
    for (int lane = operation->lanes; lane > 0; --lane)
        m_lanes.add([this, operation](std::stop_token stop) { return runLane(operation, stop); });
}

async::Task<> MetadataLoads::runLane(OperationPtr operation, std::stop_token stop)
{
    const std::shared_ptr<ReadList> list = operation->list;
    const std::shared_ptr<async::Permits> permits = m_permits;
    while (list->next.load() < list->tracks.size()) {
        Trip trip;
        {
            co_await permits->acquire(stop);
            const HeldPermit held(permits);
            auto job = [list, &reader = m_dependencies.reader](std::stop_token jobStop) {
                return readSome(*list, reader, jobStop);
            };
            trip = co_await m_dependencies.executor.run(async::Priority::Utility, stop, std::move(job));
        }
        collect(operation, std::move(trip.results), trip.filesRead);
    }
    if (--operation->lanes == 0)
        finish(operation);
}

void MetadataLoads::collect(const OperationPtr& operation, QList<PendingMetadataResult> results, int filesRead)
{
    operation->batch.append(std::move(results));
    while (operation->batch.size() >= operation->batchSize) {
        applyBatch(operation->batch.first(operation->batchSize), operation->destination);
        operation->batch.remove(0, operation->batchSize);
        operation->batchSize = operation->furtherBatchSize;
    }
    m_progress.done += filesRead;
    tellProgress();
}

void MetadataLoads::finish(const OperationPtr& operation)
{
    if (!operation->batch.isEmpty())
        applyBatch(operation->batch, operation->destination);
    if (--m_operationCount == 0)
        m_progress = Progress();
    tellBusy();
    tellProgress();
    emit settled();
}

void MetadataLoads::applyBatch(const QList<PendingMetadataResult>& results, Track::MetadataDestination destination)
{
    if (destination == Track::MetadataDestination::Library && m_isScrolling) {
        for (const PendingMetadataResult& result : results)
            m_deferred.insert(result.id, result);
        m_isSettledWanted = true;
        tellBusy();
        requestTempo(results);
        return;
    }
    applyNow(results, destination);
}

void MetadataLoads::applyNow(const QList<PendingMetadataResult>& results, Track::MetadataDestination destination)
{
    applyToRows(results, destination);
    if (destination == Track::MetadataDestination::Library)
        requestTempo(results);
}

void MetadataLoads::applyToRows(const QList<PendingMetadataResult>& results, Track::MetadataDestination destination)
{
    Workspace& workspace = m_dependencies.workspace;
    MetadataBatch::Applied applied = MetadataBatch::apply(workspace.list(destination), results);
    if (!applied.changedIDs.isEmpty()) {
        const QScopedValueRollback applying(m_isApplying, true);
        workspace.setList(destination, std::move(applied.rows), ListChange::Cause::TagBatch);
    }
    if (destination == Track::MetadataDestination::Library && !applied.changedIDs.isEmpty()) {
        workspace.raisePlaylistAnalysisRevision();
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), applied.changedIDs);
    }
}

/// While the list moves, rows keep their guessed tags: only of files that told no tempo it is certain that they want
/// one.
void MetadataLoads::requestTempo(const QList<PendingMetadataResult>& results)
{
    const QSet<TrackID> ids = MetadataBatch::ids(results);
    if (!m_isScrolling && m_deferred.isEmpty()) {
        detectTempo(ids);
        return;
    }
    m_deferredTempoIDs.unite(ids);
    if (m_isScrolling)
        detectTempo(MetadataBatch::withoutTempo(results));
    else
        scheduleDeferredFlush();
}

void MetadataLoads::detectTempo(const QSet<TrackID>& ids)
{
    if (!ids.isEmpty())
        emit tempoWanted(ids);
}

void MetadataLoads::scheduleDeferredFlush()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_flushTask.isActive() || (m_deferred.isEmpty() && m_deferredTempoIDs.isEmpty() && !m_isSettledWanted))
        return;
    m_flushTask.start([this](std::stop_token stop) { return flushDeferred(stop); });
}

async::Task<> MetadataLoads::flushDeferred(std::stop_token stop)
{
    co_await m_dependencies.clock.sleep(async::seconds(kFlushDelay), stop);
    while (!m_isScrolling && !m_deferred.isEmpty() && !m_isApplying) {
        QList<PendingMetadataResult> batch;
        while (!m_deferred.isEmpty() && batch.size() < kFlushBatch)
            batch.append(m_deferred.take(m_deferred.constBegin().key()));
        applyToRows(batch, Track::MetadataDestination::Library); // their tempo was asked for when they were held back
        tellBusy();
        co_await m_dependencies.clock.sleep(async::seconds(kFlushPause), stop);
    }
    if (!m_deferred.isEmpty() || m_isScrolling)
        co_return;
    tellBusy();
    m_isSettledWanted = false;
    detectTempo(std::exchange(m_deferredTempoIDs, {}));
    emit settled();
}

void MetadataLoads::followScrolling()
{
    const bool isScrolling = m_dependencies.scheduler.circumstances().isScrolling;
    if (std::exchange(m_isScrolling, isScrolling) == isScrolling)
        return;
    if (isScrolling)
        m_flushTask.cancel();
    else
        scheduleDeferredFlush();
}

void MetadataLoads::tellProgress()
{
    m_entry.show({m_progress.done, m_progress.total});
    emit progressChanged();
}

void MetadataLoads::tellBusy()
{
    m_dependencies.scheduler.setReadingTags(isBusy());
}
