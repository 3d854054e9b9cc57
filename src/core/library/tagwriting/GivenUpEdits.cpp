#include "core/library/tagwriting/GivenUpEdits.h"

#include "async/MainQueue.h"
#include "core/library/reading/MetadataLoads.h"
#include "core/library/status/StatusLine.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"

#include <memory>

namespace {
constexpr qint64 kBytesPerEdit = 1024; // about, with the tags
}

GivenUpEdits::GivenUpEdits(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

void GivenUpEdits::giveUp(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const auto edits = std::make_shared<const Edits>(editsOf(ids));
    if (edits->isEmpty())
        return;
    letGo(*edits);
    m_dependencies.history.registerUndo(
        QStringLiteral("Снять правки"), {edits->size() * kBytesPerEdit, false}, [this, edits] { bringBack(*edits); },
        [this, edits] { letGo(*edits); });
    m_dependencies.status.showCounted(QStringLiteral("Правки сняты: %d"), {static_cast<int>(edits->size())},
                                      StatusIcon::Tag, WorkspaceStatus::Tone::Success);
}

GivenUpEdits::Edits GivenUpEdits::editsOf(const QSet<TrackID>& ids) const
{
    Edits edits;
    for (const TrackID& id : ids) {
        const Track* row = m_dependencies.workspace.tracks().find(id);
        if (row && row->editedFields())
            edits.insert(id, {row->tags(), row->editedFields()});
    }
    return edits;
}

/// Until the file is read the row shows what an unread one does: the edit may have covered anything.
void GivenUpEdits::letGo(const Edits& edits)
{
    Workspace& workspace = m_dependencies.workspace;
    QList<Track> rows = workspace.tracks().rows();
    QList<Track> unread;
    for (Track& row : rows) {
        const auto edit = edits.constFind(row.id());
        const TagFields fields = edit == edits.cend() ? TagFields() : edit->fields & row.editedFields();
        if (!fields)
            continue;
        row.forgetEdits(fields);
        row.replaceTags(TagFieldSet::merged(row.tags(), Track::fallbackTags(row.url()), fields));
        row.setTagSource(Track::TagSource::Remembered);
        unread.append(row);
    }
    workspace.setTracks(std::move(rows));
    m_dependencies.loads.schedule(unread, Track::MetadataDestination::Library);
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), QSet(edits.keyBegin(), edits.keyEnd()));
}

void GivenUpEdits::bringBack(const Edits& edits)
{
    Workspace& workspace = m_dependencies.workspace;
    QList<Track> rows = workspace.tracks().rows();
    for (auto edit = edits.cbegin(); edit != edits.cend(); ++edit) {
        if (const std::optional<int> place = workspace.tracks().indexOf(edit.key()))
            rows[*place].edit(edit->tags, edit->fields);
    }
    workspace.setTracks(std::move(rows));
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), QSet(edits.keyBegin(), edits.keyEnd()));
}
