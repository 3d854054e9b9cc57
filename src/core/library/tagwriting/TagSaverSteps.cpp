#include "core/library/files/FileEvents.h"
#include "core/library/files/FinishedJob.h"
#include "core/library/tagwriting/TagSaver.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Preferences.h"

// One file's way from the lock to its row: what the row says now, what the file holds, what is kept, the write itself,
// and what the row learns from it.

namespace {

/// What a keeping save replaces: what was edited, what stands differently in the file for another reason, and what the
/// row has of the fields that no read supplies. All else stays as the file has it, several values of one field too.
TagFields replacedFields(const AudioTags& tags, TagFields edited, const std::optional<LoadedTrackMetadata>& inFile)
{
    const TagFields differing = inFile ? TagFieldSet::differing(inFile->tags, tags) : TagFieldSet::kAll;
    return edited | (differing & ~TagFieldSet::kNeverRead) | (TagFieldSet::filled(tags) & TagFieldSet::kNeverRead);
}

} // namespace

/// The path stays held until the row has learned what the file holds now, as far as others could be misled.
async::Task<TagSaver::Saved> TagSaver::save(Item item, Artwork artwork, std::stop_token stop)
{
    const auto saved = std::make_shared<Saved>();
    saved->row.id = item.track.id();
    saved->row.url = item.track.url();
    const MetadataWriteCoordinator::HeldPath held = co_await m_coordinator.hold(item.track.url(), stop);
    const Turn turn = turnOf(item);
    const bool isInFile = turn.isInList && m_writtenStamps.value(turn.track.id()) == turn.track.metadataVersion().tags;
    if (isInFile && !artwork)
        co_return *saved;
    saved->failure = co_await writeHeld(turn, artwork, saved, stop);
    if (saved->row.read)
        applyToRows({std::exchange(
            saved->row, {.id = saved->row.id, .url = saved->row.url, .pictureMark = saved->row.pictureMark})});
    if (saved->written)
        noteWritten(saved->row.id, *saved->written);
    co_return *saved;
}

async::Task<std::optional<TagFileError>> TagSaver::writeHeld(Turn turn, Artwork artwork, std::shared_ptr<Saved> saved,
                                                             std::stop_token stop)
{
    const QUrl url = turn.track.url();
    const SaveJobs::Wanted wanted = wantedOf(turn);
    SaveJobs::Look look;
    if (wanted.tags || wanted.inventory) {
        auto job = [&files = m_dependencies.files, reader = m_dependencies.readMetadata, url,
                    wanted](const std::stop_token&) { return SaveJobs::look(files, reader, url, wanted); };
        look = co_await finishedJob(m_dependencies.executor, stop, std::move(job));
    }
    if (!turn.track.isRead() && !look.tags)
        co_return SaveJobs::unreadable(url);
    tell(turn, look);
    // Edits may have been made or taken back while the file was looked at.
    const Turn now = turnOf({turn.track, turn.edited, turn.others});
    AudioTags tags = now.track.tags();
    if (!turn.track.isRead()) {
        saved->row.read = look.tags;
        saved->row.edited = now.edited;
        tags = SavedRows::merged(*look.tags, tags, now.edited).tags;
    }
    const bool leavesOthers = now.others == Others::Stay;
    bool keeps = leavesOthers;
    if (!keeps)
        keeps = co_await keepsOthers(look.inventory, tags, artwork.has_value(), stop);
    const TagFields replaced = leavesOthers ? now.edited : replacedFields(tags, now.edited, look.tags);
    const TagWrite write{url, tags, replaced, keeps};
    auto job = [&files = m_dependencies.files, write, artwork](const std::stop_token&) {
        return SaveJobs::write(files, write, artwork);
    };
    const SaveJobs::Written written = co_await finishedJob(m_dependencies.executor, stop, std::move(job));
    if (written.failure)
        co_return written.failure;
    tellRewritten(url, written.rewrite);
    forgetEdits(turn.track.id(), now.edited);
    if (artwork || !keeps)
        saved->row.pictureMark = m_pictureWrites[turn.track.id()] = ++m_pictureWrite;
    saved->row.losesArtwork = !artwork && !keeps;
    if (!leavesOthers) // else the row may hold more than the file
        saved->written = tags;
    co_return std::nullopt;
}

TagSaver::Turn TagSaver::turnOf(const Item& item) const
{
    const Track* row = m_dependencies.workspace.tracks().find(item.track.id());
    if (!row || row->url() != item.track.url())
        return {item.track, m_edits.value(item.track.id(), item.edited), false, item.others};
    return {*row, m_edits.value(row->id()), true, item.others};
}

