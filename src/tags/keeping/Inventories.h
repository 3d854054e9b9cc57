#pragma once

#include "core/model/TagInventory.h"

class RewriteSource;

/// What a plain save takes away, by container. Each adds what it finds as it goes, and throws what the planners of a
/// save throw where the tags are broken.
namespace Inventories {

/// ID3v2 in front, ID3v1 and APEv2 behind the sound.
void takeMp3(const RewriteSource& source, TagInventory& inventory);
/// Blocks of comments and pictures.
void takeFlac(const RewriteSource& source, TagInventory& inventory);
/// Lists of INFO and ID3v2 chunks.
void takeWav(const RewriteSource& source, TagInventory& inventory);
/// Text chunks and ID3v2 chunks.
void takeAiff(const RewriteSource& source, TagInventory& inventory);
/// The list of items, and the texts beside it.
void takeM4a(const RewriteSource& source, TagInventory& inventory);

} // namespace Inventories
