#include "core/library/tagwriting/RowSaver.h"

#include "core/library/files/FileEvents.h"
#include "core/library/files/FinishedJob.h"
#include "core/library/workspace/Workspace.h"

#include <algorithm>

namespace {

/// What a keeping save replaces: what was edited, what stands differently in the file for another reason, and what the
/// row has of the fields that no read supplies. All else stays as the file has it, several values of one field too.
TagFields replacedFields(const AudioTags& tags, TagFields edited, const std::optional<LoadedTrackMetadata>& inFile)
{
    const TagFields differing = inFile ? TagFieldSet::differing(inFile->tags, tags) : TagFieldSet::kAll;
    return edited | (differing & ~TagFieldSet::kNeverRead) | (TagFieldSet::filled(tags) & TagFieldSet::kNeverRead);
}

/// The fields of a row that its file's name may have suggested to the look at the file.
TagFields suggestedFields(const Track& track)
{
    const TagFields differing = TagFieldSet::differing(Track::fallbackTags(track.url()), track.tags());
    return track.isRead() ? TagFields() : ~differing & TagFieldSet::filled(track.tags());
}

/// The edited fields that the file says already, as far as the look can tell: where it says nothing, the look of a row
/// that was never read shows what the file's name suggests.
TagFields fieldsInFile(const Track& track, TagFields edited, const SaveJobs::Look& look)
{
    const AudioTags& tags = track.tags();
    TagFields held;
    if (!look.inventory.isUnknown)
        held = edited & TagFieldSet::kNeverRead & ~TagFieldSet::differing(look.inventory.unread, tags);
    if (look.tags)
        held |= edited & ~TagFieldSet::kNeverRead & ~suggestedFields(track) &
                ~TagFieldSet::differing(look.tags->tags, tags);
    return held;
}

/// What rows of another list learn; a read of theirs that is on its way shall find no newer stamp.
QList<SavedRow> concerning(const TrackList& rows, const QList<SavedRow>& learned)
{
    QList<SavedRow> result;
    for (const SavedRow& each : learned) {
        const std::optional<int> place = rows.indexOfURL(each.url);
        if (place && (each.restored || rows.at(*place).isRead()))
            result.append(each);
    }
    return result;
}

} // namespace

/// The edits of the items on their way, in the order in which they were asked for.
struct RowSaver::Asked {
    struct Edit {
        qsizetype place;
        AudioTags tags;
        TagFields fields;
    };
    QHash<QUrl, QList<Edit>> edits;
    qsizetype count = 0;
};

