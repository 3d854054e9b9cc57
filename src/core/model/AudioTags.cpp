#include "core/model/AudioTags.h"

#include <QJsonObject>

const std::array<AudioTags::Field, 10>& AudioTags::fields()
{
    static constexpr std::array<Field, 10> kFields{{
        {"title", &AudioTags::title},
        {"artist", &AudioTags::artist},
        {"album", &AudioTags::album},
        {"albumArtist", &AudioTags::albumArtist},
        {"genre", &AudioTags::genre},
        {"year", &AudioTags::year},
        {"track", &AudioTags::track},
        {"comment", &AudioTags::comment},
        {"bpm", &AudioTags::bpm},
        {"musicalKey", &AudioTags::musicalKey},
    }};
    return kFields;
}

QJsonObject AudioTags::toJson() const
{
    QJsonObject object;
    for (const Field& field : fields())
        object.insert(QLatin1StringView(field.name), this->*field.value);
    return object;
}

std::optional<AudioTags> AudioTags::fromJson(const QJsonObject& object)
{
    AudioTags tags;
    for (const Field& field : fields()) {
        const QJsonValue value = object.value(QLatin1StringView(field.name));
        if (!value.isString())
            return std::nullopt;
        tags.*field.value = value.toString();
    }
    return tags;
}
