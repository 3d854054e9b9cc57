#pragma once

#include "core/model/Track.h"
#include "work/WorkQueue.h"

#include <QList>
#include <QObject>
#include <QUrl>

class Envelopes;
class Selection;
class Workspace;
struct ListChange;

/// Waveforms that are made ahead of the eye, one file at a time and without disturbing what plays: during playback only
/// the present file and the next two are prepared. A file whose rows have gone is passed over when its turn comes, and
/// stopped when it is under way. Thread: main.
class Waveforms : public QObject, private WorkConcern<QUrl, bool> {
    Q_OBJECT

public:
    struct Dependencies {
        Workspace& workspace;
        Selection& selection;
        Scheduler& scheduler;
        async::Executor& executor;
        Envelopes& envelopes;
    };

    /// \param dependencies all live longer
    explicit Waveforms(const Dependencies& dependencies);

    /// Makes the waveform of one file ahead.
    void preloadWaveform(const QUrl& url) { preloadWaveforms({url}); }
    /// Makes the waveforms of files ahead, in this order, each once.
    void preloadWaveforms(const QList<QUrl>& urls);
    /// The player told its state. What is made for another file than the one that plays stops and goes to the front;
    /// once for each track that begins, it and the rows behind it are preferred.
    void playerTold(bool isPlaying, const QUrl& currentURL, const std::optional<TrackID>& currentTrackID);
    /// Prefers a track of the active section and the first two rows behind it. Nothing where it is not among the rows.
    void prioritizeWaveformsForPlayback(const TrackID& trackID);

    /// Files that wait, in order.
    const QList<QUrl>& waiting() const { return m_queue.waiting(); }

Q_SIGNALS:
    /// The envelope of a file is there now.
    void prepared(const QUrl& url);

private:
    bool hasRow(const QUrl& url) const;
    void listChanged(const ListChange& change);
    WorkJob<bool> begin(const QUrl& url, const Allowance& allowance) override;
    WorkEnd finished(const QUrl& url, std::optional<bool> isThere) override;
    void statesChanged(const QSet<QUrl>&) override {}

    Dependencies m_dependencies;
    std::optional<TrackID> m_playedID; ///< the track that was preferred last
    WorkQueue<QUrl, bool> m_queue;
};
