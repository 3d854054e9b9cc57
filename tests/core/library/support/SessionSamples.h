#pragma once

#include "core/library/session/SessionRecord.h"
#include "core/model/LibraryTab.h"
#include "platform/FileURL.h"

#include <QDir>
#include <QFile>

/// Sessions for tests.
namespace SessionSamples {

inline Track row(const QString& path, bool favorite = false)
{
    AudioTags tags;
    tags.title = QStringLiteral("Имя \"%1\"").arg(path.size());
    tags.artist = QStringLiteral("A\\B\n\u0001 🎛");
    Track track = Track::restored(freshID(), FileURL::fromPath(path), tags);
    track.setIsInPlaylist(true);
    track.setIsFavorite(favorite);
    track.setIsInCoverWorkspace(favorite);
    return track;
}

/// A session of these rows and nothing else.
inline SessionRecord of(const QList<Track>& tracks)
{
    SessionRecord record;
    record.activeTab = rawValue(LibraryTab::Playlist);
    record.tracks = tracks;
    return record;
}

/// \param favorites rows from the first on that are favourites.
inline SessionRecord withRows(int count, int favorites = 0, const QString& folder = QStringLiteral("/music"))
{
    QList<Track> rows;
    for (int i = 0; i < count; ++i)
        rows.append(row(folder + QStringLiteral("/%1.mp3").arg(i), i < favorites));
    return of(rows);
}

/// Makes the files of a session's rows, empty.
inline void makeFiles(const QList<Track>& tracks)
{
    for (const Track& track : tracks) {
        QDir().mkpath(FileURL::folderPath(track.url()));
        QFile file(track.url().toLocalFile());
        if (!file.open(QIODevice::WriteOnly))
            qFatal("a file of the test cannot be made");
    }
}

} // namespace SessionSamples
