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

/// What is copied and compared at once. Chosen: a block of both files stays in the processor's cache, so that reading
/// it again costs a fraction of reading it first.
constexpr qint64 kBlockSize = 256 * 1024;

FileCalls& calls()
{
    return FileCalls::current();
}

QByteArray folderOf(const QByteArray& path)
{
    return path.first(path.lastIndexOf('/') + 1);
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
    void copyBlock(qint64 offset, qint64 length);
    bool isEqual(const SoundSpan& span);
    void noteEqual(const SoundSpan& block);
    void forgetEqual(qint64 offset, qint64 length);
    bool isNotedAsEqual(const SoundSpan& span) const;
    void finish();
    void swap();

    const SourceFile source;
    const QByteArray temporary;
    const OnFailure onFailure;
    int descriptor = -1;
    qint64 written = 0;
    bool exists = false; ///< the new file, under its temporary name
    bool kernelCopies = true;
    std::vector<SoundSpan> equal; ///< compared since they were written, neighbours in one piece
    QByteArray oldBlock;
    QByteArray newBlock;
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
        throw FileError(FileError::Case::fileWriteUnknown, source.path(), errno);
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
    while (kernelCopies && done < length) {
        const auto count = static_cast<size_t>(length - done);
        const ssize_t copied = calls().copyRange(source.descriptor(), offset + done, descriptor, written + done, count);
        // Not every pair of files can do it, and 0 is the end of the source or a file system that only reads by itself.
        // What is really wrong, reading and writing will meet as well.
        kernelCopies = copied > 0;
        done += std::max<ssize_t>(copied, 0);
    }
    return done;
}

void FileRewrite::State::copyBlock(qint64 offset, qint64 length)
{
    const qint64 start = written;
    const qint64 copied = copyInKernel(offset, length);
    if (copied < length) {
        oldBlock.resize(length - copied);
        source.readInto(offset + copied, {oldBlock.data(), static_cast<size_t>(oldBlock.size())});
        writeAt(start + copied, oldBlock);
    }
    written += length;
    const SoundSpan block{offset, start, length};
    if (isEqual(block))
        noteEqual(block);
}

bool FileRewrite::State::isEqual(const SoundSpan& span)
{
    if (span.length < 0 || span.newOffset < 0 || span.length > written - span.newOffset)
        return false;
    for (qint64 done = 0; done < span.length;) {
        const qint64 count = std::min(kBlockSize, span.length - done);
        oldBlock.resize(count);
        newBlock.resize(count);
        source.readInto(span.oldOffset + done, {oldBlock.data(), static_cast<size_t>(count)});
        for (qint64 filled = 0; filled < count;) {
            const ssize_t more = calls().read(descriptor, newBlock.data() + filled, static_cast<size_t>(count - filled),
                                              span.newOffset + done + filled);
            if (more < 0)
                failWriting();
            if (more == 0)
                return false;
            filled += more;
        }
        if (oldBlock != newBlock)
            return false;
        done += count;
    }
    return true;
}

void FileRewrite::State::noteEqual(const SoundSpan& block)
{
    if (!equal.empty()) {
        SoundSpan& last = equal.back();
        if (last.oldOffset + last.length == block.oldOffset && last.newOffset + last.length == block.newOffset) {
            last.length += block.length;
            return;
        }
    }
    equal.push_back(block);
}

/// What was compared there is no longer what stands there.
void FileRewrite::State::forgetEqual(qint64 offset, qint64 length)
{
    std::vector<SoundSpan> rest;
    for (const SoundSpan& noted : equal) {
        const qint64 before = std::clamp<qint64>(offset - noted.newOffset, 0, noted.length);
        const qint64 behind = std::clamp<qint64>(offset + length - noted.newOffset, 0, noted.length);
        if (before > 0)
            rest.push_back({noted.oldOffset, noted.newOffset, before});
        if (behind < noted.length)
            rest.push_back({noted.oldOffset + behind, noted.newOffset + behind, noted.length - behind});
    }
    equal = std::move(rest);
}

bool FileRewrite::State::isNotedAsEqual(const SoundSpan& span) const
{
    return std::ranges::any_of(equal, [&](const SoundSpan& noted) {
        const qint64 into = span.newOffset - noted.newOffset;
        return into >= 0 && span.oldOffset - noted.oldOffset == into && span.length <= noted.length - into;
    });
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
    for (qint64 done = 0; done < length; done += kBlockSize)
        state.copyBlock(offset + done, std::min(kBlockSize, length - done));
}

void FileRewrite::patch(qint64 offset, QByteArrayView bytes)
{
    Q_ASSERT(offset >= 0 && bytes.size() <= m_state->written - offset);
    m_state->writeAt(offset, bytes);
    m_state->forgetEqual(offset, bytes.size());
}

void FileRewrite::commit(const std::vector<SoundSpan>& sound, const QString& format)
{
    m_state->create();
    for (const SoundSpan& span : sound) {
        if (!m_state->isNotedAsEqual(span) && !m_state->isEqual(span))
            throw WriteError(WriteError::Case::rewriteFailed, format);
    }
    m_state->finish();
    // The new file knows nothing of what somebody else wrote meanwhile.
    if (!m_state->source.isUnchanged())
        throw WriteError(WriteError::Case::rewriteFailed, format);
    m_state->swap();
}
