#include "tags/writing/FileAtom.h"

#include "tags/bytes/ByteReader.h"

#include <algorithm>

FileAtom FileAtom::at(const RewriteSource& source, qint64 offset)
{
    const QByteArray header = source.read(offset, std::min<qint64>(16, source.size() - offset));
    ByteReader reader(header);
    quint64 size = reader.u32be();
    const QByteArray type = reader.bytes(4).toByteArray();
    if (size == 0) // up to the end
        size = quint64(source.size() - offset);
    else if (size == 1)
        size = reader.u64be();
    if (reader.hasFailed() || size < quint64(reader.position()) || size > quint64(source.size() - offset))
        source.failCorrupt();
    return {type, offset, reader.position(), static_cast<qint64>(size)};
}
