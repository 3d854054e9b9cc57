#include "core/library/tempo/Tempo.h"

#include "async/MainQueue.h"
#include "core/library/order/TrackSorter.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"

#include <cmath>

// What the user makes of the tempos that were found.

namespace {

using Tone = WorkspaceStatus::Tone;

// Chosen: wider than any music, so that no slip of a key makes nonsense.
constexpr int kLowestTempo = 20;
constexpr int kHighestTempo = 400;

} // namespace

/// A file whose row got an estimate.
struct Tempo::ChosenFile {
    TrackID id;
    QUrl url;
    QString text;
    double confidence = 0;
};

/// An estimate that was taken away and may come back.
struct Tempo::TakenEstimate {
    QString text;
    std::optional<double> confidence;
    QList<TempoEstimate::Alternative> alternatives;
};

void Tempo::writeTempo(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    TempoResults& results = m_dependencies.results;
    TagWriting::FieldTexts edit{TagField::Tempo, QStringLiteral("Записать темп"), {}, {}, {}, {}};
    TakenEstimates taken;
    for (const TrackID& id : ids) {
        const std::optional<QString> text = results.estimate(id);
        const std::optional<double> bpm = text ? TrackSorter::bpmNumber(*text) : std::nullopt;
        if (!bpm || !m_dependencies.workspace.tracks().contains(id))
            continue;
        edit.texts.insert(id, BPMWorkers::textOf(*bpm));
        taken.insert(id, {*text, results.confidence(id), results.alternatives(id)});
    }
    if (taken.isEmpty()) {
        m_dependencies.status.showStatus(QStringLiteral("Нет темпа для записи"), QStringLiteral("waveform.path.ecg"),
                                         Tone::Warning);
        return;
    }
    const auto step = std::make_shared<TakenEstimates>(taken);
    edit.undone = [this, step] { giveBack(*step); };
    edit.redone = [this, step] { giveUp(idsOf(*step)); };
    edit.ended = [this, step](const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack) {
        tempoWritten(*step, notWritten, putBack);
    };
    m_dependencies.tagWriting.saveTexts(edit);
    giveUp(idsOf(taken));
}

QSet<TrackID> Tempo::idsOf(const TakenEstimates& taken)
{
    return {taken.keyBegin(), taken.keyEnd()};
}

/// What did not come to its file is an estimate again.
void Tempo::tempoWritten(TakenEstimates& step, const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack)
{
    const qsizetype all = step.size();
    TakenEstimates back;
    for (const TrackID& id : notWritten) {
        const TakenEstimate taken = step.take(id);
        if (putBack.contains(id))
            back.insert(id, taken);
    }
    if (!back.isEmpty())
        giveBack(back);
    const auto written = static_cast<int>(step.size());
    const auto skipped = static_cast<int>(all - step.size());
    const QString icon = QStringLiteral("waveform.path.ecg");
    if (skipped > 0)
        m_dependencies.status.showCounted(QStringLiteral("Темп записан: %d · пропущено: %d"), {written, skipped}, icon,
                                          Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Темп записан: %d"), {written}, icon, Tone::Success);
}

/// Whoever types a tempo is believed; whoever takes one out wants to see what is heard.
void Tempo::tagsEdited(const QSet<TrackID>& ids)
{
    QSet<TrackID> told;
    QSet<TrackID> untold;
    for (const TrackID& id : ids) {
        if (m_dependencies.workspace.tracks().contains(id))
            (withoutTag(id) ? untold : told).insert(id);
    }
    if (!told.isEmpty())
        giveUp(told);
    detectBPM(untold);
}

/// The tag tells it from now on. What is known of the file stays, for the tag may go again.
void Tempo::giveUp(const QSet<TrackID>& ids)
{
    withdraw(ids);
    for (const TrackID& id : ids) {
        setEstimatedBPM(id, std::nullopt);
    }
    estimatesChosen();
}

void Tempo::giveBack(const TakenEstimates& taken)
{
    TempoResults& results = m_dependencies.results;
    QSet<TrackID> unrecorded;
    for (auto entry = taken.cbegin(); entry != taken.cend(); ++entry) {
        const Track* track = m_dependencies.workspace.tracks().find(entry.key());
        if (!track || results.hasEstimate(entry.key()))
            continue;
        const CachedBPMEstimate* known = results.ofFile(FileURL::standardizedPath(track->url()));
        if (!known || known->bpm != entry->text)
            unrecorded.insert(entry.key());
        setEstimatedBPM(entry.key(), entry->text);
        if (entry->confidence)
            results.setConfidence(entry.key(), *entry->confidence);
        results.setAlternatives(entry.key(), entry->alternatives);
    }
    withdraw(idsOf(taken));
    estimatesChosen();
    record(unrecorded);
}

void Tempo::scaleTempo(const QSet<TrackID>& ids, double factor)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QHash<TrackID, int> tempos;
    for (const TrackID& id : ids) {
        const Track* track = m_dependencies.workspace.tracks().find(id);
        const std::optional<double> shown =
            track ? TrackSorter::bpmValue(*track, m_dependencies.results.estimates()) : std::nullopt;
        const double scaled = std::round(shown.value_or(0) * factor);
        if (scaled >= kLowestTempo && scaled <= kHighestTempo)
            tempos.insert(id, static_cast<int>(scaled));
    }
    chooseTempos(tempos);
}

