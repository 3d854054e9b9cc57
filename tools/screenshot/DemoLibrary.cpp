#include "DemoLibrary.h"

#include "core/model/LoadedTrackMetadata.h"
#include "platform/FileURL.h"

#include <QBuffer>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>

namespace {

struct Row {
    QString title, artist, album, genre, bpm, key, format;
    double seconds;
    int hue; // of the cover, -1 for none
    bool isFavorite;
};

QList<Row> dozen()
{
    const auto s = [](const char* text) { return QString::fromUtf8(text); };
    return {
        {s("Мираж в песках"), s("Nadia Volk"), s("#WARM UP"), s("Afro House"), s("122"), s("8A"), s("FLAC"), 190, 40,
         true},
        {s("Night Bus (Extended Mix)"), s("Kollektor"), s("#PRIMETIME"), s("Tech House"), s(""), s("10B"), s("MP3"),
         257, 120, false},
        {s("Вечер на Петроградской"), s("Лев Орлов"), s("#PRIMETIME"), s("Indie Dance"), s("118"), s("5A"), s("MP3"),
         324, 330, true},
        {s("Salt & Chrome"), s("Ivory Static"), s("#WARM UP"), s("Melodic House & Techno"), s("124"), s("Fm"),
         s("FLAC"), 391, 45, false},
        {s("Дыши"), s("Анна Рай feat. Мята"), s("#PRIMETIME"), s("Pop"), s("104"), s("2B"), s("MP3"), 218, -1, false},
        {s("Paper Lanterns (VIP Mix)"), s("Juno Park"), s("#PRIMETIME"), s("Deep House"), s(""), s("9A"), s("MP3"), 285,
         165, true},
        {s("Low Sun"), s("Tamarind"), s("#WARM UP"), s("Afro Tech"), s("123"), s("11A"), s("FLAC"), 352, 250, false},
        {s("Красный поезд"), s("Северный Ветер"), s("#PRIMETIME"), s("House"), s("126"), s("7B"), s("MP3"), 419, 355,
         false},
        {s("Second Skin"), s("Marlo Vey"), s("#PRIMETIME"), s("Progressive House"), s("124"), s("1A"), s("MP3"), 186,
         20, false},
        {s("Glass Harbour (Club Edit)"), s("Ost & Rien"), s("#WARM UP"), s("Techno"), s(""), s("3A"), s("FLAC"), 253,
         80, false},
        {s("Лето не спит"), s("DJ Калина"), s("#PRIMETIME"), s("Disco"), s("116"), s("12B"), s("MP3"), 320, 150, true},
        {s("Untold"), s("Reza Kade"), s("#PRIMETIME"), s("Afro House"), s("120"), s("6A"), s("MP3"), 387, 215, false},
    };
}

ArtworkData cover(int hue)
{
    if (hue < 0)
        return {};
    constexpr int kSide = 600;
    QImage image(kSide, kSide, QImage::Format_RGB32);
    QLinearGradient gradient(0, hue % 2 == 0 ? kSide : 0, hue % 3 == 0 ? 0 : kSide, hue % 2 == 0 ? 0 : kSide);
    gradient.setColorAt(0, QColor::fromHsv(hue, 170, 190));
    gradient.setColorAt(1, QColor::fromHsv((hue + 80) % 360, 180, 120));
    QPainter painter(&image);
    painter.fillRect(image.rect(), gradient);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return ArtworkData::intern(bytes);
}

Track makeTrack(const Row& row, int place, const ArtworkData& picture, const QString& music)
{
    const QString folder = place < 8 ? QStringLiteral("Pool 2026-11") : QStringLiteral("Pool 2026-12");
    Track track = Track::unread(FileURL::fromPath(QStringLiteral("%1/%2/%3 %4.%5")
                                                      .arg(music, folder)
                                                      .arg(place, 5, 10, QChar(u'0'))
                                                      .arg(row.title, row.format.toLower())));
    LoadedTrackMetadata metadata;
    metadata.tags = {row.title, row.artist, row.album, {}, row.genre, QStringLiteral("2026"), {}, {}, row.bpm, row.key};
    metadata.duration = row.seconds;
    metadata.artworkData = picture;
    metadata.bitRate = row.format == QLatin1StringView("FLAC") ? 1'011'000 : 320'000;
    metadata.format = row.format;
    track.apply(metadata, track.url(), track.metadataVersion());
    track.setIsInPlaylist(true);
    track.setIsFavorite(row.isFavorite);
    track.setIsInCoverWorkspace(true);
    return track;
}

} // namespace

QList<Track> DemoLibrary::tracks(int repeats, const QString& music)
{
    const QList<Row> rows = dozen();
    QList<ArtworkData> covers;
    for (const Row& row : rows)
        covers.append(cover(row.hue));
    QList<Track> tracks;
    for (int place = 0; place < repeats * rows.size(); ++place)
        tracks.append(makeTrack(rows[place % rows.size()], place, covers[place % rows.size()], music));
    return tracks;
}
