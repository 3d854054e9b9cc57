#include "tags/vault/VaultEntry.h"

#include "tags/bytes/ByteReader.h"
#include "tags/vault/FormDigest.h"
#include "tags/vault/PackedBytes.h"
#include "tags/writing/RewritePlan.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>
#include <numeric>

#include <zlib.h>

namespace {

// On disk, never change.
constexpr QByteArrayView kMagic("VelmTags");
constexpr quint32 kVersion = 2; ///< 1: tags behind the sound of FLAC files and before Lyrics3 counted as sound
constexpr qsizetype kFixedSize = 8 + 4 + 4 + 8; ///< magic, version, length of the label, length of what follows
constexpr qsizetype kStoredSizeAt = 16;
constexpr qsizetype kChecksumSize = 4;
/// Chosen: small enough for memory that is used again and again.
constexpr qint64 kReadSize = 64 * 1024;

template <typename T>
void append(QByteArray& bytes, T value)
{
    char raw[sizeof(T)];
    qToLittleEndian(value, raw);
    bytes.append(raw, sizeof(T));
}

std::vector<qint64> lengths(ByteReader& reader, qint64 count, qint64 largest)
{
    std::vector<qint64> values;
    for (qint64 index = 0; index < count && !reader.hasFailed(); ++index) {
        const quint64 value = reader.u64le();
        if (value > quint64(largest))
            reader.skip(-1); // fails
        values.push_back(static_cast<qint64>(value));
    }
    return values;
}

qint64 sum(const std::vector<qint64>& values)
{
    return std::accumulate(values.begin(), values.end(), qint64(0));
}

/// The label without its checksum.
QByteArray bodyOf(const VaultEntry::Label& label)
{
    QByteArray bytes;
    const QByteArray path = label.path.toUtf8();
    bytes += label.soundDigest + label.otherDigest;
    append(bytes, static_cast<quint32>(path.size()));
    bytes += path;
    append(bytes, static_cast<quint32>(label.soundLengths.size()));
    for (const qint64 length : label.soundLengths)
        append(bytes, length);
    for (const qint64 length : label.pieceLengths)
        append(bytes, length);
    QByteArray fixed = kMagic.toByteArray();
    append(fixed, kVersion);
    append(fixed, static_cast<quint32>(kFixedSize + bytes.size() + kChecksumSize));
    append(fixed, label.storedSize);
    return fixed + bytes;
}

} // namespace

quint32 VaultEntry::checksum(QByteArrayView bytes)
{
    return static_cast<quint32>(::crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), size_t(bytes.size())));
}

VaultEntry VaultEntry::make(const QString& path, const RewriteSource& source, const FileAnatomy& anatomy)
{
    VaultEntry entry;
    entry.m_label.path = path;
    entry.m_label.soundDigest = anatomy.soundDigest;
    entry.m_label.otherDigest = anatomy.otherDigest;
    for (const FileAnatomy::Stretch& stretch : anatomy.sound)
        entry.m_label.soundLengths.push_back(stretch.length);
    const std::vector<FileAnatomy::Stretch> rest = anatomy.rest(source.size());
    for (const FileAnatomy::Stretch& piece : rest)
        entry.m_label.pieceLengths.push_back(piece.length);
    if (sum(entry.m_label.pieceLengths) > kMaximumRest || qint64(anatomy.sound.size()) > kMaximumSounds)
        throw FileError(FileError::Case::fileWriteOutOfSpace, source.path());
    entry.m_rest.reserve(sum(entry.m_label.pieceLengths));
    for (const FileAnatomy::Stretch& piece : rest) {
        for (qint64 done = 0; done < piece.length; done += kReadSize)
            entry.m_rest += source.read(piece.offset + done, std::min(kReadSize, piece.length - done));
    }
    return entry;
}

