#include "core/library/keys/KeyWriting.h"

#include "async/MainQueue.h"
#include "core/library/status/StatusLine.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"

namespace {

using Destination = Track::MetadataDestination;

constexpr Destination kAllLists[] = {Destination::Library, Destination::Analysis, Destination::MusicalKey,
                                     Destination::Duplicates};

} // namespace

/// A batch of keys on their way into the files.
struct KeyWriting::Round {
    KeyTagPlan::Codes codes;
    QHash<TrackID, QUrl> files; ///< by the row that is saved
    QHash<Destination, KeyTagPlan::Former> former;
    StepAnnouncement announcement = {};
    qsizetype leftAlone = 0;
};

KeyWriting::KeyWriting(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
    connect(&dependencies.saver.rows(), &RowSaver::fileTold, this,
            [this](const TrackID& id, const AudioTags& values, TagFields known) {
                for (const StepPtr& step : std::as_const(m_running)) {
                    if (known & TagField::MusicalKey)
                        step->fileTold(id, values.musicalKey);
                }
            });
}

void KeyWriting::write(const QHash<TrackID, MusicalKeyAnalysis>& analyses, const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const Workspace& workspace = m_dependencies.workspace;
    const KeyTagPlan::Plan plan = KeyTagPlan::make(workspace.keyAnalysisTracks(), workspace.tracks(), analyses, ids);
    if (plan.items.isEmpty()) {
        m_dependencies.status.showStatus(QStringLiteral("Нет результатов для записи"), StatusIcon::Info,
                                         WorkspaceStatus::Tone::Warning);
        return;
    }
    const auto step = std::make_shared<KeyStep>(*this, entriesOf(plan));
    m_running.append(step);
    m_dependencies.history.push(step);
    const std::shared_ptr<Round> round = put(plan);
    m_dependencies.saver.writeBatch(
        plan.items, [this, step, round](const TagSaver::Outcome& outcome) { written(step, *round, outcome); });
}

KeyStep::Entries KeyWriting::entriesOf(const KeyTagPlan::Plan& plan) const
{
    KeyStep::Entries entries;
    for (const TagSaver::Item& item : plan.items) {
        const QUrl& url = item.track.url();
        entries.insert(url, {item.track, presentKey(url).value_or(QString()), plan.codes.value(url)});
    }
    return entries;
}

/// What the rows of a file show; nothing where none of them has learned of it.
std::optional<QString> KeyWriting::presentKey(const QUrl& url) const
{
    for (const Destination list : kAllLists) {
        const TrackList& rows = m_dependencies.workspace.list(list);
        const std::optional<int> place = rows.indexOfURL(url);
        if (place && (list == Destination::Library || rows.at(*place).isRead()))
            return rows.at(*place).tags().musicalKey;
    }
    return std::nullopt;
}

/// Puts the codes into rows.
std::shared_ptr<KeyWriting::Round> KeyWriting::put(const KeyTagPlan::Plan& plan)
{
    Workspace& workspace = m_dependencies.workspace;
    const auto round = std::make_shared<Round>(Round{plan.codes, {}, {}});
    for (const TagSaver::Item& item : plan.items)
        round->files.insert(item.track.id(), item.track.url());
    const QSet<TrackID> changed = KeyTagPlan::differing(workspace.tracks(), plan.codes);
    for (const Destination list : kAllLists) {
        round->former.insert(list, KeyTagPlan::present(workspace.list(list), plan.codes));
        if (auto rows = KeyTagPlan::withCodes(workspace.list(list), plan.codes, list))
            workspace.setList(list, std::move(*rows));
    }
    if (!changed.isEmpty())
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), changed);
    return round;
}

/// A key that did not come to its file is no key in the tag.
void KeyWriting::takeBack(const Round& round, const QSet<TrackID>& notWritten)
{
    QSet<QUrl> files;
    QSet<TrackID> changed;
    Workspace& workspace = m_dependencies.workspace;
    for (const TrackID& id : notWritten) {
        files.insert(round.files.value(id));
        if (const std::optional<int> place = workspace.tracks().indexOfURL(round.files.value(id)))
            changed.insert(workspace.tracks().at(*place).id());
    }
    for (const Destination list : kAllLists) {
        if (auto rows = KeyTagPlan::takenBack(workspace.list(list), round.codes, round.former.value(list), files))
            workspace.setList(list, std::move(*rows));
    }
    if (!changed.isEmpty())
        emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QString(), changed);
    if (!notWritten.isEmpty())
        emit tookBack();
}

