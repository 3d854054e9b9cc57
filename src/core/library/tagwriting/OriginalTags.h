#pragma once

#include "core/library/tagwriting/PutBackStep.h"

#include <QList>
#include <QObject>
#include <QSet>

#include <memory>

class FileEvents;
class Notifications;
class StatusLine;
class TagWriting;
class Workspace;

/// Tags put back byte for byte: as they were before the program first changed a file, and by undo. Undo leaves files
/// alone that others changed since, and says how many. Thread: main.
class OriginalTags : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        TagSaver& saver;
        TagWriting& writing;
        History& history;
        FileEvents& events;
    };

    explicit OriginalTags(const Dependencies& dependencies);

    /// Puts the original tags back where they are kept, as one step of undo: it brings back what stood before, byte for
    /// byte where that could be kept, else the ten fields. \param ids rows of any list.
    void restore(const QSet<TrackID>& ids);
    /// Makes pictures that are about to be written one step of undo, which brings the former pictures back and leaves
    /// all fields as the rows have them by then. The caller writes them, adds the rows, ends early where the undo is
    /// wanted by then, and calls picturesWritten().
    std::shared_ptr<PutBackStep> beginPictures(const QString& actionName);
    /// The last of these pictures is written, or the rest is left out. \param step as beginPictures() gave it.
    void picturesWritten(const std::shared_ptr<PutBackStep>& step);
    /// Whether the original tags of one of the files are kept; true without asking for a large number of files.
    bool canRestore(const QSet<TrackID>& ids) const;

private:
    friend class PutBackStep;
    using StepPtr = std::shared_ptr<PutBackStep>;
    using Direction = PutBackStep::Direction;

    StepPtr begin(const QString& actionName, TagSaver::Wanted wanted);
    void end(const StepPtr& step);
    QList<Track> rowsOf(const QSet<TrackID>& ids) const;
    void restored(const StepPtr& step, const QList<Track>& rows, const TagSaver::Outcome& outcome);
    void move(const StepPtr& step, Direction direction);
    void moved(const StepPtr& step, Direction direction, const TagSaver::Outcome& outcome);
    void tell(const QSet<TrackID>& ids);
    void follow(const FileChange& change);

    Dependencies m_dependencies;
    QList<std::weak_ptr<PutBackStep>> m_steps;
};
