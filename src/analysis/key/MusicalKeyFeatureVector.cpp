#include "analysis/key/MusicalKeyFeatureVector.h"

#include <QJsonArray>

namespace {

using PitchClasses = std::array<double, 12>;
using Section = MusicalKeyFeatureVector::Section;

constexpr QLatin1StringView kSections("sections");
constexpr QLatin1StringView kChroma("chroma");
constexpr QLatin1StringView kBassChroma("bassChroma");
constexpr QLatin1StringView kTuningCents("tuningCents");
constexpr QLatin1StringView kTonalQuality("tonalQuality");

QJsonArray arrayOf(const PitchClasses& values)
{
    QJsonArray array;
    for (const double value : values)
        array.append(value);
    return array;
}

bool read(const QJsonValue& value, PitchClasses& result)
{
    const QJsonArray array = value.toArray();
    if (array.size() != qsizetype(result.size()))
        return false;
    for (qsizetype i = 0; i < array.size(); ++i) {
        if (!array.at(i).isDouble())
            return false;
        result[std::size_t(i)] = array.at(i).toDouble();
    }
    return true;
}

bool read(const QJsonValue& value, double& result)
{
    result = value.toDouble();
    return value.isDouble();
}

std::optional<Section> sectionFrom(const QJsonObject& object)
{
    Section section;
    const bool isWhole = read(object.value(kChroma), section.chroma) &&
                         read(object.value(kBassChroma), section.bassChroma) &&
                         read(object.value(kTuningCents), section.tuningCents) &&
                         read(object.value(kTonalQuality), section.tonalQuality);
    return isWhole ? std::optional(section) : std::nullopt;
}

} // namespace

QJsonObject MusicalKeyFeatureVector::toJson() const
{
    QJsonArray array;
    for (const Section& section : sections) {
        array.append(QJsonObject{{kChroma, arrayOf(section.chroma)},
                                 {kBassChroma, arrayOf(section.bassChroma)},
                                 {kTuningCents, section.tuningCents},
                                 {kTonalQuality, section.tonalQuality}});
    }
    return {{kSections, array}};
}

std::optional<MusicalKeyFeatureVector> MusicalKeyFeatureVector::fromJson(const QJsonObject& object)
{
    const QJsonValue array = object.value(kSections);
    if (!array.isArray())
        return std::nullopt;
    MusicalKeyFeatureVector features;
    for (const QJsonValue value : array.toArray()) {
        const std::optional<Section> section = sectionFrom(value.toObject());
        if (!section)
            return std::nullopt;
        features.sections.push_back(*section);
    }
    return features;
}
