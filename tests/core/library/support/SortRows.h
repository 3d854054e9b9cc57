#pragma once

#include "core/model/TrackPopularitySortValue.h"
#include "platform/FileURL.h"
#include "support/TagTexts.h"

#include <QStringList>

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
    Track track =
        TagTexts::on(Track(freshID(), FileURL::fromPath(path)),
                     {{&AudioTags::title, row.title}, {&AudioTags::genre, row.genre}, {&AudioTags::bpm, row.bpm}});
    track.setFormat(QString::fromUtf8(row.format));
    track.setIsInPlaylist(true);
    return track;
}

/// The titles in one text, e.g. "a b c".
inline std::string titles(const QList<Track>& tracks)
{
    QStringList result;
    for (const Track& track : tracks)
        result.append(track.displayTitle());
    return result.join(u' ').toStdString();
}

} // namespace SortRows
