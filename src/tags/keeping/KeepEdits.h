#pragma once

#include "core/model/TagField.h"

#include <QByteArray>

#include <optional>

/// Whether the new texts and the new picture are added here, or the old ones only go.
enum class News { Add, Leave };

/// What a keeping save does to one file.
struct KeepEdits {
    AudioTags tags;
    TagFields fields;
    /// The new cover; nothing leaves the pictures alone.
    std::optional<QByteArray> artwork = {};

    /// The texts that come: those of the chosen fields.
    AudioTags newTags() const { return TagFieldSet::merged({}, tags, fields); }
    /// Whether a picture that stood in the file goes. \param type by the list of ID3v2, 0 for none of them, 3 for the
    /// front cover.
    bool replacesPicture(quint32 type) const { return artwork && (type == 0 || type == 3); }
};
