#pragma once

#include "tags/bytes/ByteSource.h"

#include <optional>

/// One atom of an MPEG-4 file.
struct Atom {
    QByteArray type; ///< four bytes
    ByteRange body;  ///< ends where the parent ends if the size claims more
};

/// The atoms of a file or of another atom, in order. Looks one level deep only, so nothing nests without end.
class AtomWalker {
public:
    explicit AtomWalker(const ByteRange& atoms)
        : m_atoms(atoms)
    {
    }

    /// Nothing at the end and at an impossible size.
    std::optional<Atom> next();

private:
    const ByteRange m_atoms;
    qint64 m_position = 0;
};

/// The body of the first child of this type; empty without one.
ByteRange childAtom(const ByteRange& atoms, QByteArrayView type);
