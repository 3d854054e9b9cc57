#include "core/library/tagwriting/UnwrittenEdits.h"

#include "async/MainQueue.h"
#include "core/library/files/FileEvents.h"
#include "core/library/status/SaveReason.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagSaver.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Localization.h"

#include <QPointer>

#include <algorithm>

namespace {

/// With the files as they are now, as far as the edits do not know better. Blocks.
QList<KeptEdit> stamped(QList<KeptEdit> edits)
{
    for (KeptEdit& edit : edits) {
        if (edit.fields && !edit.stamp)
            edit.stamp = FileStamp::of(edit.url);
    }
    return edits;
}

/// Blocks.
bool isFileChanged(const KeptEdit& edit)
{
    const std::optional<FileStamp> now = edit.stamp ? FileStamp::of(edit.url) : std::nullopt;
    return now && !now->isSameFile(*edit.stamp);
}

} // namespace

UnwrittenEdits::UnwrittenEdits(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
    connect(&dependencies.workspace, &Workspace::tracksChanged, this, &UnwrittenEdits::tracksChanged);
    connect(&dependencies.workspace, &Workspace::restoringChanged, this, &UnwrittenEdits::bringBackLater);
    connect(&dependencies.saver, &TagSaver::progressChanged, this, &UnwrittenEdits::changed);
    connect(&dependencies.saver.rows(), &RowSaver::settled, this, &UnwrittenEdits::fileSettled);
    connect(&dependencies.events, &FileEvents::changed, this, &UnwrittenEdits::fileChanged);
    if (dependencies.journal)
        m_readTask.start([this](std::stop_token stop) { return read(std::move(stop)); });
}

UnwrittenEdits::~UnwrittenEdits() = default;

int UnwrittenEdits::leftCount() const
{
    return m_dependencies.saver.progress().total > 0 ? 0 : static_cast<int>(m_rows.size());
}

void UnwrittenEdits::writeAgain(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const TrackList& tracks = m_dependencies.workspace.tracks();
    QList<int> places;
    for (const TrackID& id : ids) {
        if (const std::optional<int> place = m_rows.contains(id) ? tracks.indexOf(id) : std::nullopt)
            places.append(*place);
    }
    std::ranges::sort(places);
    QList<TagSaver::Item> items;
    for (const int place : std::as_const(places)) {
        const bool isAlbum = tracks.at(place).editedFields() == TagFields(TagField::Album);
        items.append({tracks.at(place), isAlbum ? TagSaver::Others::StayBesideAlbum : TagSaver::Others::AsPreferred});
    }
    m_dependencies.saver.writeBatch(items);
}

void UnwrittenEdits::tracksChanged(const ListChange& change)
{
    const qsizetype before = m_rows.size();
    if (change.kind == ListChange::Kind::Contents) {
        for (const int row : change.rows)
            look(m_dependencies.workspace.tracks().at(row));
    } else {
        rowsMoved();
        bringBackLater();
    }
    sendNotes();
    if (before != m_rows.size())
        emit changed();
}

/// A row that comes back brings the edits along that it left with; they have waited long enough.
void UnwrittenEdits::rowsMoved()
{
    const TrackList& tracks = m_dependencies.workspace.tracks();
    QSet<TrackID> back;
    for (const TrackID& id : m_rows + m_away) {
        const Track* row = tracks.find(id);
        if (!row && m_rows.remove(id))
            m_away.insert(id);
        if (!row)
            continue;
        if (m_away.contains(id) && row->editedFields())
            back.insert(id);
        look(*row);
    }
    if (back.isEmpty())
        return;
    async::MainQueue::post([self = QPointer(this), back] {
        if (self)
            self->writeAgain(back);
    });
}

void UnwrittenEdits::look(const Track& row)
{
    const TagFields fields = row.editedFields();
    if (!fields && !m_rows.contains(row.id()) && !m_away.contains(row.id()))
        return;
    m_away.remove(row.id());
    if (fields)
        m_rows.insert(row.id());
    else
        m_rows.remove(row.id());
    note({row.url(), fields, row.tags()});
}

/// What is known of a file goes with it.
void UnwrittenEdits::fileChanged(const FileChange& change)
{
    if (change.kind != FileChange::Kind::Moved || !m_noted.contains(change.former))
        return;
    KeptEdit edit = m_noted.value(change.former);
    note({change.former, {}, {}});
    edit.url = change.url;
    note(edit);
    sendNotes();
}

/// Rows of the list tell themselves, once they have learned of it.
void UnwrittenEdits::fileSettled(const QUrl& url, TagFields fields, const AudioTags& values)
{
    const auto noted = m_noted.constFind(url);
    if (noted == m_noted.cend() || m_dependencies.workspace.tracks().indexOfURL(url))
        return;
    KeptEdit left = *noted;
    left.fields &= ~fields | TagFieldSet::differing(left.tags, values);
    if (left.fields == noted->fields)
        return;
    left.stamp.reset();
    if (m_returning.remove(url) && left.fields)
        m_returning.insert(url, left);
    note(left);
    sendNotes();
}

void UnwrittenEdits::note(const KeptEdit& edit)
{
    const auto noted = m_noted.constFind(edit.url);
    const bool isNews = noted == m_noted.cend() ? bool(edit.fields)
                                                : noted->fields != edit.fields ||
                                                      (TagFieldSet::differing(noted->tags, edit.tags) & edit.fields);
    if (!isNews || !m_dependencies.journal)
        return;
    if (edit.fields)
        m_noted.insert(edit.url, edit);
    else
        m_noted.remove(edit.url);
    m_notes.append(edit);
}

