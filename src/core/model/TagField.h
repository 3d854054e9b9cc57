#pragma once

#include "core/model/AudioTags.h"

#include <QFlags>

#include <array>

/// One of the ten editable tags. The order is that of AudioTags::fields(). Each value is one bit, so that several
/// make up a TagFields.
enum class TagField {
    Title = 1,
    Artist = 2,
    Album = 4,
    AlbumArtist = 8,
    Genre = 16,
    Year = 32,
    Track = 64,
    Comment = 128,
    Tempo = 256,
    MusicalKey = 512,
};
Q_DECLARE_FLAGS(TagFields, TagField)
Q_DECLARE_OPERATORS_FOR_FLAGS(TagFields)

/// The ten tags as a set.
namespace TagFieldSet {

/// All ten: the sum of their bits.
constexpr TagFields kAll(1023);
/// Those that no read of a file supplies: a row has them only if the user typed them.
constexpr TagFields kNeverRead = TagFields(TagField::AlbumArtist) | TagField::Year | TagField::Track | TagField::Tempo;

/// The ten, in order.
const std::array<TagField, 10>& list();
/// The field's place in the tags.
QString AudioTags::*member(TagField field);
/// The fields in which two tags differ.
TagFields differing(const AudioTags& one, const AudioTags& other);
/// The fields that hold a text.
TagFields filled(const AudioTags& tags);
/// \p base with the chosen fields of \p edits written over it.
AudioTags merged(const AudioTags& base, const AudioTags& edits, TagFields fields);

} // namespace TagFieldSet
