#pragma once

#include <QByteArray>

/// The places of the sound that an MPEG-4 file's movie atom knows.
namespace Mp4Offsets {

/// Only with Done may the movie be written.
enum class Outcome { Done, Broken, Impossible };

/// Moves every chunk offset from \p from on by \p delta. \param movie the body of the atom, changed in place.
/// \return Broken if atoms or tables pass their ends; Impossible if an offset would no longer fit its table, or
/// the file holds other offsets, of encryption, that are not known here. The bytes are of no use then.
Outcome shift(QByteArray& movie, qint64 from, qint64 delta);

} // namespace Mp4Offsets
