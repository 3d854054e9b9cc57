#include "core/model/TagField.h"

namespace TagFieldSet {

const std::array<TagField, 10>& list()
{
    static const std::array<TagField, 10> kFields{
        TagField::Title, TagField::Artist, TagField::Album,   TagField::AlbumArtist, TagField::Genre,
        TagField::Year,  TagField::Track,  TagField::Comment, TagField::Tempo,       TagField::MusicalKey};
    return kFields;
}

QString AudioTags::*member(TagField field)
{
    switch (field) {
    case TagField::Title:
        return &AudioTags::title;
    case TagField::Artist:
        return &AudioTags::artist;
    case TagField::Album:
        return &AudioTags::album;
    case TagField::AlbumArtist:
        return &AudioTags::albumArtist;
    case TagField::Genre:
        return &AudioTags::genre;
    case TagField::Year:
        return &AudioTags::year;
    case TagField::Track:
        return &AudioTags::track;
    case TagField::Comment:
        return &AudioTags::comment;
    case TagField::Tempo:
        return &AudioTags::bpm;
    case TagField::MusicalKey:
        return &AudioTags::musicalKey;
    }
    Q_UNREACHABLE();
}

TagFields differing(const AudioTags& one, const AudioTags& other)
{
    TagFields fields;
    for (const TagField field : list())
        fields.setFlag(field, one.*member(field) != other.*member(field));
    return fields;
}

TagFields filled(const AudioTags& tags)
{
    TagFields fields;
    for (const TagField field : list())
        fields.setFlag(field, !(tags.*member(field)).isEmpty());
    return fields;
}

AudioTags merged(const AudioTags& base, const AudioTags& edits, TagFields fields)
{
    AudioTags tags = base;
    for (const TagField field : list()) {
        if (fields.testFlag(field))
            tags.*member(field) = edits.*member(field);
    }
    return tags;
}

} // namespace TagFieldSet
