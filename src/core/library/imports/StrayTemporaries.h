#pragma once

#include "core/library/files/FileLine.h"

#include <QList>
#include <QObject>
#include <QUrl>

namespace async {
class Executor;
}
class StatusLine;
class TrashCan;

/// Files that interrupted writes left behind, as imports met them. They stay where they are until the user asks for the
/// Trash. Thread: main.
class StrayTemporaries : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        StatusLine& status;
        async::Executor& executor;
        FileLocks& locks;
        WorkBoard& board;
        TrashCan* trashCan; ///< null where there is none: nothing is moved then
    };

    explicit StrayTemporaries(const Dependencies& dependencies);
    ~StrayTemporaries() override;

    /// Notes files that an import met; those that are known already count once.
    void add(const QList<QUrl>& urls);
    /// What is still to be moved, in the order met.
    const QList<QUrl>& list() const { return m_list; }
    /// Moves all of them to the Trash in the background and says how many went, or the first error. Those that could
    /// not go stay in the list. Does nothing with an empty list or while it is at it.
    void moveToTrash();
    /// Whether moveToTrash() is under way.
    bool isMoving() const { return m_isMoving; }

Q_SIGNALS:
    /// The list, or whether it is being moved.
    void changed();

private:
    class Round;
    struct Moves;

    void finish(const Moves& moves);

    Dependencies m_dependencies;
    QList<QUrl> m_list;
    bool m_isMoving = false;
    FileLine m_line;
};
