#include "core/library/tempo/TempoChoices.h"

#include "async/MainQueue.h"
#include "core/library/order/TrackSorter.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"

#include <cmath>

namespace {

using Tone = WorkspaceStatus::Tone;

// Chosen: wider than any music, so that no slip of a key makes nonsense.
constexpr int kLowestTempo = 20;
constexpr int kHighestTempo = 400;
constexpr qsizetype kSliceRows = 500; // chosen: a few milliseconds of the main thread

QSet<TrackID> idsOf(const auto& table)
{
    return {table.keyBegin(), table.keyEnd()};
}

} // namespace

/// A file whose row got an estimate.
struct TempoChoices::ChosenFile {
    TrackID id;
    QUrl url;
    QString text;
    double confidence = 0;
};

/// What is known of a row's tempo.
struct TempoChoices::Estimate {
    QString text;
    std::optional<double> confidence;
    QList<TempoEstimate::Alternative> alternatives;
};

/// A row as it was before the choice.
struct TempoChoices::Former {
    std::optional<Estimate> estimate;
    bool wasQueued = false;
    QString chosen; ///< the text that took its place
};

/// One step of the user's.
struct TempoChoices::Choice {
    QList<TrackID> ids;
    std::optional<int> bpm; ///< for all; else they are scaled
    double factor = 1;
    QHash<TrackID, Former> formers = {}; ///< of the rows that were changed
    bool isOver = false;                 ///< all its rows were gone through
};

TempoChoices::TempoChoices(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_recordTasks(1)
{
}

TempoChoices::~TempoChoices() = default;

void TempoChoices::scaleTempo(const QSet<TrackID>& ids, double factor)
{
    VELMORA_ASSERT_MAIN_THREAD();
    choose(std::make_shared<Choice>(Choice{{ids.cbegin(), ids.cend()}, {}, factor}));
}

void TempoChoices::setTempo(const QSet<TrackID>& ids, int bpm)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (bpm >= kLowestTempo && bpm <= kHighestTempo)
        choose(std::make_shared<Choice>(Choice{{ids.cbegin(), ids.cend()}, bpm}));
}

void TempoChoices::choose(const ChoicePtr& choice)
{
    choice->formers.reserve(choice->ids.size()); // one growth less in the middle of a slice
    run(choice, &TempoChoices::chooseSlice);
    const auto isSpent = [choice] { return choice->isOver && choice->formers.isEmpty(); };
    if (isSpent())
        return;
    m_dependencies.history.registerUndo(
        choice->bpm ? QStringLiteral("Задать темп") : QStringLiteral("Изменить темп"),
        [this, choice] { run(choice, &TempoChoices::takeBackSlice); },
        [this, choice] { run(choice, &TempoChoices::chooseAgainSlice); }, isSpent);
}

/// A few rows are done on return.
void TempoChoices::run(const ChoicePtr& choice, Slice slice)
{
    m_choices.append([this, choice, slice](std::stop_token stop) { return runSlices(choice, slice, std::move(stop)); });
}

async::Task<> TempoChoices::runSlices(ChoicePtr choice, Slice slice, std::stop_token stop)
{
    m_dependencies.tempo.setChoosing(true);
    for (qsizetype first = 0; first < choice->ids.size(); first += kSliceRows) {
        if (first > 0)
            co_await m_dependencies.clock.sleep({}, stop);
        (this->*slice)(*choice, choice->ids.sliced(first, std::min(kSliceRows, choice->ids.size() - first)));
    }
    choice->isOver = true;
    m_dependencies.tempo.setChoosing(false);
}

