#include "tags/keeping/Inventories.h"

#include "tags/keeping/InventoryCollector.h"
#include "tags/writing/M4aWriter.h"
#include "tags/writing/Mp4Atoms.h"
#include "tags/writing/Mp4Tags.h"
#include "tags/writing/RewriteSource.h"

namespace Inventories {

namespace {

using Mp4Atoms::Atom;

/// The children of an atom; a broken one is FileError (fileReadCorruptFile).
Mp4Atoms::Children childrenOf(QByteArrayView body, const RewriteSource& source)
{
    std::optional<Mp4Atoms::Children> children = Mp4Atoms::children(body);
    if (!children)
        source.failCorrupt();
    return *std::move(children);
}

void takeList(QByteArrayView list, InventoryCollector& collector)
{
    const std::optional<Mp4Atoms::Children> items = Mp4Atoms::children(list);
    if (!items)
        return collector.setUnknown();
    collector.beginTag();
    // What a free item says is more exact than the number beside it.
    for (const bool isFree : {true, false}) {
        for (const Atom& item : items->atoms) {
            if ((item.type == "----") == isFree)
                collector.add(TagEntries::ofMp4Item(item.whole));
        }
    }
}

void takeMeta(QByteArrayView meta, const RewriteSource& source, InventoryCollector& collector)
{
    const Mp4Atoms::Children parts = childrenOf(meta.sliced(Mp4Tags::metaHeaderSize(meta)), source);
    for (const Atom& part : parts.atoms) {
        if (part.type == "ilst")
            takeList(part.body, collector);
        else if (part.type == "ID32")
            collector.addOther();
    }
}

void takeUserData(QByteArrayView userData, const RewriteSource& source, InventoryCollector& collector)
{
    const Mp4Atoms::Children parts = childrenOf(userData, source);
    for (const Atom& part : parts.atoms) {
        if (part.type == "meta")
            takeMeta(part.body, source, collector);
        else if (Mp4Tags::isOldText(part.type))
            collector.addOther(); // goes with a plain save, and is not read
    }
}

} // namespace

void takeM4a(const RewriteSource& source, TagInventory& inventory)
{
    InventoryCollector collector(inventory, TagFieldSet::kNeverRead | TagField::MusicalKey);
    const QByteArray movie = M4aWriter::movie(source);
    const Mp4Atoms::Children parts = childrenOf(movie, source);
    for (const Atom& part : parts.atoms) {
        if (part.type == "udta")
            takeUserData(part.body, source, collector);
        else if (part.type == "meta")
            takeMeta(part.body, source, collector);
    }
}

} // namespace Inventories
