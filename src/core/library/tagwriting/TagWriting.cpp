#include "core/library/tagwriting/TagWriting.h"

#include "async/MainQueue.h"
#include "core/library/quicklists/QuickLists.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/AssignmentWords.h"
#include "core/library/tagwriting/EditAnnouncement.h"
#include "core/library/tagwriting/TagEditPlan.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"

namespace {
constexpr qint64 kBytesPerRow = 2048; // of a step, about: the tags before and after
}

/// One edit as undo and redo see it.
struct TagWriting::UndoStep {
    QString actionName;
    QString fieldName; ///< of the notification
    TagFields fields;
    TagEditPlan::TagValues before = {};
    TagEditPlan::TagValues after = {};
    /// Fields whose value before is a guess until the file is looked at.
    QHash<TrackID, TagFields> unknown = {};
    /// What was edited and not in its file when this was written.
    QHash<TrackID, TagFields> edited = {};
    std::function<void()> undone = {};
    std::function<void()> redone = {};
    std::function<void(const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack)> ended = {};
    bool tellsTempo = true;
    TagSaver::Others others = TagSaver::Others::AsPreferred;
    int turns = 0; ///< how often it was done or taken back: what ends later is of the past
};

TagWriting::TagWriting(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
    connect(&dependencies.saver.rows(), &RowSaver::fileTold, this, &TagWriting::fileTold);
    connect(&dependencies.saver, &TagSaver::failed, this, &TagWriting::reportWriteError);
}

TagWriting::~TagWriting() = default;

void TagWriting::assignGenre(const QString& text, const QSet<TrackID>& ids)
{
    assign(AssignedField::Genre, text, ids);
}

void TagWriting::assignComment(const QString& text, const QSet<TrackID>& ids)
{
    assign(AssignedField::Comment, text, ids);
}

void TagWriting::assignAlbum(const QString& text, const QSet<TrackID>& ids)
{
    assign(AssignedField::Album, text, ids);
}

void TagWriting::clearGenres(const QSet<TrackID>& ids)
{
    clear(AssignedField::Genre, ids);
}

void TagWriting::clearComments(const QSet<TrackID>& ids)
{
    clear(AssignedField::Comment, ids);
}

void TagWriting::reportWriteError(const FileFailure& failure)
{
    if (!failure.isMissing) // the list will show it
        m_dependencies.workspace.setLastError(failure.message);
}

void TagWriting::assign(AssignedField field, const QString& text, const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    AudioTags tags;
    const QString value = tags.*AssignmentPlan::member(field) = text.trimmed();
    const QSet<TrackID> targets = favoriteTargets(ids);
    if (targets.isEmpty())
        return;
    const int count = static_cast<int>(targets.size());
    const AssignmentWords& w = AssignmentWords::of(field);
    if (field == AssignedField::Album && value.isEmpty())
        edit(tags, stepOf(field, w.assignAction), targets, {w.clearing, w.cleared, w.icon, count});
    else
        edit(tags, stepOf(field, w.assignAction), targets, {w.assigning, w.assigned, w.icon, count, value});
    if (field == AssignedField::Genre)
        m_dependencies.quickLists.recordRecentGenre(value);
}

void TagWriting::clear(AssignedField field, const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QSet<TrackID> targets = favoriteTargets(ids);
    if (targets.isEmpty())
        return;
    const AssignmentWords& w = AssignmentWords::of(field);
    if (!edit(AudioTags(), stepOf(field, w.clearAction), targets, {w.clearing, w.cleared, w.icon}))
        m_dependencies.status.showStatus(w.alreadyEmpty, w.icon, WorkspaceStatus::Tone::Warning);
}

/// An album is written alone: all else stays as the file has it.
TagWriting::UndoStep TagWriting::stepOf(AssignedField field, const QString& actionName)
{
    UndoStep step{actionName, AssignmentPlan::fieldName(field), AssignmentPlan::tagField(field)};
    if (field == AssignedField::Album)
        step.others = TagSaver::Others::StayBesideAlbum;
    return step;
}

QSet<TrackID> TagWriting::favoriteTargets(const QSet<TrackID>& ids)
{
    const QSet<TrackID> targets = AssignmentPlan::favorites(m_dependencies.workspace.tracks(), ids);
    if (targets.isEmpty())
        m_dependencies.status.showStatus(QStringLiteral("Выберите трек в «Избранном»"), StatusIcon::Favorite,
                                         WorkspaceStatus::Tone::Warning);
    return targets;
}

