#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/Permits.h"
#include "async/TaskGroup.h"
#include "async/TaskSlot.h"
#include "core/library/reading/MetadataBatch.h"
#include "work/WorkBoard.h"

#include <QHash>
#include <QObject>

#include <memory>

class Notifications;
class Scheduler;
class TagReader;
class Workspace;

/// Reads the tags of rows in the background, two files at a time over all loads, and applies them in batches, or
/// holds them back while the playlist scrolls. A file that cannot be read leaves its row as it is. Work in the
/// background learns from here that tags are being read. Owned by the store. Thread: main.
class MetadataLoads : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        Notifications& notifications;
        async::Clock& clock;
        async::Executor& executor;
        Scheduler& scheduler;
        WorkBoard& board;
        TagReader& reader;
    };

    /// Files read and to be read by the loads that are alive.
    struct Progress {
        int done = 0;
        int total = 0;
    };

    explicit MetadataLoads(const Dependencies& dependencies);
    ~MetadataLoads() override;

    /// Begins a load of these rows, in their order, the focused one first. \param destination the list that gets the
    /// results; only those of the main list wait for it to come to rest.
    void schedule(const QList<Track>& tracks, Track::MetadataDestination destination);
    /// Applies what was held back, 250 rows at a time with pauses between, unless the playlist moves again.
    void scheduleDeferredFlush();
    /// Wants no tempo of the rows that wait for the playlist to come to rest.
    void forgetDeferredTempo() { m_deferredTempoIDs.clear(); }
    /// Loads that have not ended.
    int operationCount() const { return m_operationCount; }
    /// Whether library tags are being read, or results wait for the playlist to come to rest.
    bool isBusy() const { return m_operationCount > 0 || !m_deferred.isEmpty(); }
    /// Whether the list is being assigned by a batch at this moment: those who listen can tell it from an edit.
    bool isApplyingBatch() const { return m_isApplying; }
    /// Over all loads under way; 0 of 0 when the last one has ended.
    Progress progress() const { return m_progress; }

Q_SIGNALS:
    /// When a load begins, after each trip of up to 16 files, and when a load ends.
    void progressChanged();
    /// A load ended, or the last held-back result was applied.
    void settled();
    /// The tags of these rows were read: those that tell no tempo may want one.
    void tempoWanted(const QSet<TrackID>& ids);

private:
    struct Operation;
    using OperationPtr = std::shared_ptr<Operation>;

    async::Task<> runLane(OperationPtr operation, std::stop_token stop);
    void collect(const OperationPtr& operation, QList<PendingMetadataResult> results, int filesRead);
    void finish(const OperationPtr& operation);
    void applyBatch(const QList<PendingMetadataResult>& results, Track::MetadataDestination destination);
    void applyNow(const QList<PendingMetadataResult>& results, Track::MetadataDestination destination);
    void applyToRows(const QList<PendingMetadataResult>& results, Track::MetadataDestination destination);
    void requestTempo(const QList<PendingMetadataResult>& results);
    void detectTempo(const QSet<TrackID>& ids);
    void followScrolling();
    void tellBusy();
    void tellProgress();
    async::Task<> flushDeferred(std::stop_token stop);

    Dependencies m_dependencies;
    std::shared_ptr<async::Permits> m_permits;
    int m_operationCount = 0;
    bool m_isApplying = false;
    bool m_isScrolling = false;
    bool m_isSettledWanted = false; ///< results were held back, and their end has not been told
    Progress m_progress;
    WorkEntry m_entry;
    QHash<TrackID, PendingMetadataResult> m_deferred;
    QSet<TrackID> m_deferredTempoIDs;
    async::TaskSlot m_flushTask;
    async::TaskGroup m_lanes;
};
