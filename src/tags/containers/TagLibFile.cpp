#include "tags/containers/TagLibFile.h"

#include <algorithm>

TagLib::ByteVector TagLibStream::readBlock(unsigned long length)
{
    const qint64 room = std::max<qint64>(0, m_range.size() - m_position);
    const auto wanted = static_cast<qint64>(std::min<unsigned long>(length, static_cast<unsigned long>(room)));
    const QByteArray bytes = m_range.read(m_position, wanted);
    m_position += bytes.size();
    return {bytes.constData(), static_cast<unsigned int>(bytes.size())};
}

void TagLibStream::seek(long offset, Position origin)
{
    const long base = origin == Beginning ? 0 : origin == Current ? m_position : length();
    m_position = std::clamp<long>(base + offset, 0, length());
}
