#pragma once

#include "core/library/tagwriting/AssignmentPlan.h"
#include "core/library/tagwriting/StepAnnouncement.h"
#include "core/library/tagwriting/TagEditPlan.h"
#include "core/library/tagwriting/TagSaver.h"
#include "core/model/TagField.h"
#include "core/model/Track.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

struct EditAnnouncement;
class History;
class Notifications;
class QuickLists;
class StatusLine;
class Workspace;

/// Edits of tags: values assigned to favourites, fields typed by the user, tags put back. Thread: main.
class TagWriting : public QObject {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        QuickLists& quickLists;
        TagSaver& saver;
        History& history;
    };

    explicit TagWriting(const Dependencies& dependencies);
    ~TagWriting() override;

    /// Assigns a genre, trimmed, to those of the tracks that are favourites.
    void assignGenre(const QString& text, const QSet<TrackID>& ids);
    /// Assigns a comment, trimmed, to favourites in the same way: one step of undo, told in the status line, which
    /// also says where none of the tracks is a favourite.
    void assignComment(const QString& text, const QSet<TrackID>& ids);
    /// Assigns an album, trimmed, to favourites; an empty text clears it. Nothing else is written into the files.
    void assignAlbum(const QString& text, const QSet<TrackID>& ids);
    /// Takes the genre out of favourites; says so where none of them has one.
    void clearGenres(const QSet<TrackID>& ids);
    /// Takes the comment out of favourites; says so where none of them has one.
    void clearComments(const QSet<TrackID>& ids);

    /// Stores a row's tags and writes them into its file, without a step of undo. Nothing happens for a row that is
    /// gone.
    void save(const AudioTags& tags, TrackID id);
    /// Writes the chosen fields into rows and files, as one step of undo.
    void saveFields(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids);
    /// A text per row for one field, and what goes with it.
    struct FieldTexts {
        TagField field;
        QString actionName; ///< localisation key
        QHash<TrackID, QString> texts;
        std::function<void()> undone; ///< called after the texts were taken back; may be empty
        std::function<void()> redone; ///< called after they were written again; may be empty
        /// Called when the last file is done, unless the texts were taken back before. The step leaves rows out whose
        /// files were not written; \p putBack are those of them that have their former text again, that is all that
        /// were not edited meanwhile. May be empty.
        std::function<void(const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack)> ended;
    };
    /// Writes each row's own text into rows and files, as one step of undo. What goes with the field is the caller's
    /// to do: tempoEdited() is not told.
    void saveTexts(const FieldTexts& edit);
    /// Sets the key of all rows of these files, in the list that is handed in. \param keys by standardized path.
    static void synchronizeMusicalKeyTags(const QHash<QString, QString>& keys, QList<Track>& tracks);

    /// Takes a failed write to the user; a file that has gone is no news.
    void reportWriteError(const FileFailure& failure);
    /// What writes; for its progress and its stop.
    TagSaver& saver() { return m_dependencies.saver; }

Q_SIGNALS:
    /// The tempo of these rows was edited, or put back as their files had it at first.
    void tempoEdited(const QSet<TrackID>& ids);
    /// Texts that could not be written, and that no edit of a row remembers, were taken back.
    void tookBack();

private:
    struct UndoStep;
    using Direction = StepAnnouncement::Direction;
    using BatchEnd = std::function<void(const TagSaver::Outcome&)>;

    void assign(AssignedField field, const QString& value, const QSet<TrackID>& ids);
    void clear(AssignedField field, const QSet<TrackID>& ids);
    QSet<TrackID> favoriteTargets(const QSet<TrackID>& ids);
    static UndoStep stepOf(AssignedField field, const QString& actionName);
    bool edit(const AudioTags& tags, const UndoStep& kind, const QSet<TrackID>& ids, EditAnnouncement announcement);
    void registerStep(const std::shared_ptr<UndoStep>& step);
    void watchUnknown(const std::shared_ptr<UndoStep>& step);
    void takeBack(UndoStep& step);
    void writeAgain(const std::shared_ptr<UndoStep>& step);
    void write(const std::shared_ptr<UndoStep>& step, const std::optional<StepAnnouncement>& again = {});
    void ended(UndoStep& step, const QSet<TrackID>& notWritten);
    bool apply(const UndoStep& step, Direction direction, const QList<Track>& again = {},
               const BatchEnd& batchEnd = {});
    QList<Track> setFields(const TagEditPlan::TagValues& values, TagFields fields,
                           const QHash<TrackID, TagFields>& noEdits);
    void fileTold(const TrackID& id, const AudioTags& values, TagFields known);

    Dependencies m_dependencies;
    /// Steps of undo that wait to learn what their edit covered in the file.
    QHash<TrackID, QList<std::weak_ptr<UndoStep>>> m_unknown;
};
