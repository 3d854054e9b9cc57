#include "core/library/tagwriting/OriginalTags.h"

#include "async/MainQueue.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"

#include <algorithm>

namespace {

using Tone = WorkspaceStatus::Tone;

constexpr int kAskedFiles = 200;                   // chosen: a menu opens at once; for more it offers without asking
constexpr qsizetype kKeptBytes = 64 * 1024 * 1024; // of one step in memory; chosen: the covers of a hundred albums

} // namespace

/// One change as undo and redo see it.
struct OriginalTags::Step {
    TagSaver::Wanted wanted = TagSaver::Wanted::All;
    QSet<TrackID> rows;
    QHash<TrackID, QByteArray> tags;  ///< what stood in the files before this or its undo
    QHash<TrackID, AudioTags> fields; ///< what rows said before, for a restore of a file whose tags are not there
};

OriginalTags::OriginalTags(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
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
    const auto step = std::make_shared<Step>();
    for (const Track& row : std::as_const(rows))
        step->fields.insert(row.id(), row.tags());
    m_dependencies.saver.restoreBatch(rows, {}, step->wanted, [this, step](const TagSaver::Outcome& outcome) {
        if (outcome.restored.isEmpty())
            return;
        step->rows = outcome.restored;
        step->tags = outcome.former;
        registerStep(QStringLiteral("Вернуть исходные теги"), step);
        tell(outcome.restored);
        m_dependencies.status.showCounted(QStringLiteral("Исходные теги возвращены: %d"),
                                          {static_cast<int>(outcome.restored.size())}, StatusIcon::Undo, Tone::Success);
    });
}

void OriginalTags::registerPictures(const QString& actionName, const QHash<TrackID, QByteArray>& former)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const auto step = std::make_shared<Step>();
    step->wanted = TagSaver::Wanted::Picture;
    step->rows = {former.keyBegin(), former.keyEnd()};
    step->tags = former;
    if (!former.isEmpty())
        registerStep(actionName, step);
}

void OriginalTags::registerStep(const QString& actionName, const std::shared_ptr<Step>& step)
{
    qsizetype bytes = 0;
    erase_if(step->tags, [&](const auto& entry) { return (bytes += entry.value().size()) > kKeptBytes; });
    m_dependencies.history.registerUndo(
        actionName, [this, step] { takeBack(step); }, [this, step] { doAgain(step); });
}

/// Where the tags that stood before a restore could not be kept whole, the fields come back.
void OriginalTags::takeBack(const std::shared_ptr<Step>& step)
{
    QList<Track> rows;
    QHash<TrackID, AudioTags> fields;
    for (const Track& row : rowsOf(step->rows)) {
        if (step->tags.contains(row.id()))
            rows.append(row);
        else if (step->fields.contains(row.id()))
            fields.insert(row.id(), step->fields.value(row.id()));
    }
    if (!fields.isEmpty())
        m_dependencies.writing.putFieldsBack(fields);
    putBack(step, rows);
}

/// A restore whose fields were taken back goes by the originals again.
void OriginalTags::doAgain(const std::shared_ptr<Step>& step)
{
    QList<Track> rows = rowsOf(step->rows);
    rows.removeIf([&](const Track& row) { return !step->tags.contains(row.id()) && !step->fields.contains(row.id()); });
    putBack(step, rows);
}

void OriginalTags::putBack(const std::shared_ptr<Step>& step, const QList<Track>& rows)
{
    const auto ended = [this, step](const TagSaver::Outcome& outcome) {
        for (const TrackID& id : outcome.restored)
            step->tags.remove(id);
        step->tags.insert(outcome.former);
        tell(outcome.restored);
        writeFieldsAgain(outcome.restored);
    };
    m_dependencies.saver.restoreBatch(rows, step->tags, step->wanted, ended);
}

/// What was written of a row after its former picture comes back beside that; nothing else of the file changes.
void OriginalTags::writeFieldsAgain(const QSet<TrackID>& ids)
{
    QList<TagSaver::Item> items;
    for (const Track& row : rowsOf(ids)) {
        if (row.editedFields())
            items.append({row, TagSaver::Others::Stay});
    }
    m_dependencies.saver.writeBatch(items);
}

void OriginalTags::tell(const QSet<TrackID>& ids)
{
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), ids);
    emit m_dependencies.writing.tempoEdited(ids);
}
