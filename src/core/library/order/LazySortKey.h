#pragma once

#include "platform/Collation.h"

/// A text with its sort key, which is made when the text is first compared with another one.
class LazySortKey {
public:
    using MakeKey = QByteArray (*)(const QString&);

    /// \param makeKey such as Collation::standardSortKey()
    LazySortKey(QString text, MakeKey makeKey)
        : m_text(std::move(text))
        , m_makeKey(makeKey)
    {
    }

    bool isEmpty() const { return m_text.isEmpty(); }

    /// Compares by the keys, which are made where they are missing; equal texts need none. Both have the same
    /// makeKey.
    /// \return negative, 0 or positive
    static int compare(LazySortKey& left, LazySortKey& right)
    {
        if (left.m_text == right.m_text)
            return 0;
        return left.key().compare(right.key());
    }

private:
    const QByteArray& key()
    {
        if (m_key.isNull())
            m_key = m_makeKey(m_text);
        return m_key;
    }

    QString m_text;
    QByteArray m_key; ///< null until made
    MakeKey m_makeKey;
};
