#pragma once

#include "async/Executor.h"
#include "async/TaskSlot.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <functional>

class StatusLine;

/// Files that interrupted writes left behind, as imports met them. They stay where they are until the user asks for the
/// Trash. Thread: main.
class StrayTemporaries : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        StatusLine& status;
        async::Executor& executor;
        /// Moves one file to the Trash, or throws TrashError; called on worker threads.
        std::function<void(const QUrl& url)> moveToTrash;
    };

    explicit StrayTemporaries(Dependencies dependencies);
    ~StrayTemporaries() override;

    /// Notes files that an import met; those that are known already count once.
    void add(const QList<QUrl>& urls);
    /// What is still to be moved, in the order met.
    const QList<QUrl>& list() const { return m_list; }
    /// Moves all of them to the Trash in the background and says how many went, or the first error. Those that could
    /// not go stay in the list. Does nothing with an empty list or while it is at it.
    void moveToTrash();
    bool isMoving() const { return m_task.isActive(); }

Q_SIGNALS:
    /// The list, or whether it is being moved.
    void changed();

private:
    async::Task<> moveTask(QList<QUrl> urls, std::stop_token stop);

    Dependencies m_dependencies;
    QList<QUrl> m_list;
    async::TaskSlot m_task;
};