/// What the user says stands: an analysis of the row that waits or runs is given up.
void TempoChoices::chooseSlice(Choice& choice, const QList<TrackID>& ids)
{
    QHash<TrackID, QString> texts;
    for (const TrackID& id : ids) {
        const Track* track = m_dependencies.workspace.tracks().find(id);
        if (!track)
            continue;
        const std::optional<double> shown =
            choice.bpm ? *choice.bpm : TrackSorter::bpmValue(*track, m_dependencies.results.estimates());
        const double chosen = std::round(shown.value_or(0) * choice.factor);
        if (chosen < kLowestTempo || chosen > kHighestTempo)
            continue;
        texts.insert(id, QString::number(static_cast<int>(chosen)));
        choice.formers.insert(id, {estimate(id), false, texts.value(id)});
    }
    if (texts.isEmpty())
        return;
    for (const TrackID& id : m_dependencies.tempo.withdraw(idsOf(texts)))
        choice.formers[id].wasQueued = true;
    set(texts);
}

/// Rows whose tempo was chosen or found anew since keep it.
void TempoChoices::takeBackSlice(Choice& choice, const QList<TrackID>& ids)
{
    QSet<TrackID> known;
    QSet<TrackID> wanted;
    QSet<TrackID> wantedAgain;
    for (const TrackID& id : ids) {
        const auto former = choice.formers.constFind(id);
        const Track* track = former == choice.formers.cend() ? nullptr : m_dependencies.workspace.tracks().find(id);
        if (!track || m_dependencies.results.estimate(id) != former->chosen)
            continue;
        if (former->estimate) {
            put(id, *former->estimate);
            known.insert(id);
            if (former->wasQueued)
                wantedAgain.insert(id);
            continue;
        }
        m_dependencies.tempo.setEstimatedBPM(id, std::nullopt);
        m_dependencies.results.files().remove(FileURL::standardizedPath(track->url()));
        if (former->wasQueued)
            wanted.insert(id);
    }
    m_dependencies.tempo.estimatesChosen();
    m_dependencies.tempo.detectBPM(wanted);
    m_dependencies.tempo.detectAgain(wantedAgain);
    record(known);
}

void TempoChoices::chooseAgainSlice(Choice& choice, const QList<TrackID>& ids)
{
    QHash<TrackID, QString> texts;
    for (const TrackID& id : ids) {
        const auto former = choice.formers.constFind(id);
        if (former != choice.formers.cend() && m_dependencies.workspace.tracks().contains(id))
            texts.insert(id, former->chosen);
    }
    m_dependencies.tempo.withdraw(idsOf(texts));
    set(texts);
}

void TempoChoices::set(const QHash<TrackID, QString>& texts)
{
    for (auto entry = texts.cbegin(); entry != texts.cend(); ++entry) {
        m_dependencies.tempo.setEstimatedBPM(entry.key(), *entry);
        m_dependencies.results.setConfidence(entry.key(), 1);
    }
    m_dependencies.tempo.estimatesChosen();
    record(idsOf(texts));
}

std::optional<TempoChoices::Estimate> TempoChoices::estimate(const TrackID& id) const
{
    const TempoResults& results = m_dependencies.results;
    const std::optional<QString> text = results.estimate(id);
    return text ? std::optional(Estimate{*text, results.confidence(id), results.alternatives(id)}) : std::nullopt;
}

void TempoChoices::put(const TrackID& id, const Estimate& estimate)
{
    TempoResults& results = m_dependencies.results;
    m_dependencies.tempo.setEstimatedBPM(id, std::nullopt); // with what is known beside it
    m_dependencies.tempo.setEstimatedBPM(id, estimate.text);
    if (estimate.confidence)
        results.setConfidence(id, *estimate.confidence);
    results.setAlternatives(id, estimate.alternatives);
}

void TempoChoices::writeTempo(const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    TagWriting::FieldTexts edit{TagField::Tempo, QStringLiteral("Записать темп"), {}, {}, {}, {}};
    TakenEstimates taken;
    for (const TrackID& id : ids) {
        const std::optional<Estimate> known = estimate(id);
        const std::optional<double> bpm = known ? TrackSorter::bpmNumber(known->text) : std::nullopt;
        if (!bpm || !m_dependencies.workspace.tracks().contains(id))
            continue;
        edit.texts.insert(id, QString::number(std::llround(*bpm)));
        taken.insert(id, *known);
    }
    if (taken.isEmpty()) {
        m_dependencies.status.showStatus(QStringLiteral("Нет темпа для записи"), StatusIcon::Tempo, Tone::Warning);
        return;
    }
    const auto step = std::make_shared<TakenEstimates>(taken);
    edit.undone = [this, step] { giveBack(*step); };
    edit.redone = [this, step] { m_dependencies.tempo.giveUp(idsOf(*step)); };
    edit.ended = [this, step](const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack) {
        tempoWritten(*step, notWritten, putBack);
    };
    m_dependencies.tagWriting.saveTexts(edit);
    m_dependencies.tempo.giveUp(idsOf(taken));
}

