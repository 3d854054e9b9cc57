#pragma once

#include "async/Executor.h"
#include "async/TaskSlot.h"
#include "core/model/TagInventory.h"
#include "core/model/Track.h"

#include <QCache>
#include <QObject>

#include <functional>
#include <optional>

/// What files hold besides the ten fields, read on a worker for the track that was asked for last. Thread: main.
class InventoryLoads : public QObject {
    Q_OBJECT

public:
    /// Looks through one file; called on worker threads. May be null: then nothing is ever known.
    using Read = std::function<TagInventory(const QUrl& url)>;

    static constexpr int kKept = 64; ///< chosen: going back and forth in a list asks the disk once

    /// \param read called on worker threads; may be null, then nothing is known of any file.
    InventoryLoads(async::Executor& executor, Read read, QObject* parent = nullptr);
    ~InventoryLoads() override;

    /// What is known of the track's file in its present state. Starts a read otherwise, in place of one that runs.
    std::optional<TagInventory> of(const Track& track);
    /// Files were written: everything is read anew when it is asked for.
    void forget();
    /// Gives the read up that is under way: its answer is not wanted any more.
    void cancel();

Q_SIGNALS:
    /// What was asked last is known now.
    void arrived();

private:
    async::Task<> load(QString key, QUrl url, std::stop_token stop);

    async::Executor& m_executor;
    Read m_read;
    QCache<QString, TagInventory> m_known; ///< by path and stamps
    QString m_loading;                     ///< key of the read that runs
    async::TaskSlot m_task;                // last: stops the task before anything else goes
};
