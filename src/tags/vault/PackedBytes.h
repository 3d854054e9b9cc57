#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// Bytes in blocks, each compressed only if that is worth its time: covers are compressed already. The form stands in
/// docs/formats/tag-vault.md.
namespace PackedBytes {

/// Appends them to \p target, so that covers are not copied twice: fresh memory is most of what keeping them costs.
void pack(QByteArrayView bytes, QByteArray& target);
/// Bytes that pack() appends at most.
qint64 largestSize(qint64 size);
/// \param size of the bytes as they were. \return nothing if the blocks do not give exactly so many.
std::optional<QByteArray> unpack(QByteArrayView packed, qint64 size);

} // namespace PackedBytes
