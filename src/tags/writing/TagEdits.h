#pragma once

#include "core/model/CleanerFields.h"

#include <QString>

#include <optional>

/// What cleaning does to one file: fields go, a title and an album come.
struct TagEdits {
    /// Which fields go; title and album are set only where theirs are among them.
    CleanerFields fields;
    std::optional<QString> title = {};
    std::optional<QString> album = {};

    /// The title that is to be set: one that is not empty, with its field chosen.
    std::optional<QString> newTitle() const { return chosen(title, CleanerField::Title); }
    /// The album in the same way.
    std::optional<QString> newAlbum() const { return chosen(album, CleanerField::Album); }
    /// Whether anything is set at all, and not only taken away.
    bool addsText() const { return newTitle() || newAlbum(); }
    /// The same removals with nothing set.
    TagEdits withoutTexts() const { return {fields}; }

private:
    std::optional<QString> chosen(const std::optional<QString>& text, CleanerField field) const
    {
        return fields.testFlag(field) && text && !text->isEmpty() ? text : std::nullopt;
    }
};