/// Gives the fields of \p kind to the rows and their files, as one step of undo. Rows that say so already while their
/// files do not are written too. \return whether there is anything to write.
bool TagWriting::edit(const AudioTags& tags, const UndoStep& kind, const QSet<TrackID>& ids,
                      EditAnnouncement announcement)
{
    const TrackList& tracks = m_dependencies.workspace.tracks();
    const auto step = std::make_shared<UndoStep>(kind);
    step->before = TagEditPlan::valuesBefore(tracks, tags, step->fields, ids);
    for (auto entry = step->before.cbegin(); entry != step->before.cend(); ++entry)
        step->after.insert(entry.key(), TagFieldSet::merged(entry.value(), tags, step->fields));
    QList<Track> again = TagEditPlan::notInFile(tracks, tags, step->fields, ids);
    again.removeIf([&](const Track& track) { return step->before.contains(track.id()); });
    registerStep(step);
    const auto count = static_cast<int>(step->before.size() + again.size());
    if (announcement.rows == 0)
        announcement.rows = count;
    if (count > 0)
        announcement.showWriting(m_dependencies.status);
    else if (announcement.rows > 0)
        announcement.showWritten(m_dependencies.status, 0);
    const auto ended = [this, announcement](const TagSaver::Outcome& outcome) {
        announcement.showWritten(m_dependencies.status, static_cast<int>(outcome.notWritten.size()));
    };
    apply(*step, Direction::Forth, again, ended);
    return count > 0;
}

void TagWriting::registerStep(const std::shared_ptr<UndoStep>& step)
{
    const TrackList& tracks = m_dependencies.workspace.tracks();
    for (const TrackID& id : step->before.keys()) {
        if (const TagFields unknown = TagEditPlan::unknownFields(*tracks.find(id), step->fields))
            step->unknown.insert(id, unknown);
    }
    if (step->before.isEmpty())
        return;
    watchUnknown(step);
    m_dependencies.history.registerUndo(
        step->actionName, {step->before.size() * kBytesPerRow, true}, [this, step] { takeBack(*step); },
        [this, step] { writeAgain(step); }, [step] { return step->before.isEmpty(); });
}

void TagWriting::watchUnknown(const std::shared_ptr<UndoStep>& step)
{
    for (auto entry = step->unknown.cbegin(); entry != step->unknown.cend(); ++entry)
        m_unknown[entry.key()].append(step);
}

/// Before the first write of a file its tags are looked at: what the edit covered there is what undo has to bring back.
void TagWriting::fileTold(const TrackID& id, const AudioTags& values, TagFields known)
{
    for (const std::weak_ptr<UndoStep>& waiting : m_unknown.take(id)) {
        const std::shared_ptr<UndoStep> step = waiting.lock();
        const auto before = step ? step->before.find(id) : TagEditPlan::TagValues::iterator();
        if (step && before != step->before.end()) // else the step gave the row up, whose file it did not write
            *before = TagFieldSet::merged(*before, values, step->unknown.take(id) & known);
    }
}

void TagWriting::takeBack(UndoStep& step)
{
    ++step.turns;
    const StepAnnouncement announcement{step.actionName, Direction::Back};
    announcement.showBegun(m_dependencies.status);
    const auto end = [this, announcement](const TagSaver::Outcome& outcome) {
        announcement.showEnded(m_dependencies.status, 0, outcome.notWritten.size());
    };
    if (!apply(step, Direction::Back, {}, end))
        end({});
    if (step.undone)
        step.undone();
}

void TagWriting::writeAgain(const std::shared_ptr<UndoStep>& step)
{
    const StepAnnouncement announcement{step->actionName, Direction::Forth};
    announcement.showBegun(m_dependencies.status);
    write(step, announcement);
    if (step->redone)
        step->redone();
}

/// \param again what is said of a redo, unless the step has words of its own.
void TagWriting::write(const std::shared_ptr<UndoStep>& step, const std::optional<StepAnnouncement>& again)
{
    const int turn = ++step->turns;
    step->edited = TagEditPlan::editedFields(m_dependencies.workspace.tracks(), step->before);
    const auto end = [this, step, turn, again](const TagSaver::Outcome& outcome) {
        if (again && !step->ended)
            again->showEnded(m_dependencies.status, 0, outcome.notWritten.size());
        if (step->ended && step->turns == turn)
            ended(*step, outcome.notWritten);
    };
    if (!apply(*step, Direction::Forth, {}, end) && again)
        again->showEnded(m_dependencies.status, 0, 0);
}

