#include "tags/writing/Id3v1Filter.h"

#include <algorithm>

namespace Id3v1Filter {

namespace {

// Source: the ID3v1 and ID3v1.1 layouts; offsets in the tag.
constexpr qsizetype kTitle = 3;
constexpr qsizetype kAlbum = 63;
constexpr qsizetype kYear = 93;
constexpr qsizetype kYearSize = 4;
constexpr qsizetype kComment = 97;
constexpr qsizetype kTrackMark = 125; ///< 0 where a track number follows
constexpr qsizetype kTrack = 126;
constexpr qsizetype kGenre = 127;
constexpr qsizetype kTextSize = 30;
constexpr qsizetype kShortCommentSize = 28;
constexpr char kNoGenre = '\xff';

void zero(QByteArray& tag, qsizetype offset, qsizetype count)
{
    std::fill_n(tag.begin() + offset, count, '\0');
}

} // namespace

QByteArray filtered(QByteArrayView bytes, CleanerFields fields, const std::optional<QString>& title)
{
    QByteArray tag = bytes.toByteArray();
    if (fields.testFlag(CleanerField::Comment))
        zero(tag, kComment, tag.at(kTrackMark) == '\0' ? kShortCommentSize : kTextSize);
    if (fields.testFlag(CleanerField::Album))
        zero(tag, kAlbum, kTextSize);
    if (fields.testFlag(CleanerField::Year))
        zero(tag, kYear, kYearSize);
    // After the comment: emptying a long one makes room for a track number, which is 0 then.
    if (fields.testFlag(CleanerField::Track) && tag.at(kTrackMark) == '\0')
        tag[kTrack] = '\0';
    if (fields.testFlag(CleanerField::Genre))
        tag[kGenre] = kNoGenre;
    if (fields.testFlag(CleanerField::Title) && title) {
        const QByteArray text = title->toUtf8().left(kTextSize);
        tag.replace(kTitle, kTextSize, text.leftJustified(kTextSize, '\0'));
    }
    return tag;
}

} // namespace Id3v1Filter
