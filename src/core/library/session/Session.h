#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/TaskSlot.h"
#include "core/library/session/Checkpoints.h"
#include "core/library/session/WorkspaceLoad.h"

#include <QObject>

#include <functional>

class Keys;
class MetadataLoads;
class Order;
class Playback;
class Preferences;
class Removal;
class Selection;
class StatusLine;
class Tempo;
class SessionStorageError;
class Waveforms;
class Workspace;
class WorkspaceSessionStorage;

/// What of the workspace outlives the program: saves it after changes, brings it back at the start, and offers its
/// checkpoints. Without a storage nothing is saved or restored. Thread: main.
class Session : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        Selection& selection;
        Order& order;
        Tempo& tempo;
        StatusLine& status;
        Preferences& preferences;
        MetadataLoads& loads;
        Keys& keys;
        async::Clock& clock;
        async::Executor& executor;
        WorkspaceSessionStorage* storage; ///< may be null; outlives the executor's jobs
        Playback& playback;
        Waveforms& waveforms;
        Removal& removal;
    };
    using Checkpoint = Checkpoints::Checkpoint;

    explicit Session(Dependencies dependencies);
    ~Session() override;

    /// Brings the last session back: reads it in the background, then puts it in place. No save happens until then.
    /// Rows that are there by then stay, and what the file holds becomes a checkpoint.
    void restore();
    /// Saves once nothing has changed for 0.35 s. Not during a restore, nor while read tags are put in.
    void scheduleWorkspaceSave();
    /// Starts a save in the background at once; a running one is overtaken. One that fails is tried again after a while
    /// and with the next change; when it fails again the status line says so until one succeeds.
    void saveWorkspaceSessionNow();
    /// Saves before it returns; not during a restore. A failure is not told: the old file stands.
    void saveWorkspaceSessionSynchronouslyForTermination();

    /// The record of the present state; also remembers the selection of the section shown.
    SessionRecord makeWorkspaceSession();
    /// Puts a loaded session in place, unless the user was faster.
    void applyWorkspaceSession(std::optional<WorkspaceLoad::Result> result);

    /// Files that the last start did not find; 0 once the user looked at the checkpoints.
    int leftOutCount() const { return m_leftOut; }
    /// Hands over the checkpoints that can be read, newest first; a later call replaces an earlier one, which is not
    /// answered then. Ends the offer of leftOutCount().
    void listCheckpoints(std::function<void(const QList<Checkpoint>&)> listed);
    /// Lets the next start begin with a checkpoint; the session that it replaces becomes a checkpoint then. Says so in
    /// the status line, or that the copy cannot be read.
    void restoreFromCheckpoint(const QUrl& url);

Q_SIGNALS:
    /// leftOutCount() differs.
    void leftOutChanged();

private:
    void watchWorkspace();
    bool isWorkspaceUntouched() const;
    void putListsInPlace(WorkspaceLoad::Result& result);
    void putSelectionInPlace(const WorkspaceLoad::Result& result);
    void startLoads(const WorkspaceLoad::Result& result);
    void announceLeftOut(int files);
    async::Task<> restoreTask(std::stop_token stop);
    async::Task<> preloadInSlices(QList<QUrl> urls, std::stop_token stop);
    async::Task<> saveLater(std::stop_token stop);
    async::Task<> writeTask(SessionRecord record, qint64 revision, std::stop_token stop);
    void saved(const std::optional<SessionStorageError>& failure);
    async::Task<> retryLater(std::stop_token stop);

    Dependencies m_dependencies;
    qint64 m_saveRevision = 0;
    int m_failedSaves = 0; ///< since the last one that succeeded
    int m_leftOut = 0;
    async::TaskSlot m_restoreTask;
    async::TaskSlot m_waveformTask;
    async::TaskSlot m_saveTask; ///< waits for quiet
    async::TaskSlot m_writeTask;
    async::TaskSlot m_retryTask;
    Checkpoints m_checkpoints;
};
