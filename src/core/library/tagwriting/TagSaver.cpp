#include "core/library/tagwriting/TagSaver.h"

#include "async/MainQueue.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Preferences.h"

#include <limits>

namespace {
constexpr int kRowsPerUpdate = 8; // files of a batch between two updates of the list
}

struct TagSaver::Batch {
    QList<Item> items;
    bool restores = false;
    qsizetype next = 0;
    bool isCancelled = false;
    std::optional<TagFileError> firstFailure = {};
    QList<SavedRow> rows = {}; ///< not yet in the list
    QSet<TrackID> restored = {};
    QList<TrackID> failed = {}; ///< rows, one for each file
    std::function<void(const Batch&)> ended = {};
};

TagSaver::TagSaver(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_coordinator(dependencies.locks, dependencies.executor, dependencies.files)
    , m_writes(std::numeric_limits<int>::max()) // the workers bound what runs at once
{
    connect(&dependencies.preferences, &Preferences::changed, this, &TagSaver::preferenceChanged);
}

TagSaver::~TagSaver() = default;

void TagSaver::noteEdits(const TrackID& id, TagFields edited)
{
    if (m_dependencies.workspace.tracks().find(id))
        m_edits[id] |= edited;
}

void TagSaver::forgetEdits(const TrackID& id, TagFields fields)
{
    if (const auto edits = m_edits.find(id); edits != m_edits.end())
        *edits &= ~fields;
}

void TagSaver::write(const TrackID& id, TagFields edited)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const Track* track = m_dependencies.workspace.tracks().find(id);
    if (!track)
        return;
    noteEdits(id, edited);
    const Item item{*track, edited};
    m_writes.add([this, item](std::stop_token stop) { return writeOne(item, std::move(stop)); });
}

async::Task<> TagSaver::writeOne(Item item, std::stop_token stop)
{
    const Saved saved = co_await save(item, std::nullopt, stop);
    applyToRows({saved.row});
    if (saved.failure)
        m_dependencies.report(*saved.failure);
}

void TagSaver::writeBatch(const QList<Item>& items, std::function<void(int written)> ended)
{
    const auto batch = std::make_shared<Batch>(Batch{items});
    if (ended)
        batch->ended = [ended](const Batch& b) { ended(static_cast<int>(b.next - b.failed.size())); };
    startWrites(batch);
}

void TagSaver::writeBatchNaming(const QList<Item>& items, std::function<void(const QSet<TrackID>& notWritten)> ended)
{
    const auto batch = std::make_shared<Batch>(Batch{items});
    if (ended)
        batch->ended = [ended](const Batch& b) {
            QSet<TrackID> notWritten(b.failed.cbegin(), b.failed.cend());
            for (const Item& item : b.items.sliced(b.next))
                notWritten.insert(item.track.id());
            ended(notWritten);
        };
    startWrites(batch);
}

void TagSaver::startWrites(std::shared_ptr<Batch> batch)
{
    VELMORA_ASSERT_MAIN_THREAD();
    for (const Item& item : std::as_const(batch->items))
        noteEdits(item.track.id(), item.edited);
    startBatch(std::move(batch));
}

void TagSaver::restoreBatch(const QList<Track>& tracks)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QList<Item> items;
    for (const Track& track : tracks)
        items.append({track, {}});
    startBatch(std::make_shared<Batch>(Batch{items, true}));
}

void TagSaver::startBatch(std::shared_ptr<Batch> batch)
{
    if (batch->items.isEmpty())
        return;
    m_batches.append(batch);
    setProgress(m_progress.done, m_progress.total + static_cast<int>(batch->items.size()));
    m_writes.add([this, batch](std::stop_token stop) { return runBatch(batch, std::move(stop)); });
}

async::Task<> TagSaver::runBatch(std::shared_ptr<Batch> batch, std::stop_token stop)
{
    while (batch->next < batch->items.size() && !batch->isCancelled) {
        const Item item = batch->items.at(batch->next++);
        Saved saved;
        if (batch->restores)
            saved = co_await restoreOne(item.track, stop);
        else
            saved = co_await save(item, std::nullopt, stop);
        note(*batch, saved);
        setProgress(m_progress.done + 1, m_progress.total);
    }
    m_batches.removeOne(batch);
    applyToRows(batch->rows);
    finishBatch(*batch);
}

void TagSaver::note(Batch& batch, const Saved& saved)
{
    if (saved.row.changesRow())
        batch.rows.append(saved.row);
    if (saved.failure && !batch.firstFailure)
        batch.firstFailure = saved.failure;
    if (saved.failure)
        batch.failed.append(saved.row.id);
    if (saved.isRestored)
        batch.restored.insert(saved.row.id);
    if (batch.rows.size() >= kRowsPerUpdate)
        applyToRows(std::exchange(batch.rows, {}));
}

void TagSaver::finishBatch(const Batch& batch)
{
    const auto notDone = static_cast<int>(batch.items.size() - batch.next);
    if (m_batches.isEmpty())
        setProgress(0, 0);
    else
        setProgress(m_progress.done, m_progress.total - notDone);
    if (!batch.restored.isEmpty())
        emit restored(batch.restored);
    if (batch.ended)
        batch.ended(batch);
    if (batch.isCancelled)
        emit stopped(notDone);
    else if (batch.firstFailure)
        m_dependencies.report(*batch.firstFailure);
}

void TagSaver::cancelBatches()
{
    for (const std::shared_ptr<Batch>& batch : std::as_const(m_batches))
        batch->isCancelled = true;
}

void TagSaver::setProgress(int done, int total)
{
    m_progress = {done, total};
    emit progressChanged();
}

bool TagSaver::holdsOriginal(const QUrl& url) const
{
    return m_dependencies.files.holdsOriginal(url);
}

void TagSaver::answerWhatSavesKeep(bool keepsOthers)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_dependencies.workspace.setAskingWhatSavesKeep(false); // first: setting the preference comes back here
    m_dependencies.preferences.keepsOtherTagEntriesAsked.set(true);
    m_dependencies.preferences.keepsOtherTagEntries.set(keepsOthers);
    if (m_answer)
        m_answer->resolve(keepsOthers);
    m_answer.reset();
}

/// Whoever sets the preference has answered as well.
void TagSaver::preferenceChanged(const QString& key)
{
    const Preferences& preferences = m_dependencies.preferences;
    if (key == preferences.keepsOtherTagEntries.key() && m_dependencies.workspace.isAskingWhatSavesKeep())
        answerWhatSavesKeep(preferences.keepsOtherTagEntries.get());
}
