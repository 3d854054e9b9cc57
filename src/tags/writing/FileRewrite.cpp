#include "tags/writing/FileRewrite.h"

#include "platform/files/FileAttributes.h"
#include "platform/files/FileCalls.h"
#include "tags/writing/SourceFile.h"
#include "tags/writing/WriteErrors.h"

#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>

namespace {

constexpr qint64 kBlockSize = 1024 * 1024;
/// One call of the kernel's copy; chosen: below every limit of the systems' calls.
constexpr qint64 kKernelBlockSize = 1024 * kBlockSize;

FileCalls& calls()
{
    return FileCalls::current();
}

QByteArray folderOf(const QByteArray& path)
{
    return path.first(path.lastIndexOf('/') + 1);
}

/// Whether the kernel's copy does not know such a pair of files, which reading and writing can do all the same.
bool cannotCopyInKernel(int error)
{
    return error == ENOSYS || error == EXDEV || error == EINVAL || error == ENOTSUP || error == EPERM;
}

} // namespace

struct FileRewrite::State {
    State(const QString& path, const QString& extension, OnFailure failure)
        : source(path)
        , temporary(folderOf(source.target()) + ".velmora-" +
                    QUuid::createUuid().toByteArray(QUuid::WithoutBraces).toUpper() + '.' + extension.toUtf8())
        , onFailure(failure)
    {
    }
    ~State();

    [[noreturn]] void failWriting() const { throw FileError::fromWriting(errno, source.path()); }
    void create();
    void writeAt(qint64 offset, QByteArrayView bytes);
    qint64 copyInKernel(qint64 offset, qint64 length);
    bool isEqual(const SoundSpan& span) const;
    void finish();
    void swap();

    const SourceFile source;
    const QByteArray temporary;
    const OnFailure onFailure;
    int descriptor = -1;
    qint64 written = 0;
    bool exists = false; ///< the new file, under its temporary name
};

FileRewrite::State::~State()
{
    if (descriptor >= 0)
        calls().close(descriptor);
    if (exists && onFailure == OnFailure::Remove)
        calls().remove(temporary);
}

void FileRewrite::State::create()
{
    if (exists)
        return;
    descriptor = calls().open(temporary, O_RDWR | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        failWriting();
    exists = true;
}

void FileRewrite::State::writeAt(qint64 offset, QByteArrayView bytes)
{
    create();
    while (!bytes.isEmpty()) {
        const ssize_t count = calls().write(descriptor, bytes.data(), static_cast<size_t>(bytes.size()), offset);
        if (count == 0) // some network file systems; the next try would end the same way
            errno = EIO;
        if (count <= 0)
            failWriting();
        bytes = bytes.sliced(count);
        offset += count;
    }
}

/// \return how many bytes the kernel has brought over; the caller does the rest by itself.
qint64 FileRewrite::State::copyInKernel(qint64 offset, qint64 length)
{
    qint64 done = 0;
    while (done < length) {
        const auto count = static_cast<size_t>(std::min(length - done, kKernelBlockSize));
        const ssize_t copied = calls().copyRange(source.descriptor(), offset + done, descriptor, written + done, count);
        if (copied < 0 && !cannotCopyInKernel(errno))
            failWriting();
        if (copied <= 0) // 0 is the end of the source, or a file system that only reads by itself
            break;
        done += copied;
    }
    return done;
}

bool FileRewrite::State::isEqual(const SoundSpan& span) const
{
    QByteArray oldBytes(kBlockSize, Qt::Uninitialized);
    QByteArray newBytes(kBlockSize, Qt::Uninitialized);
    if (span.length < 0 || span.newOffset < 0 || span.length > written - span.newOffset)
        return false;
    for (qint64 done = 0; done < span.length;) {
        const qint64 count = std::min(kBlockSize, span.length - done);
        source.readInto(span.oldOffset + done, {oldBytes.data(), static_cast<size_t>(count)});
        for (qint64 filled = 0; filled < count;) {
            const ssize_t more = calls().read(descriptor, newBytes.data() + filled, static_cast<size_t>(count - filled),
                                              span.newOffset + done + filled);
            if (more < 0)
                failWriting();
            if (more == 0)
                return false;
            filled += more;
        }
        if (QByteArrayView(oldBytes).first(count) != QByteArrayView(newBytes).first(count))
            return false;
        done += count;
    }
    return true;
}

/// The new file is complete and durable afterwards.
void FileRewrite::State::finish()
{
    try {
        FileAttributes::copy(source.descriptor(), descriptor);
        FileAttributes::makeWritable(descriptor); // as the source will be
        if (calls().sync(descriptor) != 0 || calls().close(std::exchange(descriptor, -1)) != 0)
            failWriting();
        FileAttributes::makeWritable(source.descriptor());
    } catch (const std::system_error& error) {
        throw FileError::fromWriting(error.code().value(), source.path());
    }
}

void FileRewrite::State::swap()
{
    if (calls().rename(temporary, source.target()) != 0)
        failWriting();
    exists = false;
    // The change has happened: a folder that cannot be made durable now would not bring the old file back. After a loss
    // of power either of the two stands there, whole.
    const int folder = calls().open(folderOf(source.target()), O_RDONLY | O_DIRECTORY);
    if (folder < 0)
        return;
    calls().sync(folder);
    calls().close(folder);
}

FileRewrite::FileRewrite(const QString& path, const QString& temporaryExtension, OnFailure onFailure)
    : m_state(std::make_unique<State>(path, temporaryExtension, onFailure))
{
}

FileRewrite::~FileRewrite() = default;

qint64 FileRewrite::sourceSize() const
{
    return m_state->source.size();
}

QByteArray FileRewrite::read(qint64 offset, qint64 count) const
{
    return m_state->source.read(offset, count);
}

qint64 FileRewrite::written() const
{
    return m_state->written;
}

void FileRewrite::write(QByteArrayView bytes)
{
    m_state->writeAt(m_state->written, bytes);
    m_state->written += bytes.size();
}

void FileRewrite::copy(qint64 offset, qint64 length)
{
    State& state = *m_state;
    if (offset < 0 || length < 0 || length > state.source.size() - offset)
        throw FileError(FileError::Case::fileReadCorruptFile, state.source.path());
    state.create();
    const qint64 copied = state.copyInKernel(offset, length);
    state.written += copied;
    QByteArray block;
    for (qint64 done = copied; done < length; done += block.size()) {
        block.resize(std::min(kBlockSize, length - done));
        state.source.readInto(offset + done, {block.data(), static_cast<size_t>(block.size())});
        write(block);
    }
}

void FileRewrite::patch(qint64 offset, QByteArrayView bytes)
{
    Q_ASSERT(offset >= 0 && bytes.size() <= m_state->written - offset);
    m_state->writeAt(offset, bytes);
}

void FileRewrite::commit(const std::vector<SoundSpan>& sound, const QString& format)
{
    m_state->create();
    for (const SoundSpan& span : sound) {
        if (!m_state->isEqual(span))
            throw WriteError(WriteError::Case::rewriteFailed, format);
    }
    m_state->finish();
    // The new file knows nothing of what somebody else wrote meanwhile.
    if (!m_state->source.isUnchanged())
        throw WriteError(WriteError::Case::rewriteFailed, format);
    m_state->swap();
}
