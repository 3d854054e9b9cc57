#pragma once

#include "core/model/TagInventory.h"

class RewriteSource;

/// What a plain save takes away, by container. Each adds what it finds as it goes, and throws what the planners of a
/// save throw where the tags are broken.
namespace Inventories {

void takeMp3(const RewriteSource& source, TagInventory& inventory);
void takeFlac(const RewriteSource& source, TagInventory& inventory);
void takeWav(const RewriteSource& source, TagInventory& inventory);
void takeAiff(const RewriteSource& source, TagInventory& inventory);
void takeM4a(const RewriteSource& source, TagInventory& inventory);

} // namespace Inventories
