#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <span>
#include <stop_token>

/// The bytes of one file as they were when it was opened: in memory as far as fill() has come, and read from the one
/// descriptor of the opening beyond that, never again by name. So whatever reads it goes on undisturbed when the file
/// is replaced, renamed or removed, and once it is held also when it is written into. Thread: any.
class FileImage {
public:
    /// Files up to this size are held in memory; larger ones are always read from the descriptor. Chosen: three hours
    /// of CD sound, or nine hours of MP3 at 320 kbit/s.
    static constexpr qint64 kHeldBytes = qint64(2) * 1024 * 1024 * 1024;

    /// Opens a file and reads nothing yet. \param path standardized path. \param heldBytes limit of what is held.
    /// Errors: AudioFileError (CannotOpen) for what is not there, not readable or no regular file.
    static std::shared_ptr<FileImage> open(const QString& path, qint64 heldBytes = kHeldBytes);
    /// An image of a copy of these bytes, held from the start. Errors: AudioFileError (OutOfMemory).
    static std::shared_ptr<FileImage> ofBytes(const QByteArray& bytes);
    ~FileImage();
    FileImage(const FileImage&) = delete;
    FileImage& operator=(const FileImage&) = delete;

    /// Bytes at the time of opening.
    qint64 size() const;
    /// Brings the file into memory, front to back, while others read. Does nothing for a file beyond the limit or when
    /// memory is short; ends quietly at a read error, from where the descriptor goes on serving. Blocks; called once.
    /// Stop: polled every block of at most 256 KiB.
    void fill(std::stop_token stop);
    /// Whether every byte is in memory.
    bool isHeld() const;
    /// Copies bytes from \p offset on. \return how many: fewer than asked for only at the end, 0 behind it, -1 for a
    /// read error.
    qint64 read(qint64 offset, std::span<std::byte> into) const;

private:
    struct State;
    explicit FileImage(std::unique_ptr<State> state);

    std::unique_ptr<State> m_state;
};
