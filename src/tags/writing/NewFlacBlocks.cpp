#include "tags/writing/NewFlacBlocks.h"

#include "tags/writing/ByteOrder.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

NewFlacBlocks::NewFlacBlocks()
{
    m_plan.add("fLaC");
}

void NewFlacBlocks::keep(const FlacBlock& block)
{
    begin(block.type);
    m_plan.keep(block.offset, block.size());
}

void NewFlacBlocks::add(quint8 type, const QByteArray& body)
{
    if (body.size() > ByteOrder::kMaximum24)
        throw WriteError(WriteError::Case::rewriteFailed, QStringLiteral("flac"));
    begin(type);
    m_plan.add(ByteOrder::big32(quint32(type) << 24 | static_cast<quint32>(body.size())) + body);
}

void NewFlacBlocks::clearLastFlag()
{
    if (m_lastOffset)
        mark(*m_lastOffset, m_lastType);
}

RewritePlan NewFlacBlocks::finish(const RewriteSource& source, qint64 soundOffset, qint64 soundEnd)
{
    if (!m_lastOffset) // a new file of sound without any block would be none
        throw FileError(FileError::Case::fileWriteUnknown, source.path());
    mark(*m_lastOffset, m_lastType | FlacBlock::kLastFlag);
    m_plan.keep(soundOffset, soundEnd - soundOffset);
    m_plan.markSound(soundOffset, soundEnd - soundOffset);
    return std::move(m_plan);
}

void NewFlacBlocks::begin(quint8 type)
{
    m_lastOffset = m_plan.size();
    m_lastType = type;
}

void NewFlacBlocks::mark(qint64 offset, int firstByte)
{
    m_plan.patch(offset, QByteArray(1, static_cast<char>(firstByte)));
}