void Tempo::setTempo(const QSet<TrackID>& ids, int bpm)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QHash<TrackID, int> tempos;
    for (const TrackID& id : ids) {
        if (bpm >= kLowestTempo && bpm <= kHighestTempo && m_dependencies.workspace.tracks().contains(id))
            tempos.insert(id, bpm);
    }
    chooseTempos(tempos);
}

/// What the user says stands: an analysis of the row that waits or runs is given up.
void Tempo::chooseTempos(const QHash<TrackID, int>& tempos)
{
    if (tempos.isEmpty())
        return;
    const QSet<TrackID> ids(tempos.keyBegin(), tempos.keyEnd());
    withdraw(ids);
    for (auto entry = tempos.cbegin(); entry != tempos.cend(); ++entry) {
        setEstimatedBPM(entry.key(), QString::number(*entry));
        m_dependencies.results.setConfidence(entry.key(), 1);
    }
    estimatesChosen();
    record(ids);
}

/// Keeps the estimates of rows for their files too. What was chosen anew meanwhile has a task of its own.
void Tempo::record(const QSet<TrackID>& ids)
{
    QList<ChosenFile> files;
    for (const TrackID& id : ids) {
        const Track* track = m_dependencies.workspace.tracks().find(id);
        const std::optional<QString> text = m_dependencies.results.estimate(id);
        if (track && text)
            files.append({id, track->url(), *text, confidence(id).value_or(0)});
    }
    if (!files.isEmpty())
        m_recordTasks.add([this, files](std::stop_token stop) { return recordFiles(files, std::move(stop)); });
}

/// What is kept for a file; in the order of the files.
QList<std::optional<CachedBPMEstimate>> Tempo::recordsOf(const QList<ChosenFile>& files)
{
    QList<std::optional<CachedBPMEstimate>> records;
    for (const ChosenFile& file : files)
        records.append(CachedBPMEstimate::make(file.url, file.text, file.confidence));
    return records;
}

async::Task<> Tempo::recordFiles(QList<ChosenFile> files, std::stop_token stop)
{
    auto job = [files](const std::stop_token&) { return recordsOf(files); };
    const QList<std::optional<CachedBPMEstimate>> records =
        co_await m_dependencies.executor.run(async::Priority::Utility, stop, std::move(job));
    TempoResults& results = m_dependencies.results;
    for (qsizetype place = 0; place < files.size(); ++place) {
        const ChosenFile& file = files[place];
        if (records[place] && results.estimate(file.id) == file.text)
            results.setOfFile(FileURL::standardizedPath(file.url), *records[place]);
    }
    if (m_dependencies.scheduleWorkspaceSave)
        m_dependencies.scheduleWorkspaceSave();
}

void Tempo::dropBPMQueue()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_requestTask.cancel();
    m_requests = {};
    if (m_dependencies.forgetDeferredRequests)
        m_dependencies.forgetDeferredRequests();
    withdraw(QSet<TrackID>(m_queue.queued()));
    announceStates();
    scheduleBPMNotification();
}

void Tempo::withdraw(const QSet<TrackID>& ids)
{
    if (m_queue.isEmpty())
        return;
    m_queue.withdraw(ids);
    m_workers.forget(ids);
}

void Tempo::estimatesChosen()
{
    announceStates();
    scheduleBPMNotification();
    if (m_dependencies.scheduleWorkspaceSave)
        m_dependencies.scheduleWorkspaceSave();
}
