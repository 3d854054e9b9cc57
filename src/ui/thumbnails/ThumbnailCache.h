#pragma once

#include "async/Executor.h"
#include "async/TaskGroup.h"
#include "core/model/Track.h"
#include "ui/thumbnails/ArtworkThumbnailCache.h"

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSet>

#include <array>
#include <functional>
#include <vector>

/// Small square pictures of covers, cut from the reduced pictures of an ArtworkThumbnailCache. Decoding, scaling and
/// rounding happen on worker threads; equal covers are decoded once per step of size. What was asked for last is made
/// first, so that the rows in view come before those scrolled past. Thread: main.
class ThumbnailCache : public QObject {
    Q_OBJECT

public:
    /// Reads the picture of a file again; called on a worker thread. Null if there is none.
    using ReadArtwork = std::function<QByteArray(const QUrl& url)>;

    static constexpr qsizetype kLimit = 64 * 1024 * 1024; ///< bytes of pixels
    /// Pictures that are made at the same time.
    static constexpr int kJobs = 2;
    static constexpr size_t kMaximumWaiting = 512; ///< chosen: some screens of covers; older requests are dropped

    /// Longer sides of the reduced pictures, in pixels. Chosen: rows, the player and their 200 %; the grid's cells;
    /// their 200 %; and what a long picture needs beyond.
    static constexpr std::array kSteps{128, 256, 512, 1024};

    /// \param readArtwork called on workers for rows that keep no bytes; may be null.
    ThumbnailCache(async::Executor& executor, ReadArtwork readArtwork, QObject* parent = nullptr);
    ~ThumbnailCache() override;

    /// How a cover is shown; each format has thumbnails of its own.
    struct Format {
        int side = 0;     ///< device-independent pixels
        int radius = 0;   ///< of the corners, device-independent pixels
        double ratio = 1; ///< of the device
    };
    /// The cover, cut to a square; null while it is being made, if there is none, and if it cannot be read.
    QPixmap thumbnail(const Track& track, const Format& format);

Q_SIGNALS:
    /// A thumbnail that was asked for has arrived.
    void ready();

private:
    struct Request {
        QByteArray key;
        ArtworkData artwork;
        QUrl url;
        Format format;
    };
    struct Entry {
        QPixmap pixmap; // null: cannot be read
    };
    static std::optional<QByteArray> bytesOf(const Request& request, const ReadArtwork& readArtwork);
    void enqueue(Request request);
    void startWaiting();
    async::Task<> load(Request request, std::stop_token stop);
    void finish(const Request& request, const QImage& image);

    async::Executor& m_executor;
    ArtworkThumbnailCache m_reduced;
    ReadArtwork m_readArtwork;
    QCache<QByteArray, Entry> m_entries;
    std::vector<Request> m_waiting; // the last is the most urgent
    QSet<QByteArray> m_running;
    async::TaskGroup m_tasks; // last: stops the tasks before anything else goes
};
