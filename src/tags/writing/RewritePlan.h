#pragma once

#include "tags/writing/FileRewrite.h"

#include <QByteArray>

#include <vector>

class RewriteSource;

/// What a new file is made of: stretches of the old one and new bytes, in order. A value without any file, so that
/// sizes are known, and checked, before the first byte is written.
class RewritePlan {
public:
    /// A stretch of the old file if \p offset is not negative, else new bytes.
    struct Piece {
        qint64 offset = 0;
        qint64 length = 0;
    };

    /// Goes on with a stretch of the old file; neighbours become one.
    void keep(qint64 offset, qint64 length);
    /// Goes on with new bytes.
    void add(const QByteArray& bytes);
    /// Goes on with all pieces of another plan without patches and sound.
    void append(const RewritePlan& other);
    /// Puts other bytes in the place of some that stand in the plan already. \param offset in the new file.
    void patch(qint64 offset, const QByteArray& bytes);
    /// The last \p length bytes so far are sound, which stands at \p oldOffset in the old file.
    void markSound(qint64 oldOffset, qint64 length);

    /// Bytes of the new file so far.
    qint64 size() const { return m_size; }
    /// What was marked as sound, in the order of the new file.
    const std::vector<SoundSpan>& sound() const { return m_sound; }

    /// Writes the new file, without the commit.
    void writeTo(FileRewrite& rewrite) const;
    /// The new file in memory; for small ones and tests.
    QByteArray toBytes(const RewriteSource& source) const;

private:
    struct Patch {
        qint64 offset = 0;
        QByteArray bytes;
    };

    std::vector<Piece> m_pieces;
    std::vector<QByteArray> m_added; ///< of the pieces without an offset, in order
    std::vector<Patch> m_patches;
    std::vector<SoundSpan> m_sound;
    qint64 m_size = 0;
};
