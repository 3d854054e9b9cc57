#include "tags/writing/FieldNames.h"

#include <algorithm>

namespace FieldNames {

namespace {

struct Name {
    CleanerField field;
    const char* name;
};

constexpr Name kId3Frames[] = {
    {CleanerField::Artwork, "APIC"},    {CleanerField::Artwork, "PIC"}, {CleanerField::Comment, "COMM"},
    {CleanerField::Comment, "COM"},     {CleanerField::Genre, "TCON"},  {CleanerField::Genre, "TCO"},
    {CleanerField::Album, "TALB"},      {CleanerField::Album, "TAL"},   {CleanerField::AlbumArtist, "TPE2"},
    {CleanerField::AlbumArtist, "TP2"}, {CleanerField::Year, "TYER"},   {CleanerField::Year, "TDRC"},
    {CleanerField::Year, "TDAT"},       {CleanerField::Year, "TIME"},   {CleanerField::Year, "TYE"},
    {CleanerField::Year, "TDA"},        {CleanerField::Year, "TIM"},    {CleanerField::Track, "TRCK"},
    {CleanerField::Track, "TRK"},       {CleanerField::Tempo, "TBPM"},  {CleanerField::Tempo, "TBP"},
    {CleanerField::Key, "TKEY"},        {CleanerField::Key, "TKE"},     {CleanerField::Title, "TIT2"},
    {CleanerField::Title, "TT2"},
};

constexpr Name kCommentKeys[] = {
    {CleanerField::Artwork, "COVER ART (FRONT)"},
    {CleanerField::Artwork, "COVER ART (BACK)"},
    {CleanerField::Artwork, "METADATA_BLOCK_PICTURE"},
    {CleanerField::Artwork, "COVERART"},
    {CleanerField::Artwork, "COVERARTMIME"},
    {CleanerField::Comment, "COMMENT"},
    {CleanerField::Comment, "COMMENTS"},
    {CleanerField::Comment, "DESCRIPTION"},
    {CleanerField::Genre, "GENRE"},
    {CleanerField::Album, "ALBUM"},
    {CleanerField::AlbumArtist, "ALBUMARTIST"},
    {CleanerField::AlbumArtist, "ALBUM ARTIST"},
    {CleanerField::Year, "DATE"},
    {CleanerField::Year, "YEAR"},
    {CleanerField::Track, "TRACKNUMBER"},
    {CleanerField::Track, "TRACK"},
    {CleanerField::Track, "TRACKTOTAL"},
    {CleanerField::Track, "TOTALTRACKS"},
    {CleanerField::Tempo, "BPM"},
    {CleanerField::Tempo, "TEMPO"},
    {CleanerField::Key, "INITIALKEY"},
    {CleanerField::Key, "KEY"},
    {CleanerField::Title, "TITLE"},
};

} // namespace

bool isId3Frame(QByteArrayView id, CleanerFields fields)
{
    return std::ranges::any_of(
        kId3Frames, [&](const Name& name) { return fields.testFlag(name.field) && id == QByteArrayView(name.name); });
}

bool isCommentKey(const QString& key, CleanerFields fields)
{
    const QString upper = key.toUpper();
    return std::ranges::any_of(kCommentKeys, [&](const Name& name) {
        return fields.testFlag(name.field) && upper == QLatin1StringView(name.name);
    });
}

} // namespace FieldNames
