#include "core/library/tagwriting/TagWriting.h"

#include "async/MainQueue.h"
#include "core/library/quicklists/QuickLists.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagWriter.h"
#include "core/library/undo/UndoManager.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"

namespace {

using Tone = WorkspaceStatus::Tone;

/// The texts of one field.
struct Words {
    QString assigned; ///< value and count
    QString cleared;  ///< count
    QString alreadyEmpty;
    QString assignAction;
    QString clearAction;
    QString icon;
};

const Words& words(AssignedField field)
{
    static const Words kGenre{QStringLiteral("Жанр «%@» присвоен: %d"),
                              QStringLiteral("Жанр очищен: %d"),
                              QStringLiteral("У выбранных треков жанр уже пуст"),
                              QStringLiteral("Присвоить жанр"),
                              QStringLiteral("Очистить жанр"),
                              QStringLiteral("guitars.fill")};
    static const Words kComment{QStringLiteral("Комментарий «%@» присвоен: %d"),
                                QStringLiteral("Комментарий очищен: %d"),
                                QStringLiteral("У выбранных треков комментарий уже пуст"),
                                QStringLiteral("Присвоить комментарий"),
                                QStringLiteral("Очистить комментарий"),
                                QStringLiteral("text.bubble.fill")};
    static const Words kAlbum{QStringLiteral("Альбом «%@» присвоен: %d"),
                              QStringLiteral("Альбом очищен: %d"),
                              QString(),
                              QStringLiteral("Изменить альбом"),
                              QStringLiteral("Изменить альбом"),
                              QStringLiteral("square.stack.fill")};
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

TagWriting::TagWriting(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

void TagWriting::assignGenre(const QString& text, const QSet<TrackID>& ids, UndoManager* undoManager)
{
    assign(AssignedField::Genre, text, ids, undoManager);
}

void TagWriting::assignComment(const QString& text, const QSet<TrackID>& ids, UndoManager* undoManager)
{
    assign(AssignedField::Comment, text, ids, undoManager);
}

void TagWriting::assignAlbum(const QString& text, const QSet<TrackID>& ids, UndoManager* undoManager)
{
    assign(AssignedField::Album, text, ids, undoManager);
}

void TagWriting::clearGenres(const QSet<TrackID>& ids, UndoManager* undoManager)
{
    clear(AssignedField::Genre, ids, undoManager);
}

void TagWriting::clearComments(const QSet<TrackID>& ids, UndoManager* undoManager)
{
    clear(AssignedField::Comment, ids, undoManager);
}

void TagWriting::reportWriteError(const QString& localizedText)
{
    m_dependencies.workspace.setLastError(localizedText);
}

void TagWriting::assign(AssignedField field, const QString& text, const QSet<TrackID>& ids, UndoManager* undoManager)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QString value = text.trimmed();
    const QSet<TrackID> targets = favoriteTargets(ids);
    if (targets.isEmpty())
        return;
    const AssignedValues old = AssignmentPlan::presentValues(m_dependencies.workspace.tracks(), targets, field);
    change(field, old, AssignmentPlan::differing(old, value), words(field).assignAction, undoManager);
    if (field == AssignedField::Genre)
        m_dependencies.quickLists.recordRecentGenre(value);
    const int count = static_cast<int>(targets.size());
    if (field == AssignedField::Album && value.isEmpty())
        showDone(words(field).cleared, {count}, words(field).icon);
    else
        showDone(words(field).assigned, {value, count}, words(field).icon);
}

void TagWriting::clear(AssignedField field, const QSet<TrackID>& ids, UndoManager* undoManager)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QSet<TrackID> targets = favoriteTargets(ids);
    if (targets.isEmpty())
        return;
    const AssignedValues old = AssignmentPlan::presentValues(m_dependencies.workspace.tracks(), targets, field);
    const AssignedValues values = AssignmentPlan::differing(old, QString());
    if (values.isEmpty()) {
        m_dependencies.status.showStatus(words(field).alreadyEmpty, words(field).icon, Tone::Warning);
        return;
    }
    change(field, old, values, words(field).clearAction, undoManager);
    showDone(words(field).cleared, {static_cast<int>(values.size())}, words(field).icon);
}

QSet<TrackID> TagWriting::favoriteTargets(const QSet<TrackID>& ids)
{
    const QSet<TrackID> targets = AssignmentPlan::favorites(m_dependencies.workspace.tracks(), ids);
    if (targets.isEmpty())
        m_dependencies.status.showStatus(QStringLiteral("Выберите трек в «Избранном»"), QStringLiteral("heart"),
                                         Tone::Warning);
    return targets;
}

void TagWriting::change(AssignedField field, const AssignedValues& old, const AssignedValues& values,
                        const QString& actionName, UndoManager* undoManager)
{
    if (values.isEmpty())
        return;
    applyValues(field, values);
    if (!undoManager)
        return;
    AssignedValues changedFrom;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        changedFrom.insert(entry.key(), old.value(entry.key()));
    undoManager->registerUndo(
        actionName, [this, field, changedFrom] { applyValues(field, changedFrom); },
        [this, field, values] { applyValues(field, values); });
}

void TagWriting::applyValues(AssignedField field, const AssignedValues& values)
{
    QList<Track> changed;
    Workspace& workspace = m_dependencies.workspace;
    workspace.setTracks(AssignmentPlan::withValues(workspace.tracks(), field, values, changed));
    if (changed.isEmpty())
        return;
    QSet<TrackID> ids;
    QList<TagWriter::Item> items;
    for (const Track& track : std::as_const(changed)) {
        ids.insert(track.id());
        items.append({track.tags(), track.url()});
    }
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(AssignmentPlan::fieldName(field), ids);
    m_dependencies.writer.writeBatch(items);
}

void TagWriting::showDone(const QString& key, std::initializer_list<QVariant> arguments, const QString& icon)
{
    if (m_dependencies.writer.writesFiles()) {
        m_dependencies.status.showCounted(key, arguments, icon, Tone::Success);
        return;
    }
    const QString done = VelmoraLocalization::format(key, arguments);
    m_dependencies.status.showCounted(QStringLiteral("%@ — пока только в списке, в файлы не записано"), {done}, icon,
                                      Tone::Warning);
}
