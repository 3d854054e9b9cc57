#include "tags/writing/Mp4Atoms.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/ByteOrder.h"

#include <algorithm>

namespace Mp4Atoms {

const Atom* Children::find(QByteArrayView type) const
{
    const auto found = std::ranges::find(atoms, type, &Atom::type);
    return found == atoms.end() ? nullptr : &*found;
}

std::optional<Children> children(QByteArrayView body)
{
    Children result;
    while (body.size() >= 8) {
        ByteReader reader(body);
        quint64 size = reader.u32be();
        const QByteArrayView type = reader.bytes(4);
        if (size == 0) { // the end of a QuickTime list: no child reaches up to the end by itself
            if (std::ranges::any_of(body, [](char byte) { return byte != 0; }))
                return std::nullopt;
            break;
        }
        if (size == 1)
            size = reader.u64be();
        if (reader.hasFailed() || size < quint64(reader.position()) || size > quint64(body.size()))
            return std::nullopt;
        const QByteArrayView whole = body.first(static_cast<qsizetype>(size));
        result.atoms.push_back({type, whole, whole.sliced(reader.position())});
        body = body.sliced(static_cast<qsizetype>(size));
    }
    result.tail = body;
    return result;
}

QByteArray atom(QByteArrayView type, const QByteArray& body)
{
    return ByteOrder::big32(static_cast<quint32>(body.size() + 8)) + type.toByteArray() + body;
}

} // namespace Mp4Atoms
