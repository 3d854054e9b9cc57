#pragma once

#include "tags/vault/FileAnatomy.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

class RewritePlan;

/// What the tag vault keeps of one file: all of it but the sound. A value; the form on disk stands in
/// docs/formats/tag-vault.md.
class VaultEntry {
public:
    /// Tells which file an entry belongs to; stands at the begin of an entry.
    struct Label {
        QString path; ///< standardized
        QByteArray soundDigest;
        QByteArray otherDigest;
        std::vector<qint64> soundLengths;
        std::vector<qint64> pieceLengths; ///< one more than sounds; sum at most kMaximumRest
        qint64 storedSize = 0;            ///< bytes behind the label

        bool operator==(const Label&) const = default;
    };

    /// Chosen: far above any tags, far below what memory may hold.
    static constexpr qint64 kMaximumRest = 256 * 1024 * 1024;
    /// Chosen: far above any real file, so that a label stays small.
    static constexpr qint64 kMaximumSounds = 65536;
    /// Bytes of the largest label.
    static constexpr qint64 kMaximumLabel = 2 * 1024 * 1024;
    /// Bytes of the largest entry: blocks that cannot be compressed have a head of their own.
    static constexpr qint64 kMaximumSize = kMaximumLabel + kMaximumRest + kMaximumRest / 1024;

    /// Reads what is no sound from the file. FileError (fileWriteOutOfSpace) beyond the limits above.
    static VaultEntry make(const QString& path, const RewriteSource& source, const FileAnatomy& anatomy);

    /// The entry as it is kept, compressed where that helps.
    QByteArray toBytes() const;
    /// Nothing for what is damaged in any place, or no entry.
    static std::optional<VaultEntry> fromBytes(const QByteArray& bytes);
    /// Whether the checksums of label and whole fit; cheaper than fromBytes().
    static bool isWhole(const QByteArray& bytes);
    /// The label alone. \param begin the entry's first kMaximumLabel bytes, or all of them. \param size of the whole
    /// entry. Nothing for a damaged label and for an entry of another length.
    static std::optional<Label> labelOf(QByteArrayView begin, qint64 size);
    /// CRC-32 as it stands behind the label and behind the whole.
    static quint32 checksum(QByteArrayView bytes);

    /// Which file the entry belongs to.
    const Label& label() const { return m_label; }
    /// The kept pieces with the sound of the present file between them, which has to be the entry's.
    RewritePlan planRestore(const FileAnatomy& present) const;

private:
    Label m_label;
    QByteArray m_rest; ///< the pieces, one behind the other
};
