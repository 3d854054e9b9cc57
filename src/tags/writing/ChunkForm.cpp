#include "tags/writing/ChunkForm.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/RewritePlan.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

const ChunkForm& ChunkForm::riff()
{
    static const ChunkForm form(Endian::Little, QStringLiteral("wav"));
    return form;
}

const ChunkForm& ChunkForm::aiff()
{
    static const ChunkForm form(Endian::Big, QStringLiteral("aiff"));
    return form;
}

QByteArray ChunkForm::chunk(QByteArrayView id, const QByteArray& body) const
{
    return id.toByteArray() + sizeBytes(body.size()) + body + QByteArray(body.size() % 2, '\0');
}

bool ChunkForm::fits(qint64 size)
{
    return size >= 0 && size <= ByteOrder::kMaximum32;
}

QByteArray ChunkForm::sizeBytes(qint64 size) const
{
    const auto value = static_cast<quint32>(size);
    return m_endian == Endian::Little ? ByteOrder::little32(value) : ByteOrder::big32(value);
}

qint64 ChunkForm::sizeOf(QByteArrayView header) const
{
    ByteReader reader(header.sliced(4));
    return m_endian == Endian::Little ? reader.u32le() : reader.u32be();
}

void ChunkForm::requireHeader(const RewriteSource& source) const
{
    const QByteArray header = source.read(0, std::min(kFileHeaderSize, source.size()));
    const QByteArray id = header.left(4);
    const QByteArray kind = header.mid(8);
    const bool isOurs = m_endian == Endian::Little ? id == "RIFF" && kind == "WAVE"
                                                   : id == "FORM" && (kind == "AIFF" || kind == "AIFC");
    if (!isOurs)
        throw WriteError(WriteError::Case::unsupportedFormat, m_extension);
}

void ChunkForm::setFileSize(RewritePlan& plan) const
{
    const qint64 size = plan.size() - kHeaderSize;
    if (!fits(size))
        throw WriteError(WriteError::Case::rewriteFailed, m_extension);
    plan.patch(4, sizeBytes(size));
}

FileChunkWalker::FileChunkWalker(const ChunkForm& form, const RewriteSource& source, qint64 begin, qint64 end,
                                 LastPadding lastPadding)
    : m_form(form)
    , m_source(source)
    , m_position(begin)
    , m_end(end)
    , m_lastPadding(lastPadding)
{
}

std::optional<FileChunk> FileChunkWalker::next()
{
    if (m_end - m_position < ChunkForm::kHeaderSize)
        return std::nullopt;
    const QByteArray header = m_source.read(m_position, ChunkForm::kHeaderSize);
    FileChunk chunk{header.left(4), m_position, m_form.sizeOf(header)};
    chunk.end = chunk.bodyOffset() + chunk.bodySize + chunk.bodySize % 2;
    if (m_lastPadding == LastPadding::Optional && chunk.end == m_end + 1)
        chunk.end = m_end;
    m_source.requireWithin(m_end, m_position, chunk.end - m_position);
    m_position = chunk.end;
    return chunk;
}