SaveJobs::Wanted TagSaver::wantedOf(const Turn& turn) const
{
    const Preferences& preferences = m_dependencies.preferences;
    const bool mayKeep = preferences.keepsOtherTagEntries.get() || !preferences.keepsOtherTagEntriesAsked.get();
    const bool mayAsk = !preferences.keepsOtherTagEntries.get() && !preferences.keepsOtherTagEntriesAsked.get();
    // A row that was never read knows its other fields from an earlier run or from its name; of what was edited only
    // the file can tell what stood there.
    const QUrl url = turn.track.url();
    const AudioTags fallback = turn.track.isRead()
                                   ? AudioTags()
                                   : TagFieldSet::merged(turn.track.tags(), Track::fallbackTags(url), turn.edited);
    return {mayKeep || !turn.track.isRead(), fallback, mayAsk || (turn.edited & TagFieldSet::kNeverRead)};
}

/// Whoever wants to take an edit back needs to know what it covered.
void TagSaver::tell(const Turn& turn, const SaveJobs::Look& look)
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

void TagSaver::tellRewritten(const QUrl& url, const SaveJobs::Rewrite& rewrite)
{
    m_dependencies.events.tell({FileChange::Kind::Rewritten, url, url, rewrite.before, rewrite.after});
}

/// What the preference says; asks the user once when a save would take something away for the first time.
async::Task<bool> TagSaver::keepsOthers(TagInventory inventory, AudioTags written, bool replacesPicture,
                                        std::stop_token stop)
{
    const Preferences& preferences = m_dependencies.preferences;
    const bool isDecided = preferences.keepsOtherTagEntries.get() || preferences.keepsOtherTagEntriesAsked.get();
    if (isDecided || !inventory.losesAnything(written, replacesPicture))
        co_return preferences.keepsOtherTagEntries.get();
    if (!m_answer)
        m_answer = std::make_unique<async::Completion<bool>>();
    m_dependencies.workspace.setAskingWhatSavesKeep(true);
    const bool answer = co_await m_answer->wait(stop);
    co_return answer;
}

/// The row's tags are in the file now, if nobody changed them meanwhile.
void TagSaver::noteWritten(const TrackID& id, const AudioTags& tags)
{
    const Track* row = m_dependencies.workspace.tracks().find(id);
    if (row && row->isRead() && row->tags() == tags)
        m_writtenStamps[id] = row->metadataVersion().tags;
}

async::Task<quint64> TagSaver::writeArtwork(QByteArray artwork, Track track, std::stop_token stop)
{
    const Item item{track, {}};
    const Saved saved = co_await save(item, artwork, stop);
    if (saved.failure)
        throw TagFileError(*saved.failure);
    co_return saved.row.pictureMark;
}

async::Task<TagSaver::Saved> TagSaver::restoreOne(Track track, std::stop_token stop)
{
    Saved saved;
    saved.row.id = track.id();
    saved.row.url = track.url();
    const MetadataWriteCoordinator::HeldPath held = co_await m_coordinator.hold(track.url(), stop);
    saved.row.versionBefore = turnOf({track, {}}).track.metadataVersion();
    auto job = [&files = m_dependencies.files, reader = m_dependencies.readMetadata,
                url = track.url()](const std::stop_token&) { return SaveJobs::restore(files, reader, url); };
    const SaveJobs::Restored restored = co_await finishedJob(m_dependencies.executor, stop, std::move(job));
    tellRewritten(track.url(), restored.rewrite);
    saved.failure = restored.failure;
    if (!restored.isHeld || saved.failure)
        co_return saved;
    m_pictureWrites[track.id()] = ++m_pictureWrite;
    SavedRow row = std::exchange(saved.row, {track.id(), track.url()});
    row.restored = restored.tags;
    applyToRows({row});
    noteWritten(track.id(), restored.tags->tags);
    saved.isRestored = true;
    co_return saved;
}

void TagSaver::applyToRows(const QList<SavedRow>& saved)
{
    QList<SavedRow> changing;
    for (SavedRow each : saved) {
        each.losesArtwork = each.losesArtwork && holdsPicture(each.id, each.pictureMark); // else one came meanwhile
        if (each.changesRow())
            changing.append(each);
    }
    if (!changing.isEmpty())
        m_dependencies.workspace.setTracks(SavedRows::applied(m_dependencies.workspace.tracks(), changing));
}
