#pragma once

#include "WaveformScrubber/WaveformCache.h"
#include "ui/waveform/WaveformPicture.h"

#include <QCache>
#include <QObject>
#include <QSet>

#include <vector>

/// The small waveforms of lists. Never computes an envelope: takes what memory holds, asks the disk for the rest in the
/// background, the row that was painted last first, and remembers what is not there until it arrives. Thread: main.
class RowWaveforms : public QObject {
    Q_OBJECT

public:
    static constexpr int kEntries = 192;       ///< chosen: some screens of rows
    static constexpr size_t kMaxWaiting = 128; ///< chosen: more rows than fit on a screen; older requests are dropped

    /// \param cache outlives it.
    explicit RowWaveforms(WaveformCache& cache, QObject* parent = nullptr);
    ~RowWaveforms() override;

    /// The file's waveform at a place; nothing where none is known, which is then asked for. \param split
    /// device-independent pixels from the left edge that are drawn as played.
    void paint(QPainter& painter, const QPoint& place, const QUrl& url, const WaveformPicture::Look& look,
               double split);
    /// The rows in view have changed to these: requests for others are dropped.
    void keepOnly(const QSet<QUrl>& urls);
    /// The envelope of a file has come into the cache.
    void arrived(const QUrl& url);
    /// Empties the cache, in memory and on disk.
    void emptyCache();
    /// Files whose envelope is still to be asked for.
    qsizetype waitingCount() const { return qsizetype(m_waiting.size()); }

Q_SIGNALS:
    /// The waveform of a file may look different from now on.
    void changed(const QUrl& url);
    /// All may.
    void reset();

private:
    struct Entry {
        Envelope::weak_type source; ///< what the cache gave, to see whether it gives another
        Envelope samples;           ///< reduced; null if there is no envelope
        WaveformPicture picture;
    };

    Entry* find(const QUrl& url);
    Entry* keep(const QUrl& url, const Envelope& envelope);
    void ask(const QUrl& url);
    void startWaiting();
    async::Task<> load(QUrl url, std::stop_token stop);
    async::Task<> emptyDisk(std::stop_token stop);

    WaveformCache& m_cache;
    QCache<QUrl, Entry> m_entries;
    std::vector<QUrl> m_waiting; ///< the last is the most urgent
    QSet<QUrl> m_outdated;       ///< arrived while the disk was asked for them
    QUrl m_running;
    async::TaskSlot m_emptying;
    async::TaskSlot m_load; // last: stops before anything else goes
};
