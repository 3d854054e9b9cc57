#include "tags/writing/RewritePlan.h"

#include "tags/writing/RewriteSource.h"

void RewritePlan::keep(qint64 offset, qint64 length)
{
    if (length <= 0)
        return;
    const bool continues =
        !m_pieces.empty() && m_pieces.back().offset >= 0 && m_pieces.back().offset + m_pieces.back().length == offset;
    if (continues)
        m_pieces.back().length += length;
    else
        m_pieces.push_back({offset, length});
    m_size += length;
}

void RewritePlan::add(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return;
    m_pieces.push_back({-1, bytes.size()});
    m_added.push_back(bytes);
    m_size += bytes.size();
}

void RewritePlan::append(const RewritePlan& other)
{
    Q_ASSERT(other.m_patches.empty() && other.m_sound.empty());
    auto added = other.m_added.begin();
    for (const Piece& piece : other.m_pieces) {
        if (piece.offset >= 0)
            keep(piece.offset, piece.length);
        else
            add(*added++);
    }
}

void RewritePlan::patch(qint64 offset, const QByteArray& bytes)
{
    Q_ASSERT(offset >= 0 && offset + bytes.size() <= m_size);
    m_patches.push_back({offset, bytes});
}

void RewritePlan::markSound(qint64 oldOffset, qint64 length)
{
    if (length > 0)
        m_sound.push_back({oldOffset, m_size - length, length});
}

void RewritePlan::writeTo(FileRewrite& rewrite) const
{
    auto added = m_added.begin();
    for (const Piece& piece : m_pieces) {
        if (piece.offset >= 0)
            rewrite.copy(piece.offset, piece.length);
        else
            rewrite.write(*added++);
    }
    for (const Patch& patch : m_patches)
        rewrite.patch(patch.offset, patch.bytes);
}

QByteArray RewritePlan::toBytes(const RewriteSource& source) const
{
    QByteArray bytes;
    auto added = m_added.begin();
    for (const Piece& piece : m_pieces)
        bytes += piece.offset >= 0 ? source.read(piece.offset, piece.length) : *added++;
    for (const Patch& patch : m_patches)
        bytes.replace(patch.offset, patch.bytes.size(), patch.bytes);
    return bytes;
}
