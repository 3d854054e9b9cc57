#pragma once

#include "tags/vault/FileAnatomy.h"

#include <QByteArrayView>

class FormDigest;

/// The movie atom of an MPEG-4 file without what a writer of tags changes in it.
namespace MovieForm {

/// Adds everything but tags, free room and the headers' form; chunk offsets count as places in the sound.
/// \param movie the atom's body. \return false if its atoms pass its end.
bool add(FormDigest& digest, QByteArrayView movie, const std::vector<FileAnatomy::Stretch>& sound);

} // namespace MovieForm
