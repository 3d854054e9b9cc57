#pragma once

#include "tags/bytes/ByteSource.h"

#include <optional>

/// One atom of an MPEG-4 file.
struct Atom {
    QByteArray type; ///< four bytes
    ByteRange body;  ///< ends where the parent ends if the size claims more
};

/// The atoms of a file or of another atom, in order (ISO/IEC 14496-12, 4.2). Looks one level deep only, so nothing
/// nests without end. Thread: that of the source.
class AtomWalker {
public:
    explicit AtomWalker(const ByteRange& atoms)
        : m_atoms(atoms)
    {
    }

    /// The next atom; an atom whose size claims more than there is ends where the walk ends. Nothing at the end and
    /// at an impossible size, and then for good.
    std::optional<Atom> next();

private:
    const ByteRange m_atoms;
    qint64 m_position = 0;
};

/// The body of the first child of this type; empty without one.
ByteRange childAtom(const ByteRange& atoms, QByteArrayView type);
