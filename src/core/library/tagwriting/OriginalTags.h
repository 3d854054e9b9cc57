#pragma once

#include "core/model/Track.h"

#include <QHash>
#include <QSet>

#include <memory>

class History;
class Notifications;
class StatusLine;
class TagSaver;
class TagWriting;
class Workspace;

/// Tags put back byte for byte: as they were before the program first changed a file, and by undo. Thread: main.
class OriginalTags {
public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        TagSaver& saver;
        TagWriting& writing;
        History& history;
    };

    explicit OriginalTags(const Dependencies& dependencies);

    /// Puts the original tags back where they are kept, as one step of undo: it brings back what stood before, byte for
    /// byte where that could be kept, else the ten fields. \param ids rows of any list.
    void restore(const QSet<TrackID>& ids);
    /// Makes pictures that were written already one step of undo, which brings the former pictures back and leaves all
    /// fields as the rows have them by then. \param former the tags that stood in the files before, by row, as
    /// TagFiles::present() gave them.
    void registerPictures(const QString& actionName, const QHash<TrackID, QByteArray>& former);
    /// Whether the original tags of one of the files are kept; true without asking for a large number of files.
    bool canRestore(const QSet<TrackID>& ids) const;

private:
    struct Step;

    void registerStep(const QString& actionName, const std::shared_ptr<Step>& step);
    QList<Track> rowsOf(const QSet<TrackID>& ids) const;
    void takeBack(const std::shared_ptr<Step>& step);
    void doAgain(const std::shared_ptr<Step>& step);
    void putBack(const std::shared_ptr<Step>& step, const QList<Track>& rows);
    void writeFieldsAgain(const QSet<TrackID>& ids);
    void tell(const QSet<TrackID>& ids);

    Dependencies m_dependencies;
};