/// What did not come to its file is an estimate again.
void TempoChoices::tempoWritten(TakenEstimates& step, const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack)
{
    const qsizetype all = step.size();
    TakenEstimates back;
    for (const TrackID& id : notWritten) {
        const Estimate taken = step.take(id);
        if (putBack.contains(id))
            back.insert(id, taken);
    }
    if (!back.isEmpty())
        giveBack(back);
    const auto written = static_cast<int>(step.size());
    const auto skipped = static_cast<int>(all - step.size());
    const StatusIcon icon = StatusIcon::Tempo;
    if (skipped > 0)
        m_dependencies.status.showCounted(QStringLiteral("Темп записан: %d · пропущено: %d"), {written, skipped}, icon,
                                          Tone::Warning);
    else
        m_dependencies.status.showCounted(QStringLiteral("Темп записан: %d"), {written}, icon, Tone::Success);
}

void TempoChoices::giveBack(const TakenEstimates& taken)
{
    const TempoResults& results = m_dependencies.results;
    QSet<TrackID> unrecorded;
    for (auto entry = taken.cbegin(); entry != taken.cend(); ++entry) {
        const Track* track = m_dependencies.workspace.tracks().find(entry.key());
        if (!track || results.hasEstimate(entry.key()))
            continue;
        const CachedBPMEstimate* known = results.files().find(FileURL::standardizedPath(track->url()));
        if (!known || known->bpm != entry->text)
            unrecorded.insert(entry.key());
        put(entry.key(), *entry);
    }
    m_dependencies.tempo.withdraw(idsOf(taken));
    m_dependencies.tempo.estimatesChosen();
    record(unrecorded);
}

/// Keeps the estimates of rows for their files too. What was chosen anew meanwhile has a task of its own.
void TempoChoices::record(const QSet<TrackID>& ids)
{
    QList<ChosenFile> files;
    for (const TrackID& id : ids) {
        const Track* track = m_dependencies.workspace.tracks().find(id);
        const std::optional<QString> text = m_dependencies.results.estimate(id);
        if (track && text)
            files.append({id, track->url(), *text, m_dependencies.results.confidence(id).value_or(0)});
    }
    if (!files.isEmpty())
        m_recordTasks.add([this, files](std::stop_token stop) { return recordFiles(files, std::move(stop)); });
}

/// What is kept for a file; in the order of the files.
QList<std::optional<CachedBPMEstimate>> TempoChoices::recordsOf(const QList<ChosenFile>& files)
{
    QList<std::optional<CachedBPMEstimate>> records;
    for (const ChosenFile& file : files)
        records.append(CachedBPMEstimate::make(file.url, file.text, file.confidence));
    return records;
}

async::Task<> TempoChoices::recordFiles(QList<ChosenFile> files, std::stop_token stop)
{
    auto job = [files](const std::stop_token&) { return recordsOf(files); };
    const QList<std::optional<CachedBPMEstimate>> records =
        co_await m_dependencies.executor.run(async::Priority::Utility, stop, std::move(job));
    TempoResults& results = m_dependencies.results;
    for (qsizetype place = 0; place < files.size(); ++place) {
        const ChosenFile& file = files[place];
        if (records[place] && results.estimate(file.id) == file.text)
            results.files().set(FileURL::standardizedPath(file.url), *records[place]);
    }
    emit m_dependencies.tempo.resultsChanged();
}
