#pragma once

#include <QByteArrayView>

class ItemCollector;

namespace Id3v2 {

/// Whether addField() makes use of frames with this id.
bool isWanted(QByteArrayView frameID);
/// Adds the item that a frame stands for, under its name in ID3v2.3.
/// \param frameID three letters for a frame of ID3v2.2, whose pictures are laid out differently.
/// \param content the frame's body, unpacked.
/// \param majorVersion of the tag; genres are written differently in each.
void addField(QByteArrayView frameID, QByteArrayView content, int majorVersion, ItemCollector& items);

} // namespace Id3v2
