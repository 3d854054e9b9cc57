#pragma once

#include "core/model/CleanerFields.h"

#include <QByteArray>

#include <functional>
#include <optional>

/// Takes items out of an APEv2 tag that otherwise stays as it is.
namespace ApeFilter {

/// Bytes of a tag's footer, and of its header where it has one.
constexpr qint64 kBlockSize = 32;

/// A header or a footer.
struct Block {
    qint64 size = 0; ///< bytes of the items and the footer, as the block has it
    quint32 itemCount = 0;
    bool isHeader = false; ///< by its flags
};
/// Nothing if the bytes are no such block. \p bytes has kBlockSize bytes.
std::optional<Block> block(QByteArrayView bytes);

/// \param tag one whole tag with or without a header.
/// \return the tag without the items of the fields, an empty tag if it was the last; nothing if the tag is broken.
std::optional<QByteArray> filtered(QByteArrayView tag, CleanerFields fields);

/// Told a key and its whole item, size and flags included: whether it goes.
using IsDropped = std::function<bool(const QString& key, QByteArrayView item)>;
/// The same for items that are chosen otherwise.
std::optional<QByteArray> filtered(QByteArrayView tag, const IsDropped& isDropped);

} // namespace ApeFilter
