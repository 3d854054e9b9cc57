#pragma once

#include <QByteArray>

#include <chrono>
#include <cstddef>
#include <span>

/// What reading one file may cost. Chosen: a healthy file takes milliseconds; this is what a hostile one or a stalled
/// disk may take from the others.
struct ReadLimits {
    /// Of the reader's own work, without waiting for the disk.
    std::chrono::milliseconds ownTime{5000};
    /// Since the source was made, the waiting included.
    std::chrono::milliseconds wallTime{30000};
    /// Calls of ByteSource::readInto() and read().
    qint64 readCount = 50'000'000;
    /// Bytes for each byte of the source, and some more for small ones.
    qint64 timesSize = 4;
    qint64 byteCount = 256 * 1024 * 1024;
};

/// Bytes at offsets, of a file or of memory. Never gives more than there is, and gives nothing any more once a limit
/// has been reached, so that a loop of reads comes to an end whatever the bytes say. Thread: one at a time.
class ByteSource {
public:
    /// The reader's own time that a source allows where nothing else is asked for.
    static constexpr std::chrono::milliseconds kDefaultTimeLimit = ReadLimits().ownTime;

    explicit ByteSource(const ReadLimits& limits = ReadLimits());
    virtual ~ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// Number of bytes when the source was opened.
    virtual qint64 size() const = 0;
    /// Fills \p target from \p offset on. \return the bytes filled: fewer where the source ends, 0 for an offset
    /// outside, for a failed read and once a limit has been reached.
    qint64 readInto(qint64 offset, std::span<std::byte> target);
    /// The same as a new array of at most \p count bytes; never allocates more than the source holds.
    QByteArray read(qint64 offset, qint64 count);
    /// Whether a limit has been reached.
    bool isExpired() const { return hasSpent(1); }
    /// Whether half of a limit is spent: time to estimate what would have been counted.
    bool isRunningLow() const { return hasSpent(2); }
    /// Whether bytes that exist were not given, because of a limit or of a failure: what was made of the others is not
    /// the whole.
    bool wasCutShort() const { return m_wasCutShort; }

protected:
    using Clock = std::chrono::steady_clock;
    /// \p target lies within the source.
    virtual qint64 fill(qint64 offset, std::span<std::byte> target) = 0;
    /// Says how long fill() has waited for a disk; that is not the reader's own time.
    void addWaiting(Clock::duration time) { m_waiting += time; }
    void markCutShort() { m_wasCutShort = true; }

private:
    bool hasSpent(int divisor) const;

    const ReadLimits m_limits;
    const Clock::time_point m_begin = Clock::now();
    Clock::duration m_waiting{};
    qint64 m_readCount = 0;
    qint64 m_byteCount = 0;
    bool m_wasCutShort = false;
};

/// A part of a source: offsets count from the part's begin, and nothing outside it is seen.
struct ByteRange {
    ByteSource* source = nullptr;
    /// Bytes from the source's beginning.
    qint64 begin = 0;
    qint64 end = 0; ///< begin <= end <= source->size()

    /// \param source outlives the range and all its parts.
    static ByteRange whole(ByteSource& source) { return {&source, 0, source.size()}; }
    qint64 size() const { return end - begin; }
    /// \p count bytes from \p offset on, fewer where the range ends.
    QByteArray read(qint64 offset, qint64 count) const;
    /// The part from \p offset with at most \p count bytes; clamped to this range, empty outside.
    ByteRange part(qint64 offset, qint64 count) const;
    /// The part from \p offset to the range's end; empty for an offset beyond it.
    ByteRange from(qint64 offset) const { return part(offset, size()); }
};

/// Bytes that are in memory already.
class MemoryBytes final : public ByteSource {
public:
    explicit MemoryBytes(QByteArray bytes, const ReadLimits& limits = ReadLimits());
    qint64 size() const override { return m_bytes.size(); }

protected:
    qint64 fill(qint64 offset, std::span<std::byte> target) override;

private:
    const QByteArray m_bytes;
};