RowSaver::RowSaver(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

async::Task<RowSaver::Saved> RowSaver::save(Item item, Artwork artwork, std::stop_token stop)
{
    const auto saved = std::make_shared<Saved>();
    saved->row.id = item.track.id();
    saved->row.url = item.track.url();
    const Turn turn = turnOf(item);
    const bool isInFile = turn.isInList && turn.track.isRead() && !turn.edited;
    if ((isInFile && !artwork) || (item.needsRow && !turn.isInList))
        co_return *saved;
    co_await write(item, artwork, saved, stop);
    if (saved->row.changesRow())
        m_learned.append(saved->row);
    if (saved->row.read)
        learn();
    co_return *saved;
}

async::Task<> RowSaver::write(Item item, Artwork artwork, std::shared_ptr<Saved> saved, std::stop_token stop)
{
    const Turn before = turnOf(item);
    const QUrl url = before.track.url();
    const SaveJobs::Look look = co_await this->look(before, stop);
    const Turn turn = turnOf(item); // edits may have been made or taken back while the file was looked at
    if (!(before.track.isRead() && turn.track.isRead()) && !look.tags) {
        saved->failure = SaveJobs::unreadable(url, look.isMissing);
        co_return;
    }
    tell(before, look);
    saved->row.read = before.track.isRead() ? std::nullopt : look.tags;
    if (turn.isInList && !turn.edited && !artwork)
        co_return;
    const TagFields held = fieldsInFile(turn.track, turn.edited & before.edited, look);
    if (!artwork && !(turn.edited & ~held)) {
        saved->row.writtenFields = held;
        saved->row.written = turn.track.tags();
        emit settled(url, held, saved->row.written);
        co_return;
    }
    std::optional<TagWrite> wanted = co_await writeOf(turn, look, artwork.has_value(), stop);
    while (!wanted && artwork) // what was stopped are saves of tags; a cover asks again
        wanted = co_await writeOf(turn, look, true, stop);
    saved->isGivenUp = !wanted;
    if (!wanted)
        co_return;
    const TagWrite write = *wanted;
    auto job = [&files = m_dependencies.files, write, artwork, others = item.others](const std::stop_token&) {
        return others == Others::StayBesideAlbum ? SaveJobs::assignAlbum(files, write.tags.album, write.url)
                                                 : SaveJobs::write(files, write, artwork);
    };
    const SaveJobs::Written written = co_await finishedJob(m_dependencies.executor, stop, std::move(job));
    saved->failure = written.failure;
    if (written.failure)
        co_return;
    saved->former = written.former;
    saved->left.stamp = written.rewrite.after;
    tellRewritten(url, written.rewrite);
    noteWritten(*saved, write, turn, artwork.has_value());
}

RowSaver::Item RowSaver::ask(Item item)
{
    std::shared_ptr<Asked> asked = m_asked.lock();
    if (!asked)
        m_asked = asked = std::make_shared<Asked>();
    item.place = ++asked->count;
    if (const TagFields edited = item.track.editedFields())
        asked->edits[item.track.url()].append({item.place, item.track.tags(), edited});
    item.asked = std::move(asked);
    return item;
}

/// An older value is never written over a newer one: what was asked for later, by another row of the file too, may have
/// been written first.
AudioTags RowSaver::newestTags(const Item& item)
{
    AudioTags tags = item.track.tags();
    const auto edits = item.asked ? item.asked->edits.value(item.track.url()) : QList<Asked::Edit>();
    for (const Asked::Edit& edit : edits) {
        if (edit.place > item.place)
            tags = TagFieldSet::merged(tags, edit.tags, edit.fields);
    }
    return tags;
}

RowSaver::Turn RowSaver::turnOf(const Item& item) const
{
    const Track* row = m_dependencies.workspace.tracks().find(item.track.id());
    const bool isInList = row && row->url() == item.track.url();
    Turn turn{isInList ? *row : item.track, {}, isInList, item.others};
    if (!isInList)
        turn.track.replaceTags(newestTags(item));
    turn.edited = turn.track.editedFields();
    for (const SavedRow& learned : m_learned) {
        if (learned.url == turn.track.url())
            turn.edited &= ~learned.settled(turn.track);
    }
    if (turn.others == Others::StayBesideAlbum)
        turn.edited &= TagField::Album;
    return turn;
}

async::Task<SaveJobs::Look> RowSaver::look(Turn turn, std::stop_token stop)
{
    const SaveJobs::Wanted wanted = wantedOf(turn);
    if (!wanted.tags && !wanted.inventory)
        co_return SaveJobs::Look();
    auto job = [&files = m_dependencies.files, reader = m_dependencies.readMetadata, url = turn.track.url(),
                wanted](const std::stop_token&) { return SaveJobs::look(files, reader, url, wanted); };
    SaveJobs::Look look = co_await finishedJob(m_dependencies.executor, stop, std::move(job));
    co_return std::move(look);
}

SaveJobs::Wanted RowSaver::wantedOf(const Turn& turn) const
{
    const bool isPreferred = turn.others == Others::AsPreferred;
    // A row that was never read knows its other fields from an earlier run or from its name; of what was edited only
    // the file can tell what stood there.
    const QUrl url = turn.track.url();
    const AudioTags fallback = turn.track.isRead()
                                   ? AudioTags()
                                   : TagFieldSet::merged(turn.track.tags(), Track::fallbackTags(url), turn.edited);
    return {(isPreferred && m_dependencies.question.mayKeep()) || !turn.track.isRead() || turn.edited, fallback,
            (isPreferred && m_dependencies.question.isOpen()) || (turn.edited & TagFieldSet::kNeverRead)};
}

/// What is written of a row, and what of the file is kept; may wait for the user's answer to that. Nothing where the
/// question was withdrawn.
async::Task<std::optional<TagWrite>> RowSaver::writeOf(Turn turn, SaveJobs::Look look, bool hasPicture,
                                                       std::stop_token stop)
{
    AudioTags tags = turn.track.tags();
    if (!turn.track.isRead())
        tags = TagFieldSet::merged(look.tags->tags, tags, turn.edited);
    if (turn.others != Others::AsPreferred)
        co_return TagWrite{turn.track.url(), tags, turn.edited, true};
    const std::optional<bool> keeps =
        co_await m_dependencies.question.keepsOthers(look.inventory, tags, hasPicture, stop);
    if (!keeps)
        co_return std::nullopt;
    co_return TagWrite{turn.track.url(), tags, replacedFields(tags, turn.edited, look.tags), *keeps};
}

/// An edit that wants to be taken back needs to know what it covered.
void RowSaver::tell(const Turn& turn, const SaveJobs::Look& look)
{
    AudioTags values = TagFieldSet::merged(AudioTags(), look.inventory.unread, TagFieldSet::kNeverRead);
    TagFields known = turn.edited & TagFieldSet::kNeverRead;
    if (!turn.track.isRead()) {
        values = TagFieldSet::merged(values, look.tags->tags, TagFieldSet::kAll & ~TagFieldSet::kNeverRead);
        known |= turn.edited;
    }
    if (known)
        emit fileTold(turn.track.id(), values, known);
}

void RowSaver::tellRewritten(const QUrl& url, const SaveJobs::Rewrite& rewrite)
{
    m_dependencies.events.tell({FileChange::Kind::Rewritten, url, url, rewrite.before, rewrite.after});
}

void RowSaver::noteWritten(Saved& saved, const TagWrite& write, const Turn& turn, bool hasPicture)
{
    saved.row.writtenFields = write.keepsOthers ? write.fields : TagFieldSet::kAll;
    saved.row.written = write.tags;
    emit settled(write.url, saved.row.writtenFields, write.tags);
    const bool decidesPicture = hasPicture || !write.keepsOthers;
    if (decidesPicture)
        saved.row.pictureMark = m_pictureWrites[turn.track.id()] = ++m_pictureWrite;
    saved.row.losesArtwork = decidesPicture && !hasPicture;
}

async::Task<RowSaver::Saved> RowSaver::restore(Track track, SaveJobs::PutBack what, Wanted wanted, std::stop_token stop)
{
    Saved saved;
    saved.row.keepsFields = wanted == Wanted::Picture;
    saved.row.id = track.id();
    saved.row.url = track.url();
    learn();
    saved.row.versionBefore = turnOf({track}).track.metadataVersion();
    auto job = [&files = m_dependencies.files, reader = m_dependencies.readMetadata, url = track.url(),
                what](const std::stop_token&) { return SaveJobs::restore(files, reader, url, what); };
    const SaveJobs::Restored restored = co_await finishedJob(m_dependencies.executor, stop, std::move(job));
    saved.isLeftAlone = restored.isLeftAlone;
    saved.failure = restored.failure;
    if (!restored.isHeld || restored.isLeftAlone)
        co_return saved;
    tellRewritten(track.url(), restored.rewrite);
    if (saved.failure)
        co_return saved;
    m_pictureWrites[track.id()] = ++m_pictureWrite;
    saved.row.restored = restored.tags;
    saved.former = restored.former;
    saved.left = {restored.rewrite.after, wanted == Wanted::All ? restored.tags : std::nullopt};
    saved.isRestored = true;
    m_learned.append(saved.row);
    learn();
    co_return saved;
}

void RowSaver::learn()
{
    if (m_learned.isEmpty())
        return;
    QList<SavedRow> learned = std::exchange(m_learned, {});
    for (SavedRow& each : learned)
        each.losesArtwork = each.losesArtwork && holdsPicture(each.id, each.pictureMark); // else one came meanwhile
    Workspace& workspace = m_dependencies.workspace;
    workspace.setTracks(SavedRows::applied(workspace.tracks(), learned));
    using List = Track::MetadataDestination;
    for (const List list : {List::Analysis, List::MusicalKey, List::Duplicates}) {
        const TrackList& rows = workspace.list(list);
        const QList<SavedRow> theirs = concerning(rows, learned);
        if (!theirs.isEmpty())
            workspace.setList(list, SavedRows::applied(rows, theirs));
    }
}