QByteArray VaultEntry::toBytes() const
{
    QByteArray bytes = bodyOf(m_label);
    const qsizetype labelSize = bytes.size() + kChecksumSize;
    bytes.reserve(labelSize + PackedBytes::largestSize(m_rest.size()) + kChecksumSize);
    bytes.resize(labelSize);
    PackedBytes::pack(m_rest, bytes);
    qToLittleEndian(qint64(bytes.size() + kChecksumSize - labelSize), bytes.data() + kStoredSizeAt);
    const quint32 labelChecksum = checksum(QByteArrayView(bytes).first(labelSize - kChecksumSize));
    qToLittleEndian(labelChecksum, bytes.data() + labelSize - kChecksumSize);
    append(bytes, checksum(bytes));
    return bytes;
}

std::optional<VaultEntry::Label> VaultEntry::labelOf(QByteArrayView begin, qint64 size)
{
    ByteReader fixed(begin);
    const bool isOurs = fixed.bytes(kMagic.size()) == kMagic && fixed.u32le() == kVersion;
    const qint64 labelSize = fixed.u32le();
    const quint64 storedSize = fixed.u64le();
    if (fixed.hasFailed() || !isOurs || labelSize < kFixedSize + kChecksumSize || labelSize > kMaximumLabel ||
        labelSize > begin.size() || storedSize > quint64(size) || labelSize + qint64(storedSize) != size)
        return std::nullopt;
    const QByteArrayView label = begin.first(labelSize);
    if (qFromLittleEndian<quint32>(label.last(kChecksumSize).data()) != checksum(label.chopped(kChecksumSize)))
        return std::nullopt;
    ByteReader reader(label.sliced(kFixedSize).chopped(kChecksumSize));
    Label result;
    result.storedSize = static_cast<qint64>(storedSize);
    result.soundDigest = reader.bytes(FormDigest::kSize).toByteArray();
    result.otherDigest = reader.bytes(FormDigest::kSize).toByteArray();
    result.path = QString::fromUtf8(reader.bytes(reader.u32le()));
    const quint32 soundCount = reader.u32le();
    if (soundCount > kMaximumSounds)
        return std::nullopt;
    // The sum of as many as there may be stays far below the type's end.
    result.soundLengths = lengths(reader, soundCount, qint64(1) << 46);
    result.pieceLengths = lengths(reader, qint64(soundCount) + 1, kMaximumRest);
    if (reader.hasFailed() || !reader.isAtEnd() || sum(result.pieceLengths) > kMaximumRest)
        return std::nullopt;
    return result;
}

bool VaultEntry::isWhole(const QByteArray& bytes)
{
    const std::optional<Label> label = labelOf(bytes, bytes.size());
    if (!label || label->storedSize < kChecksumSize)
        return false;
    const QByteArrayView whole(bytes);
    return qFromLittleEndian<quint32>(whole.last(kChecksumSize).data()) == checksum(whole.chopped(kChecksumSize));
}

std::optional<VaultEntry> VaultEntry::fromBytes(const QByteArray& bytes)
{
    const std::optional<Label> label = labelOf(bytes, bytes.size());
    if (!label || !isWhole(bytes))
        return std::nullopt;
    const QByteArrayView packed = QByteArrayView(bytes).last(label->storedSize).chopped(kChecksumSize);
    const std::optional<QByteArray> rest = PackedBytes::unpack(packed, sum(label->pieceLengths));
    if (!rest)
        return std::nullopt;
    VaultEntry entry;
    entry.m_label = *label;
    entry.m_rest = *rest;
    return entry;
}

RewritePlan VaultEntry::planRestore(const FileAnatomy& present) const
{
    Q_ASSERT(present.sound.size() + 1 == m_label.pieceLengths.size());
    RewritePlan plan;
    qint64 position = 0;
    for (size_t index = 0; index < m_label.pieceLengths.size(); ++index) {
        plan.add(m_rest.mid(position, m_label.pieceLengths[index]));
        position += m_label.pieceLengths[index];
        if (index == present.sound.size())
            break;
        plan.keep(present.sound[index].offset, present.sound[index].length);
        plan.markSound(present.sound[index].offset, present.sound[index].length);
    }
    return plan;
}
