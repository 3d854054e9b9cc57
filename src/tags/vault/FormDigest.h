#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QCryptographicHash>
#include <QtEndian>

#include <memory>

/// A digest of a sequence of numbers and byte strings, each with its length, so that no two sequences look alike.
/// BLAKE2b with 256 bits: of the toolkit's secure digests the one that is quick enough to be made with every save.
class FormDigest {
public:
    /// Bytes of result().
    static constexpr qsizetype kSize = 32;

    /// A number as eight bytes, the lowest first.
    void add(qint64 number)
    {
        char bytes[sizeof(number)];
        qToLittleEndian(number, bytes);
        addRaw(QByteArrayView(bytes, sizeof(bytes)));
    }
    void add(QByteArrayView bytes)
    {
        add(qint64(bytes.size()));
        addRaw(bytes);
    }
    /// Bytes whose length has been added before.
    void addRaw(QByteArrayView bytes) { m_hash->addData(bytes); }

    /// The digest of what was added so far; kSize bytes.
    QByteArray result() const { return m_hash->result(); }

private:
    std::unique_ptr<QCryptographicHash> m_hash = std::make_unique<QCryptographicHash>(QCryptographicHash::Blake2b_256);
};
