#pragma once

#include <QString>

#include <array>

class QJsonObject;

#include <optional>

/// The editable tags of one audio file. An empty string means that the tag is not set.
struct AudioTags {
    QString title;
    QString artist;
    QString album;
    QString albumArtist;
    QString genre;
    /// Year and track are texts, e.g. "2021-05-03" and "3/12".
    QString year;
    QString track;
    /// May have several lines.
    QString comment;
    QString bpm; ///< tempo as text; a comma or a point may be the decimal mark
    QString musicalKey;

    bool operator==(const AudioTags&) const = default;

    /// One tag under its serial name.
    struct Field {
        const char* name; ///< key of the serial form
        QString AudioTags::*value;
    };
    /// The ten fields in their fixed order, under the names of the serial form.
    static const std::array<Field, 10>& fields();

    /// Keyed form with exactly the ten field names.
    QJsonObject toJson() const;
    /// Reads the keyed form; nothing if one of the ten keys is missing or is no string. Further keys are ignored.
    static std::optional<AudioTags> fromJson(const QJsonObject& object);
};
