#pragma once

#include "async/Executor.h"
#include "async/TaskSlot.h"

#include <QDateTime>
#include <QList>
#include <QUrl>

#include <functional>

class StatusLine;
class WorkspaceSessionStorage;

/// The copies of earlier sessions: lists them, and lets the next start begin with one. Thread: main.
class Checkpoints {
public:
    struct Dependencies {
        StatusLine& status;
        async::Executor& executor;
        WorkspaceSessionStorage* storage; ///< may be null: there are no copies; outlives the executor's jobs
    };
    /// A copy, as it is offered.
    struct Checkpoint {
        QUrl url;
        QDateTime date;
        qint64 tracks = 0;
        qint64 favorites = 0;
    };

    explicit Checkpoints(const Dependencies& dependencies);
    ~Checkpoints();

    /// Hands over those that can be read, newest first; a later call replaces an earlier one.
    void list(std::function<void(const QList<Checkpoint>&)> listed);
    /// Lets the next start begin with this one. Says so in the status line, or that it cannot be read.
    void open(const QUrl& url);

private:
    async::Task<> listTask(std::function<void(const QList<Checkpoint>&)> listed, std::stop_token stop);
    async::Task<> openTask(QString path, std::stop_token stop);

    Dependencies m_dependencies;
    async::TaskSlot m_listTask;
    async::TaskSlot m_openTask;
};
