#include "core/library/tagwriting/TagWriting.h"

#include "async/MainQueue.h"
#include "core/library/quicklists/QuickLists.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagEditPlan.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"

#include <algorithm>

namespace {

using Tone = WorkspaceStatus::Tone;

constexpr int kAskedFiles = 200; // chosen: a menu opens at once; for more it offers without asking

/// The texts of one field.
struct Words {
    QString assigned; ///< value and count
    QString cleared;  ///< count
    QString alreadyEmpty;
    QString assignAction;
    QString clearAction;
    StatusIcon icon;
};

const Words& words(AssignedField field)
{
    static const Words kGenre{QStringLiteral("Жанр «%@» присвоен: %d"),
                              QStringLiteral("Жанр очищен: %d"),
                              QStringLiteral("У выбранных треков жанр уже пуст"),
                              QStringLiteral("Присвоить жанр"),
                              QStringLiteral("Очистить жанр"),
                              StatusIcon::Genre};
    static const Words kComment{QStringLiteral("Комментарий «%@» присвоен: %d"),
                                QStringLiteral("Комментарий очищен: %d"),
                                QStringLiteral("У выбранных треков комментарий уже пуст"),
                                QStringLiteral("Присвоить комментарий"),
                                QStringLiteral("Очистить комментарий"),
                                StatusIcon::Comment};
    static const Words kAlbum{
        QStringLiteral("Альбом «%@» присвоен: %d"), QStringLiteral("Альбом очищен: %d"), QString(),
        QStringLiteral("Изменить альбом"),          QStringLiteral("Изменить альбом"),   StatusIcon::Album};
    switch (field) {
    case AssignedField::Genre:
        return kGenre;
    case AssignedField::Comment:
        return kComment;
    case AssignedField::Album:
        return kAlbum;
    }
    Q_UNREACHABLE();
}

} // namespace

/// One edit as undo and redo see it.
struct TagWriting::UndoStep {
    QString actionName;
    QString fieldName; ///< of the notification
    TagFields fields;
    TagEditPlan::TagValues before = {};
    TagEditPlan::TagValues after = {};
    /// Fields whose value before is a guess until the file is looked at.
    QHash<TrackID, TagFields> unknown = {};
    std::function<void()> undone = {};
    std::function<void()> redone = {};
    std::function<void(const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack)> ended = {};
    bool tellsTempo = true;
    int turns = 0; ///< how often it was done or taken back: what ends later is of the past
};

TagWriting::TagWriting(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
    connect(&dependencies.saver, &TagSaver::fileTold, this, &TagWriting::fileTold);
    connect(&dependencies.saver, &TagSaver::restored, this, &TagWriting::announceRestored);
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

void TagWriting::reportWriteError(const TagFileError& error)
{
    if (!error.isMissing()) // the list will show it
        m_dependencies.workspace.setLastError(error.message());
}

void TagWriting::assign(AssignedField field, const QString& text, const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    AudioTags tags;
    const QString value = tags.*AssignmentPlan::member(field) = text.trimmed();
    const QSet<TrackID> targets = favoriteTargets(ids);
    if (targets.isEmpty())
        return;
    const UndoStep kind{words(field).assignAction, AssignmentPlan::fieldName(field), AssignmentPlan::tagField(field)};
    edit(tags, kind, targets);
    if (field == AssignedField::Genre)
        m_dependencies.quickLists.recordRecentGenre(value);
    const int count = static_cast<int>(targets.size());
    StatusLine& status = m_dependencies.status;
    if (field == AssignedField::Album && value.isEmpty())
        status.showCounted(words(field).cleared, {count}, words(field).icon, Tone::Success);
    else
        status.showCounted(words(field).assigned, {value, count}, words(field).icon, Tone::Success);
}

void TagWriting::clear(AssignedField field, const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QSet<TrackID> targets = favoriteTargets(ids);
    if (targets.isEmpty())
        return;
    const UndoStep kind{words(field).clearAction, AssignmentPlan::fieldName(field), AssignmentPlan::tagField(field)};
    const int count = edit(AudioTags(), kind, targets);
    StatusLine& status = m_dependencies.status;
    if (count == 0)
        status.showStatus(words(field).alreadyEmpty, words(field).icon, Tone::Warning);
    else
        status.showCounted(words(field).cleared, {count}, words(field).icon, Tone::Success);
}

QSet<TrackID> TagWriting::favoriteTargets(const QSet<TrackID>& ids)
{
    const QSet<TrackID> targets = AssignmentPlan::favorites(m_dependencies.workspace.tracks(), ids);
    if (targets.isEmpty())
        m_dependencies.status.showStatus(QStringLiteral("Выберите трек в «Избранном»"), StatusIcon::Favorite,
                                         Tone::Warning);
    return targets;
}

/// Gives the fields of \p kind to the rows and their files, as one step of undo. \return how many rows changed.
int TagWriting::edit(const AudioTags& tags, const UndoStep& kind, const QSet<TrackID>& ids)
{
    const auto step = std::make_shared<UndoStep>(kind);
    step->before = TagEditPlan::valuesBefore(m_dependencies.workspace.tracks(), tags, step->fields, ids);
    for (auto entry = step->before.cbegin(); entry != step->before.cend(); ++entry)
        step->after.insert(entry.key(), TagFieldSet::merged(entry.value(), tags, step->fields));
    return perform(step);
}

int TagWriting::perform(const std::shared_ptr<UndoStep>& step)
{
    const TrackList& tracks = m_dependencies.workspace.tracks();
    for (const TrackID& id : step->before.keys()) {
        const TagFields unknown =
            TagEditPlan::unknownFields(*tracks.find(id), step->fields, m_dependencies.saver.pendingEdits(id));
        if (unknown)
            step->unknown.insert(id, unknown);
    }
    if (!step->before.isEmpty()) {
        watchUnknown(step);
        m_dependencies.history.registerUndo(
            step->actionName, [this, step] { takeBack(*step); }, [this, step] { writeAgain(step); },
            [step] { return step->before.isEmpty(); });
    }
    write(step);
    return static_cast<int>(step->before.size());
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
        if (!step)
            continue;
        AudioTags& before = step->before[id];
        before = TagFieldSet::merged(before, values, step->unknown.take(id) & known);
    }
}

