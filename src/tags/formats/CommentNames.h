#pragma once

#include "tags/fields/MetadataItem.h"

#include <QString>

#include <optional>

/// The field names that APEv2 and Vorbis comments share, in capital letters.
namespace CommentNames {

/// The shared meaning of a name, in any case of letters; nothing if it has none. Other names of the same thing
/// ("DESCRIPTION") are a matter of each format.
inline std::optional<CommonKey> commonKey(const QString& name)
{
    struct Entry {
        QLatin1StringView name;
        CommonKey commonKey;
    };
    static constexpr Entry kEntries[] = {{QLatin1StringView("TITLE"), CommonKey::Title},
                                         {QLatin1StringView("ARTIST"), CommonKey::Artist},
                                         {QLatin1StringView("ALBUM"), CommonKey::AlbumName},
                                         {QLatin1StringView("GENRE"), CommonKey::Type},
                                         {QLatin1StringView("COMMENT"), CommonKey::Description}};
    for (const Entry& entry : kEntries) {
        if (name.compare(entry.name, Qt::CaseInsensitive) == 0)
            return entry.commonKey;
    }
    return std::nullopt;
}

} // namespace CommentNames
