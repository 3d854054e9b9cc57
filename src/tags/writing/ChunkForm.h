#pragma once

#include <QByteArray>

#include <optional>

class RewritePlan;
class RewriteSource;

/// The form that RIFF and AIFF files share: chunks of an id, a 32-bit size and a body, padded to an even length.
/// Sources: Microsoft and IBM, Multimedia Programming Interface 1.0; Apple, Audio Interchange File Format 1.3.
class ChunkForm {
public:
    static constexpr qint64 kFileHeaderSize = 12; ///< id, size, kind of file
    static constexpr qint64 kHeaderSize = 8;

    /// WAV: the lowest byte of a size first, the extension "wav".
    static const ChunkForm& riff();
    /// AIFF and AIFC: the highest byte of a size first, the extension "aiff".
    static const ChunkForm& aiff();

    /// A chunk with its padding. \param id four letters. The body must fit 32 bits: see fits().
    QByteArray chunk(QByteArrayView id, const QByteArray& body) const;
    /// Whether a size can be said in 32 bits.
    static bool fits(qint64 size);
    /// A size as it stands in a header. \param size one that fits().
    QByteArray sizeBytes(qint64 size) const;
    /// The size of the body in a chunk's header. \param header kHeaderSize bytes.
    qint64 sizeOf(QByteArrayView header) const;
    /// The extension that errors name.
    const QString& extension() const { return m_extension; }

    /// The chunk that holds the sound.
    QByteArrayView soundID() const { return m_endian == Endian::Little ? "data" : "SSND"; }

    /// Throws WriteError (unsupportedFormat) unless the file begins as this form does.
    void requireHeader(const RewriteSource& source) const;
    /// Writes the size of the whole file in place. WriteError (rewriteFailed) beyond 32 bits.
    void setFileSize(RewritePlan& plan) const;

private:
    enum class Endian { Little, Big };
    ChunkForm(Endian endian, const QString& extension)
        : m_endian(endian)
        , m_extension(extension)
    {
    }

    Endian m_endian;
    QString m_extension;
};

/// A chunk of a file, or of a list within one, as it stands.
struct FileChunk {
    QByteArray id; ///< four bytes
    qint64 offset = 0;
    qint64 bodySize = 0; ///< without the padding
    qint64 end = 0;      ///< behind the padding

    qint64 bodyOffset() const { return offset + ChunkForm::kHeaderSize; }
    qint64 size() const { return end - offset; }
};

/// The chunks between two offsets, in order. One that passes the end is FileError (fileReadCorruptFile).
class FileChunkWalker {
public:
    /// Whether the last chunk of odd size may lack its padding.
    enum class LastPadding { Required, Optional };

    FileChunkWalker(const ChunkForm& form, const RewriteSource& source, qint64 begin, qint64 end,
                    LastPadding lastPadding = LastPadding::Required);
    /// Nothing where no further header fits.
    std::optional<FileChunk> next();
    /// Behind the last chunk: what begins there is too short for one.
    qint64 position() const { return m_position; }

private:
    const ChunkForm& m_form;
    const RewriteSource& m_source;
    qint64 m_position;
    const qint64 m_end;
    const LastPadding m_lastPadding;
};