/// What has not come to the file yet is no edit any more, and the guess is not written in its place.
void TagWriting::takeBack(UndoStep& step)
{
    ++step.turns;
    apply(step.before, step);
    for (auto entry = step.unknown.cbegin(); entry != step.unknown.cend(); ++entry)
        m_dependencies.saver.forgetEdits(entry.key(), entry.value());
    if (step.undone)
        step.undone();
}

void TagWriting::writeAgain(const std::shared_ptr<UndoStep>& step)
{
    write(step);
    if (step->redone)
        step->redone();
}

void TagWriting::write(const std::shared_ptr<UndoStep>& step)
{
    BatchEnd batchEnd;
    if (step->ended)
        batchEnd = [this, step, turn = ++step->turns](const QSet<TrackID>& notWritten) {
            if (step->turns == turn)
                ended(*step, notWritten);
        };
    apply(step->after, *step, batchEnd);
}

/// Rows that somebody edited meanwhile keep their new text; it goes with the next save.
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
        m_dependencies.saver.forgetEdits(id, step.fields);
    }
    const QSet<TrackID> putBack(former.keyBegin(), former.keyEnd());
    if (!putBack.isEmpty()) {
        setFields(former, step.fields);
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(step.fieldName, putBack);
    }
    step.ended(notWritten, putBack);
}

QList<Track> TagWriting::setFields(const TagEditPlan::TagValues& values, TagFields fields)
{
    QList<Track> changed;
    Workspace& workspace = m_dependencies.workspace;
    workspace.setTracks(TagEditPlan::withTags(workspace.tracks(), values, fields, changed));
    return changed;
}

void TagWriting::apply(const TagEditPlan::TagValues& values, const UndoStep& step, const BatchEnd& batchEnd)
{
    const QList<Track> changed = setFields(values, step.fields);
    if (changed.isEmpty())
        return;
    QSet<TrackID> ids;
    QList<TagSaver::Item> items;
    for (const Track& track : changed) {
        ids.insert(track.id());
        items.append({track, step.fields});
    }
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(step.fieldName, ids);
    if (step.tellsTempo && (step.fields & TagField::Tempo))
        emit tempoEdited(ids);
    m_dependencies.saver.writeBatchNaming(items, batchEnd);
}

void TagWriting::save(const AudioTags& tags, const TrackID& id)
{
    VELMORA_ASSERT_MAIN_THREAD();
    Workspace& workspace = m_dependencies.workspace;
    const std::optional<int> place = workspace.tracks().indexOf(id);
    if (!place)
        return;
    QList<Track> rows = workspace.tracks().rows();
    const TagFields edited = TagFieldSet::differing(rows.at(*place).tags(), tags);
    rows[*place].replaceTags(tags);
    workspace.setTracks(std::move(rows));
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), {id});
    if (edited & TagField::Tempo)
        emit tempoEdited({id});
    m_dependencies.saver.write(id, edited);
}

void TagWriting::saveFields(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const UndoStep kind{QStringLiteral("Изменить теги"), QString(), fields};
    const int count = edit(TagEditPlan::trimmed(tags), kind, ids);
    if (count > 0)
        m_dependencies.status.showCounted(QStringLiteral("Теги изменены: %d"), {count}, StatusIcon::Tag, Tone::Success);
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
    perform(step);
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

bool TagWriting::canRestoreOriginalTags(const QSet<TrackID>& ids) const
{
    if (ids.size() > kAskedFiles)
        return true;
    return std::ranges::any_of(ids, [this](const TrackID& id) {
        const Track* track = m_dependencies.workspace.tracks().find(id);
        return track && m_dependencies.saver.holdsOriginal(track->url());
    });
}

void TagWriting::restoreOriginalTags(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QList<Track> tracks;
    for (const Track& track : m_dependencies.workspace.tracks()) {
        if (ids.contains(track.id()))
            tracks.append(track);
    }
    m_dependencies.saver.restoreBatch(tracks);
}

void TagWriting::announceRestored(const QSet<TrackID>& ids)
{
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), ids);
    emit tempoEdited(ids);
    m_dependencies.status.showCounted(QStringLiteral("Исходные теги возвращены: %d"), {static_cast<int>(ids.size())},
                                      StatusIcon::Undo, Tone::Success);
}