/// What is in no file, and what stood there before, is nothing to take back.
void KeyWriting::written(const StepPtr& step, const Round& round, const TagSaver::Outcome& outcome)
{
    m_running.removeOne(step);
    takeBack(round, outcome.notWritten);
    KeyStep::Entries entries = step->entries();
    erase_if(entries, [&](const auto& entry) {
        return entry.value().former == entry.value().code || outcome.notWritten.contains(entry.value().row.id());
    });
    step->setEntries(std::move(entries));
    showWritten(round.files.size() - outcome.notWritten.size(), outcome.notWritten.size());
    const bool isUndoWanted = step->end();
    if (step->isSpent()) {
        m_dependencies.history.withdraw(*step);
        m_dependencies.history.ended(*step);
    } else if (isUndoWanted) {
        move(step, Direction::Back);
    }
}

void KeyWriting::showWritten(qsizetype written, qsizetype skipped)
{
    const StatusIcon icon = StatusIcon::Key;
    if (skipped > 0)
        m_dependencies.status.showCounted(QStringLiteral("Тональность сохранена: %d · пропущено: %d"),
                                          {static_cast<int>(written), static_cast<int>(skipped)}, icon,
                                          WorkspaceStatus::Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Тональность сохранена: %d"), {static_cast<int>(written)},
                                          icon, WorkspaceStatus::Tone::Success);
}

/// Keys that somebody changed since stay.
void KeyWriting::move(const StepPtr& step, Direction direction)
{
    const Direction before = direction == Direction::Back ? Direction::Forth : Direction::Back;
    const StepAnnouncement announcement{step->name(), direction};
    announcement.showBegun(m_dependencies.status);
    KeyTagPlan::Plan plan;
    KeyStep::Entries entries = step->entries();
    const qsizetype all = entries.size();
    erase_if(entries, [&](const auto& entry) {
        const KeyStep::Entry& file = entry.value();
        return presentKey(entry.key()).value_or(file.key(before)) != file.key(before);
    });
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        plan.codes.insert(entry.key(), entry->key(direction));
        plan.items.append(KeyTagPlan::itemOf(entry->row, m_dependencies.workspace.tracks(), entry->key(direction)));
    }
    step->setEntries(std::move(entries));
    step->begin();
    const std::shared_ptr<Round> round = put(plan);
    round->announcement = announcement;
    round->leftAlone = all - plan.items.size();
    const auto ended = [this, step, round](const TagSaver::Outcome& outcome) { moved(step, *round, outcome); };
    if (plan.items.isEmpty())
        ended({});
    else
        m_dependencies.saver.writeBatch(plan.items, ended);
}

/// Files that a stop left stay in the step, and nothing else then; what failed would fail again.
void KeyWriting::moved(const StepPtr& step, const Round& round, const TagSaver::Outcome& outcome)
{
    takeBack(round, outcome.notWritten);
    QSet<QUrl> stopped;
    QSet<QUrl> failed;
    for (auto file = round.files.cbegin(); file != round.files.cend(); ++file) {
        if (outcome.stopped.contains(file.key()))
            stopped.insert(*file);
        else if (outcome.notWritten.contains(file.key()))
            failed.insert(*file);
    }
    KeyStep::Entries entries = step->entries();
    erase_if(entries, [&](const auto& entry) {
        return stopped.isEmpty() ? failed.contains(entry.key()) : !stopped.contains(entry.key());
    });
    step->setEntries(std::move(entries));
    step->end();
    round.announcement.showEnded(m_dependencies.status, round.leftAlone, outcome.notWritten.size());
    m_dependencies.history.ended(*step, stopped.isEmpty() ? History::Outcome::Done : History::Outcome::Nothing);
}