/// Rows that somebody edited meanwhile keep their new text; it goes with the next save. A former text that was not in
/// the file either still counts as edited.
void TagWriting::ended(UndoStep& step, const QSet<TrackID>& notWritten)
{
    TagEditPlan::TagValues former;
    for (const TrackID& id : notWritten) {
        const AudioTags after = step.after.take(id);
        const AudioTags before = step.before.take(id);
        step.unknown.remove(id);
        const Track* track = m_dependencies.workspace.tracks().find(id);
        if (!track || (TagFieldSet::differing(track->tags(), after) & step.fields))
            continue;
        former.insert(id, before);
    }
    const QSet<TrackID> putBack(former.keyBegin(), former.keyEnd());
    if (!putBack.isEmpty()) {
        QHash<TrackID, TagFields> noEdits;
        for (const TrackID& id : putBack)
            noEdits.insert(id, step.fields & ~step.edited.value(id));
        setFields(former, step.fields, noEdits);
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(step.fieldName, putBack);
    }
    step.ended(notWritten, putBack);
    if (!notWritten.isEmpty())
        emit tookBack();
}

/// \param noEdits fields that are as their files have them, for all that is known: they count as not edited.
QList<Track> TagWriting::setFields(const TagEditPlan::TagValues& values, TagFields fields,
                                   const QHash<TrackID, TagFields>& noEdits)
{
    QList<Track> changed;
    Workspace& workspace = m_dependencies.workspace;
    workspace.setTracks(TagEditPlan::withTags(workspace.tracks(), values, fields, noEdits, changed));
    return changed;
}

/// What has not come to a file yet is no edit any more when it is taken back, and the guess is not written in its
/// place. \param again rows that are written besides. \return whether anything is.
bool TagWriting::apply(const UndoStep& step, Direction direction, const QList<Track>& again, const BatchEnd& batchEnd)
{
    const bool isBack = direction == Direction::Back;
    const QList<Track> changed =
        setFields(isBack ? step.before : step.after, step.fields, isBack ? step.unknown : QHash<TrackID, TagFields>());
    QSet<TrackID> ids;
    QList<TagSaver::Item> items;
    for (const Track& track : changed) {
        ids.insert(track.id());
        items.append({track, step.others});
    }
    for (const Track& track : again)
        items.append({track, step.others});
    if (!ids.isEmpty())
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(step.fieldName, ids);
    if (step.tellsTempo && (step.fields & TagField::Tempo) && !ids.isEmpty())
        emit tempoEdited(ids);
    m_dependencies.saver.writeBatch(items, batchEnd);
    return !items.isEmpty();
}

void TagWriting::save(const AudioTags& tags, TrackID id)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_dependencies.workspace;
    const std::optional<int> place = workspace.tracks().indexOf(id);
    if (!place)
        return;
    QList<Track> rows = workspace.tracks().rows();
    const TagFields edited = TagFieldSet::differing(rows.at(*place).tags(), tags);
    rows[*place].edit(tags, edited);
    workspace.setTracks(std::move(rows));
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), {id});
    if (edited & TagField::Tempo)
        emit tempoEdited({id});
    m_dependencies.saver.write(id);
}

void TagWriting::saveFields(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    edit(TagEditPlan::trimmed(tags), UndoStep{QStringLiteral("Изменить теги"), QString(), fields}, ids,
         {QStringLiteral("Записываем теги: %d"), QStringLiteral("Теги изменены: %d"), StatusIcon::Tag});
}

void TagWriting::saveTexts(const FieldTexts& edit)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const auto step = std::make_shared<UndoStep>(UndoStep{edit.actionName, QString(), edit.field});
    step->undone = edit.undone;
    step->redone = edit.redone;
    step->tellsTempo = false;
    step->ended = edit.ended;
    for (auto entry = edit.texts.cbegin(); entry != edit.texts.cend(); ++entry) {
        const Track* track = m_dependencies.workspace.tracks().find(entry.key());
        if (!track)
            continue;
        AudioTags after = track->tags();
        after.*TagFieldSet::member(edit.field) = *entry;
        step->before.insert(entry.key(), track->tags());
        step->after.insert(entry.key(), after);
    }
    registerStep(step);
    write(step);
}

void TagWriting::synchronizeMusicalKeyTags(const QHash<QString, QString>& keys, QList<Track>& tracks)
{
    if (keys.isEmpty())
        return;
    for (qsizetype row = 0; row < tracks.size(); ++row) {
        const auto key = keys.constFind(FileURL::standardizedPath(std::as_const(tracks)[row].url()));
        if (key == keys.cend())
            continue;
        AudioTags tags = std::as_const(tracks)[row].tags();
        tags.musicalKey = *key;
        tracks[row].replaceTags(tags);
    }
}
