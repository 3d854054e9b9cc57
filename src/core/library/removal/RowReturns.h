#pragma once

#include "async/Executor.h"
#include "async/TaskGroup.h"
#include "core/library/removal/RemovedTrack.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <memory>

class Notifications;
class RemovalStep;
class Selection;
class StatusLine;
class Workspace;

/// How removed rows come back into their lists. What was known of a file that others changed since its row left is read
/// again. Thread: main.
class RowReturns : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        Selection& selection;
        StatusLine& status;
        Notifications& notifications;
        async::Executor& executor;
    };
    /// What came back so far.
    struct Restored {
        QSet<QUrl> files;
        QHash<Track::MetadataDestination, QList<TrackID>> ids;
        bool isChanged = false;
        int left = 0; ///< files that a stop left in the Trash
    };

    explicit RowReturns(const Dependencies& dependencies);
    ~RowReturns() override;

    /// Notes, in the background, the state of the files whose rows have just left with this step.
    void noteFiles(const std::shared_ptr<RemovalStep>& step);
    /// \param entries whose files are there.
    void putBack(QList<RemovedTrack> entries, Restored& restored);
    /// Looks, in the background, for files that were changed while their rows were away: these rows are read again.
    void lookForChanges(const QList<RemovedTrack>& entries);
    /// Selects what came back and says how much it is.
    void announce(const Restored& restored);

Q_SIGNALS:
    /// Rows are back in a list. \param ids those that have been read. \param unread those that have to be, again too.
    void rowsCameBack(Track::MetadataDestination list, const QSet<TrackID>& ids, const QList<Track>& unread);

private:
    void putBackInto(Track::MetadataDestination list, const QList<RemovedTrack>& entries, Restored& restored);
    void select(const Restored& restored);
    async::Task<> note(std::weak_ptr<RemovalStep> step, QList<QUrl> urls, std::stop_token stop);
    async::Task<> look(QList<RemovedTrack> entries, std::stop_token stop);
    void readAgain(Track::MetadataDestination list, const QSet<TrackID>& ids);

    Dependencies m_dependencies;
    async::TaskGroup m_tasks{1};
};
