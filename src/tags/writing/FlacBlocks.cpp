#include "tags/writing/FlacBlocks.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace {

constexpr qint64 kMarkerSize = 4;

} // namespace

FlacBlockWalker::FlacBlockWalker(const RewriteSource& source)
    : m_source(source)
    , m_position(kMarkerSize)
{
    if (source.read(0, std::min(kMarkerSize, source.size())) != "fLaC")
        throw WriteError(WriteError::Case::unsupportedFormat, QStringLiteral("flac"));
}

std::optional<FlacBlock> FlacBlockWalker::next()
{
    if (m_isAtEnd)
        return std::nullopt;
    const QByteArray header = m_source.read(m_position, FlacBlock::kHeaderSize);
    ByteReader reader(header);
    const quint8 first = reader.u8();
    const FlacBlock block{static_cast<quint8>(first & ~FlacBlock::kLastFlag), m_position, reader.u24be()};
    m_source.requireWithin(m_source.size(), m_position, block.size());
    m_isAtEnd = first & FlacBlock::kLastFlag;
    m_position = block.end();
    return block;
}
