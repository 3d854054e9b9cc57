#pragma once

#include "async/Lane.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>

/// Reduced covers as JPEG bytes, in memory only. A serial worker: thumbnails are looked up and made on a lane of its
/// own, one at a time. What was looked up least recently goes first. Thread: main for the object.
class ArtworkThumbnailCache {
public:
    /// Gives the bytes of the picture; called on the lane, and only where the key is not held. Nothing if there are
    /// none.
    using SourceData = std::function<std::optional<QByteArray>()>;
    /// Makes a thumbnail; called on the lane. Nothing if the bytes are no picture.
    using Make = std::function<std::optional<QByteArray>(const QByteArray& bytes, int maximumPixelSize)>;

    /// Thumbnails at most, and bytes of all of them: the limit counts that is reached first.
    static constexpr int kMaximumEntryCount = 256;
    static constexpr qsizetype kMaximumTotalBytes = 24 * 1024 * 1024;

    /// \param executor outlives the cache.
    explicit ArtworkThumbnailCache(async::Executor& executor);
    /// \param make called on a worker, one picture at a time.
    ArtworkThumbnailCache(async::Executor& executor, Make make);
    ~ArtworkThumbnailCache();

    /// The thumbnail that is held under the key, or a new one: JPEG, upright, at most \p maximumPixelSize on its
    /// longer side, never larger than the picture. Nothing without source and for what is no picture; a failure is not
    /// remembered. \param key identifies picture and size.
    async::Task<std::optional<QByteArray>> thumbnailData(QByteArray key, SourceData sourceData, int maximumPixelSize,
                                                         std::stop_token stop);

private:
    class Entries;

    std::shared_ptr<Entries> m_entries; // touched by jobs of the lane alone
    async::Lane m_lane;
};
