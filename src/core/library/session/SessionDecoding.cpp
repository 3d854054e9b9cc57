#include "core/library/session/SessionCoding.h"
#include "core/library/session/StoredAnalyses.h"
#include "platform/FileURL.h"
#include "platform/json/JsonMembers.h"
#include "platform/json/StoredForms.h"
#include "platform/json/Utf8.h"

#include <array>

namespace SessionCoding {

namespace {

using Kind = JsonReader::Kind;

TrackID readID(JsonReader& json)
{
    const std::optional<QUuid> id = StoredForms::uuidFromText(json.stringBytes());
    if (!id)
        json.fail();
    return id.value_or(QUuid());
}

QUrl readURL(JsonReader& json)
{
    const std::optional<QUrl> url = StoredForms::urlFromText(json.stringBytes());
    if (!url)
        json.fail();
    return url.value_or(QUrl());
}

/// The standardized URL of a row's file.
QUrl readFileURL(JsonReader& json)
{
    const QByteArrayView text = json.stringBytes();
    if (const std::optional<QString> path = StoredForms::pathFromText(text))
        return FileURL::fromPath(*path);
    const std::optional<QUrl> url = StoredForms::urlFromText(text);
    if (!url)
        json.fail();
    return url ? FileURL::standardized(*url) : QUrl();
}

AudioTags readTags(JsonReader& json)
{
    AudioTags tags;
    const auto& fields = AudioTags::fields();
    JsonMembers::RequiredKeys required(static_cast<int>(fields.size()));
    size_t expected = 0; // they mostly come in their order
    JsonMembers::forMembers(json, [&](QByteArrayView key) {
        for (size_t i = 0; i < fields.size(); ++i) {
            const size_t place = (expected + i) % fields.size();
            if (key != QByteArrayView(fields[place].name))
                continue;
            tags.*fields[place].value = json.string();
            required.met(static_cast<int>(place));
            expected = place + 1;
            return;
        }
        json.skip();
    });
    required.check(json);
    return tags;
}

Track readTrack(JsonReader& json)
{
    TrackID id;
    QUrl url;
    AudioTags tags;
    std::array<bool, 3> memberships{};
    JsonMembers::RequiredKeys required(6);
    JsonMembers::forMembers(json, [&](QByteArrayView key) {
        static constexpr std::array<QByteArrayView, 6> kKeys{"id",         "url",          "tags",
                                                             "isFavorite", "isInPlaylist", "isInCoverWorkspace"};
        const int place = static_cast<int>(std::ranges::find(kKeys, key) - kKeys.begin());
        switch (place) {
        case 0:
            id = readID(json);
            break;
        case 1:
            url = readFileURL(json);
            break;
        case 2:
            tags = readTags(json);
            break;
        case 3:
        case 4:
        case 5:
            memberships[static_cast<size_t>(place - 3)] = json.boolean();
            break;
        default:
            json.skip();
            return;
        }
        required.met(place);
    });
    required.check(json);
    if (json.hasFailed())
        return Track();
    Track track = Track::restored(id, url, tags);
    track.setIsFavorite(memberships[0]);
    track.setIsInPlaylist(memberships[1]);
    track.setIsInCoverWorkspace(memberships[2] || memberships[0]);
    return track;
}

QList<Track> readTracks(JsonReader& json)
{
    QList<Track> tracks;
    JsonMembers::forElements(json, [&] { tracks.append(readTrack(json)); });
    return tracks;
}

QList<QUrl> readURLs(JsonReader& json)
{
    QList<QUrl> urls;
    JsonMembers::forElements(json, [&] { urls.append(readURL(json)); });
    return urls;
}

QSet<TrackID> readIDs(JsonReader& json)
{
    QSet<TrackID> ids;
    JsonMembers::forElements(json, [&] { ids.insert(readID(json)); });
    return ids;
}

/// A map by identity: an array in which keys and values alternate.
template <typename Value, typename Read>
QHash<TrackID, Value> readByID(JsonReader& json, Read read)
{
    QHash<TrackID, Value> map;
    std::optional<TrackID> id;
    JsonMembers::forElements(json, [&] {
        if (!id) {
            id = readID(json);
            return;
        }
        map.insert(*id, read(json));
        id.reset();
    });
    if (id) // a key without its value
        json.fail();
    return map;
}

template <typename Value, typename Read>
QHash<QString, Value> readByName(JsonReader& json, Read read)
{
    QHash<QString, Value> map;
    JsonMembers::forMembers(json, [&](QByteArrayView key) {
        const QString name = QString::fromUtf8(key);
        map.insert(name, read(json));
    });
    return map;
}

/// One member of the session's object.
struct Member {
    QByteArrayView key;
    bool isRequired;
    void (*read)(JsonReader& json, SessionRecord& record);
};

constexpr Member kMembers[] = {
    {"tracks", true, [](JsonReader& json, SessionRecord& record) { record.tracks = readTracks(json); }},
    {"selectedID", false, [](JsonReader& json, SessionRecord& record) { record.selectedID = readID(json); }},
    {"selectedIDs", true, [](JsonReader& json, SessionRecord& record) { record.selectedIDs = readIDs(json); }},
    {"activeTab", true, [](JsonReader& json, SessionRecord& record) { record.activeTab = json.string(); }},
    {"tabSelectionIDs", false,
     [](JsonReader& json, SessionRecord& record) {
         record.tabSelectionIDs = readByName<QSet<TrackID>>(json, readIDs);
     }},
    {"tabFocusedIDs", false,
     [](JsonReader& json, SessionRecord& record) { record.tabFocusedIDs = readByName<TrackID>(json, readID); }},
    {"resumeTrackID", false, [](JsonReader& json, SessionRecord& record) { record.resumeTrackID = readID(json); }},
    {"conversionURLs", true, [](JsonReader& json, SessionRecord& record) { record.conversionURLs = readURLs(json); }},
    {"analysisTracks", false,
     [](JsonReader& json, SessionRecord& record) { record.analysisTracks = readTracks(json); }},
    {"keyAnalysisTracks", false,
     [](JsonReader& json, SessionRecord& record) { record.keyAnalysisTracks = readTracks(json); }},
    {"musicalKeyAnalyses", false,
     [](JsonReader& json, SessionRecord& record) {
         record.musicalKeyAnalyses = readByID<MusicalKeyAnalysis>(json, StoredAnalyses::readKeyAnalysis);
     }},
    {"duplicateRoots", true, [](JsonReader& json, SessionRecord& record) { record.duplicateRoots = readURLs(json); }},
    {"duplicateTracks", true,
     [](JsonReader& json, SessionRecord& record) { record.duplicateTracks = readTracks(json); }},
    {"estimatedBPMByTrackID", false,
     [](JsonReader& json, SessionRecord& record) {
         record.tempo.estimatedBPMByTrackID = readByID<QString>(json, [](JsonReader& value) { return value.string(); });
     }},
    {"estimatedBPMConfidenceByTrackID", false,
     [](JsonReader& json, SessionRecord& record) {
         record.tempo.estimatedBPMConfidenceByTrackID =
             readByID<double>(json, [](JsonReader& value) { return value.number(); });
     }},
    {"estimatedBPMByFile", false,
     [](JsonReader& json, SessionRecord& record) {
         record.tempo.estimatedBPMByFile = readByName<CachedBPMEstimate>(json, StoredAnalyses::readEstimate);
     }},
    {"playlistScrollOffset", false,
     [](JsonReader& json, SessionRecord& record) { record.playlistScrollOffset = json.number(); }},
};

} // namespace

std::optional<SessionRecord> decode(QByteArrayView bytes)
{
    if (!Utf8::isValid(bytes))
        return std::nullopt;
    JsonReader json(bytes);
    SessionRecord record;
    std::array<bool, std::size(kMembers)> met{};
    JsonMembers::forMembers(json, [&](QByteArrayView key) {
        const auto* const member = std::ranges::find(kMembers, key, &Member::key);
        if (member == std::end(kMembers)) {
            json.skip();
            return;
        }
        if (!member->isRequired && json.takeNull())
            return;
        member->read(json, record);
        met[static_cast<size_t>(member - std::begin(kMembers))] = true;
    });
    for (size_t i = 0; i < met.size(); ++i) {
        if (kMembers[i].isRequired && !met[i])
            return std::nullopt;
    }
    return json.atEnd() ? std::optional(std::move(record)) : std::nullopt;
}

std::optional<Counts> counts(QByteArrayView bytes)
{
    if (!Utf8::isValid(bytes))
        return std::nullopt;
    JsonReader json(bytes);
    std::optional<Counts> result;
    bool hasOtherType = false;
    const auto countTrack = [&] {
        ++result->tracks;
        if (json.peek() != Kind::Object) {
            hasOtherType = true;
            json.skip();
            return;
        }
        bool isFavorite = false;
        JsonMembers::forMembers(json, [&](QByteArrayView key) {
            if (key == "isFavorite")
                isFavorite = json.peek() == Kind::True;
            json.skip();
        });
        result->favorites += isFavorite ? 1 : 0;
    };
    if (json.peek() != Kind::Object)
        return std::nullopt;
    JsonMembers::forMembers(json, [&](QByteArrayView key) {
        if (key != "tracks" || json.peek() != Kind::Array) {
            hasOtherType |= key == "tracks";
            json.skip();
            return;
        }
        result = Counts();
        JsonMembers::forElements(json, countTrack);
    });
    return json.atEnd() && !hasOtherType ? result : std::nullopt;
}

} // namespace SessionCoding
