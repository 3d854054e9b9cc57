#pragma once

#include "core/library/keys/KeyStep.h"

#include <QObject>

class History;
class Notifications;
class StatusLine;
class Workspace;

/// The way of determined keys into files and rows, each time one step of undo. Thread: main.
class KeyWriting : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        TagSaver& saver;
        History& history;
    };

    explicit KeyWriting(const Dependencies& dependencies);

    /// Writes the keys of rows of the key section, where nothing else of the files changes, and puts them into every
    /// row of these files. Rows whose file could not be written have their former key again. The status line tells the
    /// outcome when the last file is done. Undo leaves keys alone that were changed since.
    void write(const QHash<TrackID, MusicalKeyAnalysis>& analyses, const QSet<TrackID>& ids);

Q_SIGNALS:
    /// Keys that could not be written were taken back out of their rows.
    void tookBack();

private:
    friend class KeyStep;
    struct Round;
    using StepPtr = std::shared_ptr<KeyStep>;
    using Direction = KeyStep::Direction;

    KeyStep::Entries entriesOf(const KeyTagPlan::Plan& plan) const;
    std::optional<QString> presentKey(const QUrl& url) const;
    void move(const StepPtr& step, Direction direction);
    std::shared_ptr<Round> put(const KeyTagPlan::Plan& plan);
    void takeBack(const Round& round, const QSet<TrackID>& notWritten);
    void written(const StepPtr& step, const Round& round, const TagSaver::Outcome& outcome);
    void moved(const StepPtr& step, const Round& round, const TagSaver::Outcome& outcome);
    void showWritten(qsizetype written, qsizetype skipped);

    Dependencies m_dependencies;
    QList<StepPtr> m_running; ///< steps whose first write is under way
};
