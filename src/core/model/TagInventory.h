#pragma once

#include "core/model/TagField.h"

/// What the tags of a file hold that a row does not show: what a save may take away.
struct TagInventory {
    bool hasPicture = false;
    /// Frames, comments, items and chunks that are neither one of the ten fields nor a picture.
    int otherEntries = 0;
    /// The fields that no read supplies (TagFieldSet::kNeverRead), as the file has them; the others are empty.
    AudioTags unread;
    /// Fields that the file has and that a plain save never writes into this kind of file.
    TagFields unwritable;
    /// A part of the tags that a plain save takes away could not be read: what it holds is not among the above.
    bool isUnknown = false;

    bool operator==(const TagInventory&) const = default;

    /// Fields with a text in the file that a plain save of \p written takes away: those that it cannot write, and
    /// those of the unread ones that \p written leaves empty.
    TagFields lostFields(const AudioTags& written) const
    {
        return unwritable | (TagFieldSet::filled(unread) & ~TagFieldSet::filled(written));
    }
    /// Whether a plain save of \p written takes anything away, as far as is known; true where that is not known.
    /// \param replacesPicture whether the save writes a picture of its own
    bool losesAnything(const AudioTags& written, bool replacesPicture) const
    {
        return isUnknown || (hasPicture && !replacesPicture) || otherEntries > 0 || lostFields(written);
    }
};
