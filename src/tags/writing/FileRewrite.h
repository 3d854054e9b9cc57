#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

/// A stretch of sound that has to be the same in the old and the new file.
struct SoundSpan {
    qint64 oldOffset = 0;
    qint64 newOffset = 0;
    qint64 length = 0; ///< bytes
};

/// The change of one file: a whole new file is written beside the old one and takes its place in one step, or the old
/// one stays as it was. Whatever fails throws FileError. Blocks; for workers. One object per change.
/// A symbolic link stays one, and what it leads to is changed. Of several hard links the changed one becomes a file of
/// its own, and the others keep the old content.
class FileRewrite {
public:
    /// What becomes of the new file when the change fails.
    enum class OnFailure { Remove, Keep };

    /// Opens the source. The first write, copy or commit creates the new file in the same folder, named ".velmora-", a
    /// new UUID in upper case, a point and \p temporaryExtension; so nothing is left of a source that cannot be read.
    FileRewrite(const QString& path, const QString& temporaryExtension, OnFailure onFailure = OnFailure::Remove);
    /// Without a commit the source is as it was, and the new file goes unless it is to be kept.
    ~FileRewrite();
    FileRewrite(const FileRewrite&) = delete;
    FileRewrite& operator=(const FileRewrite&) = delete;

    /// Bytes of the source.
    qint64 sourceSize() const;
    /// Exactly \p count bytes of the source; fewer is FileError (fileReadCorruptFile).
    QByteArray read(qint64 offset, qint64 count) const;

    /// Bytes written so far: where the next ones go.
    qint64 written() const;
    /// Goes on with new bytes.
    void write(QByteArrayView bytes);
    /// Brings a stretch of the source over, in blocks of at most 1 MiB, by the kernel itself where it can, and compares
    /// what has come over. A source that ends early is FileError (fileReadCorruptFile).
    void copy(qint64 offset, qint64 length);
    /// Overwrites bytes that were written before. \param offset in the new file.
    void patch(qint64 offset, QByteArrayView bytes);

    /// Compares the sound, makes the new file durable with the source's mode, owner where allowed and extended
    /// attributes, takes write protection off both, puts the new file in its place and makes that durable. The last
    /// call on the object. \param sound what must be equal; a difference is WriteError (rewriteFailed with \p format)
    /// and changes nothing, and so is a source that another program wrote into or replaced meanwhile.
    void commit(const std::vector<SoundSpan>& sound, const QString& format);

private:
    struct State;
    std::unique_ptr<State> m_state;
};
