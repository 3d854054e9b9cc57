#include "tags/containers/Mp4File.h"

#include "tags/bytes/Atoms.h"
#include "tags/containers/Mp4Sound.h"
#include "tags/formats/Mp4Items.h"

namespace Mp4File {

namespace {

/// The list of items of a movie; empty without one.
ByteRange itemList(const ByteRange& movie)
{
    const ByteRange meta = childAtom(childAtom(movie, "udta"), "meta");
    // Version and flags stand in front of the children, but some writers leave them out.
    const bool isBare = meta.read(4, 4) == "hdlr";
    return childAtom(isBare ? meta : meta.from(4), "ilst");
}

} // namespace

std::optional<Sound> read(const ByteRange& file, ItemCollector& items)
{
    ByteRange movie = file.part(0, 0);
    qint64 mediaBytes = 0;
    AtomWalker walker(file);
    while (const std::optional<Atom> atom = walker.next()) {
        if (atom->type == "moov" && movie.size() == 0)
            movie = atom->body;
        else if (atom->type == "mdat")
            mediaBytes += atom->body.size();
    }
    Mp4Items::read(itemList(movie), items);
    return Mp4Sound::read(file, movie, mediaBytes);
}

} // namespace Mp4File
