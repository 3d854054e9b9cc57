#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

/// Atoms of an MPEG-4 file in memory, read strictly and made anew. Source: ISO/IEC 14496-12, section 4.2.
namespace Mp4Atoms {

/// An atom as views into the bytes that it was read from.
struct Atom {
    QByteArrayView type; ///< four bytes
    QByteArrayView whole;
    QByteArrayView body;
};

/// The children of an atom, and behind them zeros or what is too short for another one: QuickTime ends some lists so.
struct Children {
    std::vector<Atom> atoms;
    QByteArrayView tail;

    /// The first child of this type.
    const Atom* find(QByteArrayView type) const;
};

/// \return nothing if a child passes the body's end or has an impossible size.
std::optional<Children> children(QByteArrayView body);
/// An atom with a 32-bit size. \param body below 4 GiB.
QByteArray atom(QByteArrayView type, const QByteArray& body);

} // namespace Mp4Atoms
