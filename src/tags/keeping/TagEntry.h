#pragma once

#include "core/model/TagField.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// What one frame, item, comment or chunk of a file's tags stands for.
struct TagEntry {
    enum class Kind {
        Field,       ///< one of the ten tags
        Picture,     ///< a picture, or what belongs to one
        EncoderMark, ///< what made the file
        Other
    };

    Kind kind = Kind::Other;
    /// Of Kind::Field.
    TagField field = TagField::Title;
    /// Whether a read of the file takes it for the field; never so for TagFieldSet::kNeverRead.
    bool isRead = false;
    /// As a read decodes it.
    QString text;

    /// Whether it stands for one of these fields.
    bool isField(TagFields fields) const { return kind == Kind::Field && fields.testFlag(field); }
};

/// Tells entries by the names of the formats and by what the reader makes of each alone. Pure.
namespace TagEntries {

/// \param id three or four letters. \param content unpacked; empty where it cannot be read.
TagEntry ofId3Frame(const QByteArray& id, QByteArrayView content, int majorVersion);
/// \param item the whole item of an APEv2 tag: size, flags, key, value.
TagEntry ofApeItem(QByteArrayView item);
/// \param comment "KEY=value" of a Vorbis comment block.
TagEntry ofComment(QByteArrayView comment);
/// A chunk of a LIST of INFO. \param chunk with its header.
TagEntry ofInfoChunk(QByteArrayView chunk);
/// A chunk of an AIFF file by its id; its text is not looked at.
TagEntry ofAiffChunk(QByteArrayView id);
/// \param item a whole atom of the list of items.
TagEntry ofMp4Item(QByteArrayView item);
/// An atom beside that list, in which QuickTime and 3GPP files keep texts.
TagEntry ofMp4UserText(QByteArrayView type);

} // namespace TagEntries