/// Together, so that what one operation edited is noted at once.
void UnwrittenEdits::sendNotes()
{
    if (!m_isRead && m_dependencies.journal)
        return; // a note takes the place of all that was said of its file
    if (!m_notes.isEmpty() && !m_writeTask.isActive())
        m_writeTask.start([this](std::stop_token stop) { return writeNotes(std::move(stop)); });
}

async::Task<> UnwrittenEdits::writeNotes(std::stop_token stop)
{
    while (!m_notes.isEmpty()) {
        const qsizetype count = m_notes.size();
        auto job = [journal = m_dependencies.journal, notes = m_notes, revision = ++m_revision](
                       const std::stop_token&) { return journal->note(stamped(notes), revision); };
        const bool isOnDisk =
            co_await m_dependencies.executor.run(async::Priority::UserInitiated, stop, std::move(job));
        m_notes.remove(0, count);
        noted(isOnDisk);
    }
}

/// Should the program end now, edits would be lost that are neither noted nor in their files.
bool UnwrittenEdits::noted(bool isOnDisk)
{
    const QString about = QStringLiteral("unwritten edits");
    if (isOnDisk || m_noted.isEmpty())
        m_dependencies.status.letGo(about);
    else
        m_dependencies.status.hold(
            about,
            VelmoraLocalization::format(QStringLiteral("Незаписанные правки не сохраняются до следующего запуска: %@"),
                                        {saveReason(m_dependencies.journal->error())}));
    return isOnDisk;
}

bool UnwrittenEdits::keep()
{
    VELMORA_ASSERT_MAIN_THREAD();
    // What a worker is about to note is among these, and its own call changes nothing then.
    if (!m_dependencies.journal)
        return m_rows.isEmpty();
    if (!m_isRead)
        takeKept(m_dependencies.journal->read());
    return noted(m_dependencies.journal->note(stamped(m_notes), ++m_revision));
}

async::Task<> UnwrittenEdits::read(std::stop_token stop)
{
    auto job = [journal = m_dependencies.journal](const std::stop_token&) { return journal->read(); };
    const QList<KeptEdit> kept = co_await m_dependencies.executor.run(async::Priority::Utility, stop, std::move(job));
    if (!m_isRead)
        takeKept(kept);
    bringBackLater();
    sendNotes();
}

/// Fields that were edited anew meanwhile are as they are now; a note says the others beside them.
void UnwrittenEdits::takeKept(const QList<KeptEdit>& kept)
{
    m_isRead = true;
    for (const KeptEdit& edit : kept) {
        const auto anew = m_noted.constFind(edit.url);
        if (anew == m_noted.cend()) {
            m_noted.insert(edit.url, edit);
            m_returning.insert(edit.url, edit);
            continue;
        }
        KeptEdit both = *anew;
        const TagFields others = edit.fields & ~both.fields;
        if (!others)
            continue;
        KeptEdit waiting = edit;
        waiting.fields = others;
        m_returning.insert(edit.url, waiting);
        both.tags = TagFieldSet::merged(both.tags, edit.tags, others);
        both.fields |= others;
        both.stamp = edit.stamp;
        note(both);
    }
}

/// Not inside a change of the list.
void UnwrittenEdits::bringBackLater()
{
    if (m_returning.isEmpty() || m_dependencies.workspace.isRestoringWorkspaceSession() ||
        std::exchange(m_isBringingBack, true))
        return;
    async::MainQueue::post([self = QPointer(this)] {
        if (self)
            self->bringBack();
    });
}

/// Rows whose files are waited for get their edits back.
void UnwrittenEdits::bringBack()
{
    m_isBringingBack = false;
    Workspace& workspace = m_dependencies.workspace;
    if (workspace.isRestoringWorkspaceSession())
        return;
    QList<Track> rows = workspace.tracks().rows();
    QHash<TrackID, KeptEdit> back;
    for (auto edit = m_returning.begin(); edit != m_returning.end();) {
        const std::optional<int> place = workspace.tracks().indexOfURL(edit.key());
        if (!place) {
            ++edit;
            continue;
        }
        Track& row = rows[*place];
        row.edit(edit->tags, edit->fields & ~row.editedFields());
        row.setTagSource(Track::TagSource::Remembered);
        back.insert(row.id(), *edit);
        edit = m_returning.erase(edit);
    }
    if (back.isEmpty())
        return;
    workspace.setTracks(std::move(rows));
    m_returns.add([this, back](std::stop_token stop) { return writeUnchanged(back, std::move(stop)); });
}

/// The save looks into the file first, and writes only what is not there. Over what others wrote since the edit was
/// made, it goes only at the user's word.
async::Task<> UnwrittenEdits::writeUnchanged(QHash<TrackID, KeptEdit> back, std::stop_token stop)
{
    auto job = [back](const std::stop_token&) {
        QSet<TrackID> unchanged;
        for (auto edit = back.cbegin(); edit != back.cend(); ++edit) {
            if (!isFileChanged(*edit))
                unchanged.insert(edit.key());
        }
        return unchanged;
    };
    writeAgain(co_await m_dependencies.executor.run(async::Priority::Utility, stop, std::move(job)));
}
