#include "core/library/session/StoredAnalyses.h"

#include "platform/json/JsonMembers.h"

namespace StoredAnalyses {

using JsonMembers::forElements;
using JsonMembers::forMembers;
using JsonMembers::RequiredKeys;

namespace {

MusicalKey readKey(JsonReader& json)
{
    MusicalKey value;
    RequiredKeys required(2);
    forMembers(json, [&](QByteArrayView key) {
        if (key == "pitchClass") {
            const qint64 pitchClass = json.integer();
            if (pitchClass < 0 || pitchClass > 11)
                json.fail();
            value.pitchClass = static_cast<int>(pitchClass);
            required.met(0);
        } else if (key == "mode") {
            const QByteArrayView mode = json.stringBytes();
            value.mode = mode == "major" ? MusicalKeyMode::Major : MusicalKeyMode::Minor;
            if (mode != "major" && mode != "minor")
                json.fail();
            required.met(1);
        } else {
            json.skip();
        }
    });
    required.check(json);
    return value;
}

MusicalKeyAnalysis::Alternative readAlternative(JsonReader& json)
{
    MusicalKeyAnalysis::Alternative alternative;
    RequiredKeys required(2);
    forMembers(json, [&](QByteArrayView key) {
        if (key == "key") {
            alternative.key = readKey(json);
            required.met(0);
        } else if (key == "relativeStrength") {
            alternative.relativeStrength = json.number();
            required.met(1);
        } else {
            json.skip();
        }
    });
    required.check(json);
    return alternative;
}

} // namespace

MusicalKeyAnalysis readKeyAnalysis(JsonReader& json)
{
    MusicalKeyAnalysis analysis;
    RequiredKeys required(4);
    forMembers(json, [&](QByteArrayView key) {
        if (key == "key") {
            analysis.key = readKey(json);
            required.met(0);
        } else if (key == "confidence") {
            analysis.confidence = json.number();
            required.met(1);
        } else if (key == "tuningCents") {
            analysis.tuningCents = json.number();
            required.met(2);
        } else if (key == "alternatives") {
            analysis.alternatives.clear();
            forElements(json, [&] { analysis.alternatives.append(readAlternative(json)); });
            required.met(3);
        } else {
            json.skip();
        }
    });
    required.check(json);
    return analysis;
}

CachedBPMEstimate readEstimate(JsonReader& json)
{
    CachedBPMEstimate estimate;
    RequiredKeys required(4);
    forMembers(json, [&](QByteArrayView key) {
        if (key == "bpm") {
            estimate.bpm = json.string();
            required.met(0);
        } else if (key == "confidence") {
            estimate.confidence = json.number();
            required.met(1);
        } else if (key == "byteCount") {
            estimate.byteCount = json.integer();
            required.met(2);
        } else if (key == "modificationDate") {
            estimate.modificationDate = json.number();
            required.met(3);
        } else {
            json.skip();
        }
    });
    required.check(json);
    return estimate;
}

} // namespace StoredAnalyses
