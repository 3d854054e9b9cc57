#include "core/library/tagwriting/OriginalTags.h"

#include "async/MainQueue.h"
#include "core/library/files/FileEvents.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"

#include <algorithm>

namespace {

using Tone = WorkspaceStatus::Tone;

constexpr int kAskedFiles = 200; // chosen: a menu opens at once; for more it offers without asking

} // namespace

OriginalTags::OriginalTags(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
    connect(&dependencies.events, &FileEvents::changed, this, &OriginalTags::follow);
}

bool OriginalTags::canRestore(const QSet<TrackID>& ids) const
{
    if (ids.size() > kAskedFiles)
        return true;
    return std::ranges::any_of(rowsOf(ids),
                               [this](const Track& track) { return m_dependencies.saver.holdsOriginal(track.url()); });
}

/// Each file once; of a file with a row in the main list that row.
QList<Track> OriginalTags::rowsOf(const QSet<TrackID>& ids) const
{
    using List = Track::MetadataDestination;
    const Workspace& workspace = m_dependencies.workspace;
    QList<Track> rows;
    QSet<QUrl> files;
    for (const List list : {List::Library, List::Analysis, List::MusicalKey, List::Duplicates}) {
        QList<int> places;
        for (const TrackID& id : ids) {
            if (const std::optional<int> place = workspace.list(list).indexOf(id))
                places.append(*place);
        }
        std::ranges::sort(places);
        for (const int place : std::as_const(places)) {
            const Track& row = workspace.list(list).at(place);
            if (files.contains(row.url()))
                continue;
            files.insert(row.url());
            const std::optional<int> main = workspace.tracks().indexOfURL(row.url());
            rows.append(main ? workspace.tracks().at(*main) : row);
        }
    }
    return rows;
}

void OriginalTags::restore(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QList<Track> rows = rowsOf(ids);
    rows.removeIf([this](const Track& row) { return !m_dependencies.saver.holdsOriginal(row.url()); });
    if (rows.isEmpty()) {
        m_dependencies.status.showStatus(QStringLiteral("Исходных тегов этих файлов нет: Velmora их не меняла"),
                                         StatusIcon::Undo, Tone::Warning);
        return;
    }
    const StepPtr step = begin(QStringLiteral("Вернуть исходные теги"), TagSaver::Wanted::All);
    m_dependencies.saver.restoreBatch(rows, {}, step->wanted(), [this, step, rows](const TagSaver::Outcome& outcome) {
        restored(step, rows, outcome);
    });
}

/// \param rows as they were before.
void OriginalTags::restored(const StepPtr& step, const QList<Track>& rows, const TagSaver::Outcome& outcome)
{
    for (const Track& row : rows) {
        const auto restored = outcome.restored.constFind(row.id());
        if (restored != outcome.restored.cend())
            step->add(row.id(), {row.url(), restored->former, row.tags(), restored->left});
    }
    if (!outcome.restored.isEmpty()) {
        tell({outcome.restored.keyBegin(), outcome.restored.keyEnd()});
        m_dependencies.status.showCounted(QStringLiteral("Исходные теги возвращены: %d"),
                                          {static_cast<int>(outcome.restored.size())}, StatusIcon::Undo, Tone::Success);
    }
    end(step);
}

OriginalTags::StepPtr OriginalTags::beginPictures(const QString& actionName)
{
    VELMORA_ASSERT_MAIN_THREAD();
    return begin(actionName, TagSaver::Wanted::Picture);
}

void OriginalTags::picturesWritten(const StepPtr& step)
{
    VELMORA_ASSERT_MAIN_THREAD();
    end(step);
}

OriginalTags::StepPtr OriginalTags::begin(const QString& actionName, TagSaver::Wanted wanted)
{
    auto step = std::make_shared<PutBackStep>(*this, actionName, wanted);
    step->begin();
    m_steps.removeIf([](const std::weak_ptr<PutBackStep>& each) { return each.expired(); });
    m_steps.append(step);
    m_dependencies.history.push(step);
    return step;
}

void OriginalTags::end(const StepPtr& step)
{
    const bool isUndoWanted = step->end();
    if (step->isSpent()) {
        m_dependencies.history.withdraw(*step);
        m_dependencies.history.ended(*step);
    } else if (isUndoWanted) {
        move(step, Direction::Back);
    }
}

void OriginalTags::move(const StepPtr& step, Direction direction)
{
    StepAnnouncement{step->name(), direction}.showBegun(m_dependencies.status);
    QList<Track> rows = rowsOf({step->rows().keyBegin(), step->rows().keyEnd()});
    rows.removeIf([&](const Track& row) { return !step->rows().contains(row.id()); });
    if (rows.isEmpty()) {
        moved(step, direction, {});
        return;
    }
    step->begin();
    m_dependencies.saver.restoreBatch(
        rows, step->next(direction), step->wanted(),
        [this, step, direction](const TagSaver::Outcome& outcome) { moved(step, direction, outcome); });
}

/// What was written of a row after its former picture comes back beside that; nothing else of the file changes.
void OriginalTags::moved(const StepPtr& step, Direction direction, const TagSaver::Outcome& outcome)
{
    const QSet<TrackID> restored(outcome.restored.keyBegin(), outcome.restored.keyEnd());
    const History::Outcome whole = step->moved(outcome);
    tell(restored);
    QList<TagSaver::Item> again;
    for (const Track& row : rowsOf(restored)) {
        if (row.editedFields())
            again.append({row, TagSaver::Others::Stay});
    }
    const auto ended = [this, step, direction, outcome, whole](const TagSaver::Outcome& written) {
        const QSet<TrackID> notWritten = outcome.notWritten + written.notWritten;
        StepAnnouncement{step->name(), direction}.showEnded(m_dependencies.status, outcome.leftAlone.size(),
                                                            notWritten.size());
        m_dependencies.history.ended(*step, whole);
    };
    if (again.isEmpty())
        ended({});
    else
        m_dependencies.saver.writeBatch(again, ended);
}

void OriginalTags::tell(const QSet<TrackID>& ids)
{
    if (ids.isEmpty())
        return;
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), ids);
    emit m_dependencies.writing.tempoEdited(ids);
}

void OriginalTags::follow(const FileChange& change)
{
    for (const std::weak_ptr<PutBackStep>& each : std::as_const(m_steps)) {
        if (const StepPtr step = each.lock())
            step->follow(change);
    }
}
