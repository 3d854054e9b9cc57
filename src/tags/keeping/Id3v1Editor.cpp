#include "tags/keeping/Id3v1Editor.h"

#include <algorithm>

namespace Id3v1Editor {

namespace {

// Source: the ID3v1 and ID3v1.1 layouts; offsets in the tag.
struct Place {
    TagField field;
    qsizetype offset;
    qsizetype size;
};
constexpr Place kTexts[] = {
    {TagField::Title, 3, 30}, {TagField::Artist, 33, 30}, {TagField::Album, 63, 30}, {TagField::Year, 93, 4}};
constexpr qsizetype kComment = 97;
constexpr qsizetype kCommentSize = 30;
constexpr qsizetype kShortCommentSize = 28; ///< with a track number behind it
constexpr qsizetype kTrackMark = 125;       ///< 0 where a track number follows
constexpr qsizetype kTrack = 126;
constexpr qsizetype kGenre = 127;
constexpr char kNoGenre = '\xff';

QByteArray latin1(const QString& text, qsizetype size)
{
    const bool fits = std::ranges::all_of(text, [](QChar c) { return c.unicode() > 0 && c.unicode() <= 0xFF; });
    return (fits ? text.toLatin1().left(size) : QByteArray()).leftJustified(size, '\0');
}

/// 0 for what is no number of one byte; "3/12" is 3.
char trackByte(const QString& text)
{
    bool isNumber = false;
    const uint number = text.section(u'/', 0, 0).toUInt(&isNumber);
    return isNumber && number <= 0xFF ? static_cast<char>(number) : '\0';
}

void setCommentAndTrack(QByteArray& tag, const KeepEdits& edits)
{
    const bool hasComment = edits.fields.testFlag(TagField::Comment);
    char track = tag.at(kTrackMark) == '\0' ? tag.at(kTrack) : '\0';
    const bool hasRoom = tag.at(kTrackMark) == '\0' || hasComment;
    if (edits.fields.testFlag(TagField::Track) && hasRoom)
        track = trackByte(edits.tags.track);
    if (hasComment) {
        const qsizetype size = track == '\0' ? kCommentSize : kShortCommentSize;
        tag.replace(kComment, kCommentSize, latin1(edits.tags.comment, size).leftJustified(kCommentSize, '\0'));
    }
    if (tag.at(kTrackMark) == '\0')
        tag[kTrack] = track;
}

} // namespace

QByteArray edited(const QByteArray& bytes, const KeepEdits& edits)
{
    QByteArray tag = bytes;
    for (const Place& place : kTexts) {
        if (edits.fields.testFlag(place.field))
            tag.replace(place.offset, place.size, latin1(edits.tags.*TagFieldSet::member(place.field), place.size));
    }
    setCommentAndTrack(tag, edits);
    if (edits.fields.testFlag(TagField::Genre))
        tag[kGenre] = kNoGenre;
    return tag;
}

} // namespace Id3v1Editor
