#include "core/library/session/SessionCoding.h"
#include "platform/json/JsonWriter.h"

namespace SessionCoding {

namespace {

constexpr qsizetype kBytesPerTrack = 480; // chosen: what a row with six tags takes
constexpr qsizetype kBytesBeside = 4096;

void writeTags(JsonWriter& json, const AudioTags& tags)
{
    json.open('{');
    for (const AudioTags::Field& field : AudioTags::fields()) {
        json.key(QLatin1StringView(field.name));
        json.string(tags.*field.value);
    }
    json.close('}');
}

void writeTrack(JsonWriter& json, const Track& track)
{
    json.open('{');
    json.key(QLatin1StringView("id"));
    json.uuid(track.id());
    json.key(QLatin1StringView("url"));
    json.url(track.url());
    json.key(QLatin1StringView("tags"));
    writeTags(json, track.tags());
    json.key(QLatin1StringView("isFavorite"));
    json.boolean(track.isFavorite());
    json.key(QLatin1StringView("isInPlaylist"));
    json.boolean(track.isInPlaylist());
    json.key(QLatin1StringView("isInCoverWorkspace"));
    json.boolean(track.isInCoverWorkspace());
    json.close('}');
}

template <typename Values, typename Write>
void writeArray(JsonWriter& json, QLatin1StringView key, const Values& values, Write write)
{
    json.key(key);
    json.open('[');
    for (const auto& value : values)
        write(value);
    json.close(']');
}

void writeTracks(JsonWriter& json, QLatin1StringView key, const QList<Track>& tracks)
{
    writeArray(json, key, tracks, [&](const Track& track) { writeTrack(json, track); });
}

void writeURLs(JsonWriter& json, QLatin1StringView key, const QList<QUrl>& urls)
{
    writeArray(json, key, urls, [&](const QUrl& url) { json.url(url); });
}

void writeID(JsonWriter& json, QLatin1StringView key, const std::optional<TrackID>& id)
{
    if (!id)
        return;
    json.key(key);
    json.uuid(*id);
}

/// A map by identity: an array in which keys and values alternate.
template <typename Value, typename Write>
void writeByID(JsonWriter& json, QLatin1StringView key, const QHash<TrackID, Value>& map, Write write)
{
    json.key(key);
    json.open('[');
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        json.uuid(entry.key());
        write(entry.value());
    }
    json.close(']');
}

void writeSelections(JsonWriter& json, const SessionRecord& record)
{
    if (record.tabSelectionIDs) {
        json.key(QLatin1StringView("tabSelectionIDs"));
        json.open('{');
        for (auto entry = record.tabSelectionIDs->cbegin(); entry != record.tabSelectionIDs->cend(); ++entry) {
            json.key(entry.key());
            json.open('[');
            for (const TrackID& id : entry.value())
                json.uuid(id);
            json.close(']');
        }
        json.close('}');
    }
    if (record.tabFocusedIDs) {
        json.key(QLatin1StringView("tabFocusedIDs"));
        json.open('{');
        for (auto entry = record.tabFocusedIDs->cbegin(); entry != record.tabFocusedIDs->cend(); ++entry) {
            json.key(entry.key());
            json.uuid(entry.value());
        }
        json.close('}');
    }
}

void writeKey(JsonWriter& json, const MusicalKey& key)
{
    json.key(QLatin1StringView("key"));
    json.open('{');
    json.key(QLatin1StringView("pitchClass"));
    json.number(qint64(key.pitchClass));
    json.key(QLatin1StringView("mode"));
    json.string(key.mode == MusicalKeyMode::Major ? QStringLiteral("major") : QStringLiteral("minor"));
    json.close('}');
}

void writeKeyAnalysis(JsonWriter& json, const MusicalKeyAnalysis& analysis)
{
    json.open('{');
    writeKey(json, analysis.key);
    json.key(QLatin1StringView("confidence"));
    json.number(analysis.confidence);
    json.key(QLatin1StringView("tuningCents"));
    json.number(analysis.tuningCents);
    writeArray(json, QLatin1StringView("alternatives"), analysis.alternatives,
               [&](const MusicalKeyAnalysis::Alternative& alternative) {
                   json.open('{');
                   writeKey(json, alternative.key);
                   json.key(QLatin1StringView("relativeStrength"));
                   json.number(alternative.relativeStrength);
                   json.close('}');
               });
    json.close('}');
}

void writeTempo(JsonWriter& json, const TempoTables& tempo)
{
    writeByID(json, QLatin1StringView("estimatedBPMByTrackID"), tempo.estimatedBPMByTrackID,
              [&](const QString& bpm) { json.string(bpm); });
    writeByID(json, QLatin1StringView("estimatedBPMConfidenceByTrackID"), tempo.estimatedBPMConfidenceByTrackID,
              [&](double confidence) { json.number(confidence); });
    json.key(QLatin1StringView("estimatedBPMByFile"));
    json.open('{');
    for (auto entry = tempo.estimatedBPMByFile.cbegin(); entry != tempo.estimatedBPMByFile.cend(); ++entry) {
        json.key(entry.key());
        json.open('{');
        json.key(QLatin1StringView("bpm"));
        json.string(entry->bpm);
        json.key(QLatin1StringView("confidence"));
        json.number(entry->confidence);
        json.key(QLatin1StringView("byteCount"));
        json.number(entry->byteCount);
        json.key(QLatin1StringView("modificationDate"));
        json.number(entry->modificationDate);
        json.close('}');
    }
    json.close('}');
}

} // namespace

QByteArray encode(const SessionRecord& record)
{
    const qsizetype rows = record.tracks.size() + record.analysisTracks.size() + record.keyAnalysisTracks.size() +
                           record.duplicateTracks.size();
    JsonWriter json(rows * kBytesPerTrack + kBytesBeside);
    json.open('{');
    writeTracks(json, QLatin1StringView("tracks"), record.tracks);
    writeID(json, QLatin1StringView("selectedID"), record.selectedID);
    writeArray(json, QLatin1StringView("selectedIDs"), record.selectedIDs, [&](const TrackID& id) { json.uuid(id); });
    json.key(QLatin1StringView("activeTab"));
    json.string(record.activeTab);
    writeSelections(json, record);
    writeID(json, QLatin1StringView("resumeTrackID"), record.resumeTrackID);
    writeURLs(json, QLatin1StringView("conversionURLs"), record.conversionURLs);
    writeTracks(json, QLatin1StringView("analysisTracks"), record.analysisTracks);
    writeTracks(json, QLatin1StringView("keyAnalysisTracks"), record.keyAnalysisTracks);
    writeByID(json, QLatin1StringView("musicalKeyAnalyses"), record.musicalKeyAnalyses,
              [&](const MusicalKeyAnalysis& analysis) { writeKeyAnalysis(json, analysis); });
    writeURLs(json, QLatin1StringView("duplicateRoots"), record.duplicateRoots);
    writeTracks(json, QLatin1StringView("duplicateTracks"), record.duplicateTracks);
    writeTempo(json, record.tempo);
    if (record.playlistScrollOffset) {
        json.key(QLatin1StringView("playlistScrollOffset"));
        json.number(*record.playlistScrollOffset);
    }
    json.close('}');
    return json.take();
}

} // namespace SessionCoding
