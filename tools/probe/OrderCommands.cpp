#include "Commands.h"
#include "Output.h"

#include "core/library/order/FavoritesOrder.h"
#include "platform/FileURL.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <functional>

namespace {

/// One line of input.
struct Request {
    QList<Track> tracks;
    QHash<TrackID, QString> names; ///< ids as they were given
    EstimatedBPMByTrackID estimatedBPM;
    TrackPopularitySortValues popularity;
    QJsonObject options;
};

AudioTags tagsFrom(const QJsonObject& object)
{
    AudioTags tags;
    for (const AudioTags::Field& field : AudioTags::fields())
        tags.*field.value = object.value(QLatin1StringView(field.name)).toString();
    return tags;
}

std::optional<int> optionalNumber(const QJsonValue& value)
{
    return value.isDouble() ? std::optional(value.toInt()) : std::nullopt;
}

TrackPopularitySortValue popularityFrom(const QJsonObject& object)
{
    return {object.value(QLatin1StringView("tier")).toInt(), object.value(QLatin1StringView("isDirectSignal")).toBool(),
            optionalNumber(object.value(QLatin1StringView("bestChartRank"))),
            optionalNumber(object.value(QLatin1StringView("poolTier")))};
}

/// Ids may be any texts: each stands for an id of the program whose text has the same place among all.
QHash<QString, TrackID> idsByName(const QJsonArray& tracks)
{
    QStringList names;
    for (const QJsonValue& track : tracks)
        names.append(track.toObject().value(QLatin1StringView("id")).toString());
    std::ranges::sort(names);
    QHash<QString, TrackID> ids;
    for (qsizetype place = 0; place < names.size(); ++place)
        ids.insert(names[place], TrackID(uint(place) + 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    return ids;
}

std::optional<Request> requestFrom(const QByteArray& line)
{
    const QJsonDocument document = QJsonDocument::fromJson(line);
    if (!document.isObject())
        return std::nullopt;
    Request request{{}, {}, {}, {}, document.object()};
    const QJsonArray given = request.options.value(QLatin1StringView("tracks")).toArray();
    const QHash<QString, TrackID> ids = idsByName(given);
    for (const QJsonValue& value : given) {
        const QJsonObject object = value.toObject();
        const QString name = object.value(QLatin1StringView("id")).toString();
        const TrackID id = ids.value(name);
        const QString path = object.value(QLatin1StringView("path")).toString();
        Track track(id, FileURL::standardized(FileURL::fromPath(path.startsWith(u'/') ? path : u'/' + path)));
        track.replaceTags(tagsFrom(object.value(QLatin1StringView("tags")).toObject()));
        track.setIsInPlaylist(true);
        if (object.contains(QLatin1StringView("format")))
            track.setFormat(object.value(QLatin1StringView("format")).toString());
        if (const QJsonValue tempo = object.value(QLatin1StringView("estimatedBPM"));
            tempo.isString() || tempo.isDouble())
            request.estimatedBPM.insert(id, tempo.toVariant().toString());
        if (const QJsonValue rating = object.value(QLatin1StringView("popularity")); rating.isObject())
            request.popularity.insert(id, popularityFrom(rating.toObject()));
        request.names.insert(id, name);
        request.tracks.append(track);
    }
    return request;
}

/// The rows of a playlist of these tracks.
QList<Track> playlistOrder(const Request& request, const FolderSorts::Key& key)
{
    TrackList list;
    list.assign(request.tracks);
    PlaylistBase base;
    base.rebuild(list);
    if (key.field == TrackSortField::Original)
        return base.rows().rows();
    FolderSorts sorts;
    return sorts.update(base.rows().rows(), base.sections(), key, {request.estimatedBPM, request.popularity});
}

std::optional<QList<Track>> sortedTracks(const Request& request)
{
    const auto field = trackSortFieldFromRawValue(request.options.value(QLatin1StringView("field")).toString());
    const auto direction =
        trackSortDirectionFromRawValue(request.options.value(QLatin1StringView("direction")).toString());
    if (!field || !direction)
        return std::nullopt;
    if (request.options.value(QLatin1StringView("folders")).toBool())
        return playlistOrder(request, {*field, *direction});
    return TrackSorter::sorted(request.tracks, *field, *direction, request.estimatedBPM, request.popularity);
}

ExitStatus answerLines(const QStringList& arguments,
                       const std::function<std::optional<QList<Track>>(const Request&)>& order)
{
    QFile input;
    if (!arguments.isEmpty() || !input.open(stdin, QIODevice::ReadOnly))
        return ExitStatus::Usage;
    ExitStatus status = ExitStatus::Success;
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        const std::optional<Request> request = requestFrom(line);
        const std::optional<QList<Track>> tracks = request ? order(*request) : std::nullopt;
        if (!tracks) {
            status = Output::noRequest();
            continue;
        }
        QJsonArray ids;
        for (const Track& track : *tracks)
            ids.append(request->names.value(track.id()));
        Output::line({{QStringLiteral("ids"), ids}});
    }
    return status;
}

} // namespace

ExitStatus Commands::sort(const QStringList& arguments)
{
    return answerLines(arguments, &sortedTracks);
}

ExitStatus Commands::favoritesOrder(const QStringList& arguments)
{
    return answerLines(arguments,
                       [](const Request& request) { return std::optional(FavoritesOrder::byGenre(request.tracks)); });
}
