#pragma once

#include "core/model/TrackPopularitySortValue.h"
#include "platform/FileURL.h"

#include <QStringList>

#include <functional>

#include <optional>

/// Rows for tests of orders, told by what matters to them.
struct SortRow {
    const char* title = "";
    const char* genre = "";
    const char* format = "";
    const char* bpm = "";
    std::optional<TrackPopularitySortValue> popularity = {};
};

namespace SortRows {

inline Track track(const SortRow& row, const QString& path = QStringLiteral("/m/x.mp3"))
{
    Track track(freshID(), FileURL::fromPath(path));
    AudioTags tags;
    tags.title = QString::fromUtf8(row.title);
    tags.genre = QString::fromUtf8(row.genre);
    tags.bpm = QString::fromUtf8(row.bpm);
    track.replaceTags(tags);
    track.setFormat(QString::fromUtf8(row.format));
    track.setIsInPlaylist(true);
    return track;
}

inline Track retagged(Track track, const std::function<void(AudioTags&)>& change)
{
    AudioTags tags = track.tags();
    change(tags);
    track.replaceTags(tags);
    return track;
}

/// The titles in one text, e.g. "a b c".
inline QString titles(const QList<Track>& tracks)
{
    QStringList result;
    for (const Track& track : tracks)
        result.append(track.displayTitle());
    return result.join(u' ');
}

} // namespace SortRows
