#include "platform/audio/FileImage.h"

#include "platform/audio/AudioFileError.h"

#include <QFile>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kBlockBytes = qint64(256) * 1024;

/// Reads until the span is full, the file ends (fewer) or an error occurs before the first byte (-1).
qint64 readAt(int descriptor, qint64 offset, std::span<std::byte> into)
{
    size_t done = 0;
    while (done < into.size()) {
        const ssize_t got =
            pread(descriptor, into.data() + done, into.size() - done, offset + static_cast<qint64>(done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && done == 0)
            return -1;
        if (got <= 0)
            break;
        done += static_cast<size_t>(got);
    }
    return static_cast<qint64>(done);
}

} // namespace

struct FileImage::State {
    int descriptor = -1;
    qint64 size = 0;
    qint64 heldBytes = 0;
    /// Written by fill() alone. Readers look at it only below the mark, which is published after the bytes.
    std::byte* memory = nullptr;
    std::atomic<qint64> mark = 0;

    ~State()
    {
        if (memory)
            munmap(memory, static_cast<size_t>(size));
        if (descriptor >= 0)
            close(descriptor);
    }

    /// Anonymous pages instead of the heap: they go back to the system at once when the image is dropped.
    bool reserve()
    {
        if (size == 0 || size > heldBytes)
            return false;
        void* pages =
            mmap(nullptr, static_cast<size_t>(size), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED)
            return false;
        memory = static_cast<std::byte*>(pages);
        return true;
    }
};

FileImage::FileImage(std::unique_ptr<State> state)
    : m_state(std::move(state))
{
}

FileImage::~FileImage() = default;

std::shared_ptr<FileImage> FileImage::open(const QString& path, qint64 heldBytes)
{
    auto state = std::make_unique<State>();
    state->heldBytes = heldBytes;
    // Without O_NONBLOCK opening a pipe would wait for its writer.
    do {
        state->descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    } while (state->descriptor < 0 && errno == EINTR);
    struct stat info {};
    if (state->descriptor < 0 || fstat(state->descriptor, &info) != 0 || !S_ISREG(info.st_mode))
        throw AudioFileError(AudioFileError::Case::CannotOpen);
    state->size = info.st_size;
    posix_fadvise(state->descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    return std::shared_ptr<FileImage>(new FileImage(std::move(state)));
}

std::shared_ptr<FileImage> FileImage::ofBytes(const QByteArray& bytes)
{
    auto state = std::make_unique<State>();
    state->size = bytes.size();
    state->heldBytes = bytes.size();
    if (state->reserve())
        std::memcpy(state->memory, bytes.constData(), static_cast<size_t>(bytes.size()));
    else if (!bytes.isEmpty())
        throw AudioFileError(AudioFileError::Case::OutOfMemory);
    state->mark = bytes.size();
    return std::shared_ptr<FileImage>(new FileImage(std::move(state)));
}

qint64 FileImage::size() const
{
    return m_state->size;
}

void FileImage::fill(std::stop_token stop)
{
    State& state = *m_state;
    if (state.memory || !state.reserve())
        return;
    qint64 mark = 0;
    while (mark < state.size && !stop.stop_requested()) {
        const qint64 wanted = std::min(kBlockBytes, state.size - mark);
        const qint64 got = readAt(state.descriptor, mark, {state.memory + mark, static_cast<size_t>(wanted)});
        if (got <= 0)
            return;
        mark += got;
        state.mark.store(mark, std::memory_order_release);
    }
}

bool FileImage::isHeld() const
{
    return m_state->mark.load(std::memory_order_acquire) == m_state->size;
}

qint64 FileImage::read(qint64 offset, std::span<std::byte> into) const
{
    const State& state = *m_state;
    if (offset < 0 || offset >= state.size || into.empty())
        return 0;
    into = into.first(static_cast<size_t>(std::min<qint64>(static_cast<qint64>(into.size()), state.size - offset)));
    const qint64 mark = state.mark.load(std::memory_order_acquire);
    const qint64 held = std::clamp<qint64>(mark - offset, 0, static_cast<qint64>(into.size()));
    if (held > 0)
        std::memcpy(into.data(), state.memory + offset, static_cast<size_t>(held));
    if (held == static_cast<qint64>(into.size()))
        return held;
    const qint64 rest = readAt(state.descriptor, offset + held, into.subspan(static_cast<size_t>(held)));
    return rest < 0 && held == 0 ? -1 : held + std::max<qint64>(rest, 0);
}
