#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/TaskGroup.h"
#include "async/TaskQueue.h"
#include "core/library/results/TempoResults.h"

#include <QSet>

#include <memory>

class History;
class StatusLine;
class TagWriting;
class Tempo;
class Workspace;

/// What the user makes of the tempos that were found: another estimate, or the file's tag. Each is one step of undo,
/// and many rows are gone through in slices, in the order of the steps. Thread: main.
class TempoChoices {
public:
    struct Dependencies {
        Workspace& workspace;
        Tempo& tempo;
        TempoResults& results;
        StatusLine& status;
        TagWriting& tagWriting;
        History& history;
        async::Clock& clock;
        async::Executor& executor;
    };

    /// \param dependencies all live longer
    explicit TempoChoices(const Dependencies& dependencies);
    ~TempoChoices();
    TempoChoices(const TempoChoices&) = delete;
    TempoChoices& operator=(const TempoChoices&) = delete;

    /// Writes the estimates as whole numbers into the tags; a row whose write begins loses its estimate, for the tag is
    /// believed. Those whose file could not be written get it back. Says at the end how many were written, or at once
    /// that there is none.
    void writeTempo(const QSet<TrackID>& ids);
    /// Makes what is shown (the estimate, else the number in the tag) times a factor the estimate, as a whole number.
    /// Rows that would get less than 20 or more than 400 keep what they have.
    void scaleTempo(const QSet<TrackID>& ids, double factor);
    /// Makes a tempo from 20 to 400 the estimate of rows, with full confidence.
    void setTempo(const QSet<TrackID>& ids, int bpm);

private:
    struct Choice;
    struct ChosenFile;
    struct Estimate;
    struct Former;
    using ChoicePtr = std::shared_ptr<Choice>;
    using TakenEstimates = QHash<TrackID, Estimate>;
    using Slice = void (TempoChoices::*)(Choice&, const QList<TrackID>&);

    void choose(const ChoicePtr& choice);
    void run(const ChoicePtr& choice, Slice slice);
    async::Task<> runSlices(ChoicePtr choice, Slice slice, std::stop_token stop);
    /// What is done to one slice of rows: the choice, its undo, and the choice again.
    void chooseSlice(Choice& choice, const QList<TrackID>& ids);
    void takeBackSlice(Choice& choice, const QList<TrackID>& ids);
    void chooseAgainSlice(Choice& choice, const QList<TrackID>& ids);
    void set(const QHash<TrackID, QString>& texts);
    std::optional<Estimate> estimate(const TrackID& id) const;
    void put(const TrackID& id, const Estimate& estimate);

    void tempoWritten(TakenEstimates& step, const QSet<TrackID>& notWritten, const QSet<TrackID>& putBack);
    void giveBack(const TakenEstimates& taken);
    /// Keeps the estimates of these rows for their files too, which are looked at on a worker.
    void record(const QSet<TrackID>& ids);
    static QList<std::optional<CachedBPMEstimate>> recordsOf(const QList<ChosenFile>& files);
    async::Task<> recordFiles(QList<ChosenFile> files, std::stop_token stop);

    Dependencies m_dependencies;
    async::TaskGroup m_recordTasks;
    async::TaskQueue m_choices;
};
