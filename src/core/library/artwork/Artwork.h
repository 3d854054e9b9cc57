#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/TaskGroup.h"
#include "core/model/Track.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QSet>

#include <memory>

class Notifications;
class OriginalTags;
class StatusLine;
class TagSaver;
class Workspace;

/// Pictures assigned to tracks and written into their files. Thread: main.
class Artwork : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        async::Clock& clock;
        async::Executor& executor;
        TagSaver& saver;
        OriginalTags& originals;
    };

    /// \param dependencies all live longer
    explicit Artwork(const Dependencies& dependencies);
    ~Artwork() override;

    /// Writes a picture into the files of these tracks, one after another; the whole request is refused while a picture
    /// is on its way into one of them. \param image the bytes of any picture; what cannot be decoded is told in the
    /// status line. One step of undo, which brings the old pictures back.
    void assignArtwork(const QByteArray& image, const QSet<TrackID>& ids);

Q_SIGNALS:
    /// A request has ended that left out files because of failures.
    void failed();

private:
    struct Run;
    struct Prepared;

    async::Task<> prepareThenWrite(QByteArray image, QSet<TrackID> ids, std::stop_token stop);
    std::shared_ptr<Run> begin(const QSet<TrackID>& ids);
    async::Task<> writeOne(std::shared_ptr<Run> run, Track target, std::stop_token stop);
    async::Task<> attempt(std::shared_ptr<Run> run, TrackID id, std::stop_token stop);
    void takeOver(const Run& run);
    void finish(const Run& run);

    Dependencies m_dependencies;
    async::TaskGroup m_tasks;
};
