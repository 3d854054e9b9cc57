#include "tags/bytes/Atoms.h"

#include "tags/bytes/ByteReader.h"

#include <algorithm>

std::optional<Atom> AtomWalker::next()
{
    const QByteArray header = m_atoms.read(m_position, 16);
    ByteReader reader(header);
    quint64 size = reader.u32be();
    const QByteArrayView type = reader.bytes(4);
    if (reader.hasFailed())
        return std::nullopt;
    qint64 headerSize = 8;
    const auto room = static_cast<quint64>(m_atoms.size() - m_position);
    if (size == 1) {
        size = reader.u64be();
        headerSize = 16;
    } else if (size == 0) { // up to the end
        size = room;
    }
    if (reader.hasFailed() || size < static_cast<quint64>(headerSize))
        return std::nullopt;
    const auto taken = static_cast<qint64>(std::min(size, room));
    Atom atom{type.toByteArray(), m_atoms.part(m_position + headerSize, taken - headerSize)};
    m_position += taken;
    return atom;
}

ByteRange childAtom(const ByteRange& atoms, QByteArrayView type)
{
    AtomWalker walker(atoms);
    while (const std::optional<Atom> atom = walker.next()) {
        if (atom->type == type)
            return atom->body;
    }
    return atoms.part(0, 0);
}
