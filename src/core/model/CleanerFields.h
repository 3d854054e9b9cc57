#pragma once

#include <QFlags>

/// Fields of a file's tags, as chosen for cleaning. The values are stored and never change.
enum class CleanerField {
    Artwork = 1,
    Comment = 2,
    Genre = 4,
    Album = 8,
    AlbumArtist = 16,
    Year = 32,
    Track = 64,
    Tempo = 128,
    Key = 256,
    Title = 512,
};
Q_DECLARE_FLAGS(CleanerFields, CleanerField)
Q_DECLARE_OPERATORS_FOR_FLAGS(CleanerFields)
