#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The meanings that all tag formats share. Type is the genre, Description the comment.
enum class CommonKey { Title, Artist, AlbumName, Type, Description, Artwork };

/// One field of one tag of a file. A field holds a string or bytes; several values of one field are joined in the
/// string or are items of their own, as the format has it.
struct MetadataItem {
    QString identifier;                 ///< format and name, e.g. "id3/TIT2" or "vorbis/INITIALKEY"
    QString key;                        ///< the name alone
    std::optional<CommonKey> commonKey; ///< nothing for what only its own format knows
    std::optional<QString> stringValue; ///< as the file holds it, untrimmed
    std::optional<QByteArray> dataValue;
    std::optional<QString> extraDescription; ///< what a user-defined field or a comment calls itself
};
