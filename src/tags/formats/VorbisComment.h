#pragma once

#include <QByteArrayView>

class ItemCollector;

/// The comments and pictures of FLAC files.
namespace VorbisComment {

/// Adds every comment of a comment block as one item, in order, pictures in Base64 included. What has no name or is
/// broken is left out; a length that claims too much ends the reading. \param block the block's body.
void read(QByteArrayView block, ItemCollector& items);
/// Adds the picture of a picture block (RFC 9639, 8.8), whatever its type; nothing for a broken or empty one.
/// \param block the block's body, as bytes or as they stand in a comment
void readPicture(QByteArrayView block, ItemCollector& items);

} // namespace VorbisComment
