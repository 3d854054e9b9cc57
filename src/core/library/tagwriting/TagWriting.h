#pragma once

#include "core/library/tagwriting/AssignmentPlan.h"
#include "core/model/Track.h"

#include <QSet>
#include <QString>

class Notifications;
class QuickLists;
class StatusLine;
class TagWriter;
class UndoManager;
class Workspace;

/// Values assigned to tags of favourites: genre, comment, album.
class TagWriting {
public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        QuickLists& quickLists;
        TagWriter& writer;
    };

    explicit TagWriting(const Dependencies& dependencies);

    /// Assigns a genre, trimmed, to those of the tracks that are favourites. \param undoManager may be null.
    void assignGenre(const QString& text, const QSet<TrackID>& ids, UndoManager* undoManager);
    void assignComment(const QString& text, const QSet<TrackID>& ids, UndoManager* undoManager);
    /// An empty text clears the album.
    void assignAlbum(const QString& text, const QSet<TrackID>& ids, UndoManager* undoManager);
    void clearGenres(const QSet<TrackID>& ids, UndoManager* undoManager);
    void clearComments(const QSet<TrackID>& ids, UndoManager* undoManager);
    /// Takes a failed write to the user.
    void reportWriteError(const QString& localizedText);

private:
    void assign(AssignedField field, const QString& value, const QSet<TrackID>& ids, UndoManager* undoManager);
    void clear(AssignedField field, const QSet<TrackID>& ids, UndoManager* undoManager);
    QSet<TrackID> favoriteTargets(const QSet<TrackID>& ids);
    void change(AssignedField field, const AssignedValues& old, const AssignedValues& values, const QString& actionName,
                UndoManager* undoManager);
    void applyValues(AssignedField field, const AssignedValues& values);
    void showDone(const QString& key, std::initializer_list<QVariant> arguments, const QString& icon);

    Dependencies m_dependencies;
};
