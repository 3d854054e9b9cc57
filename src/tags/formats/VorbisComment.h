#pragma once

#include <QByteArrayView>

class ItemCollector;

/// The comments and pictures of FLAC files.
namespace VorbisComment {

/// Adds every comment of a comment block as one item, in order. \param block the block's body.
void read(QByteArrayView block, ItemCollector& items);
/// Adds the picture of a picture block. \param block the block's body, as bytes or as they stand in a comment.
void readPicture(QByteArrayView block, ItemCollector& items);

} // namespace VorbisComment
