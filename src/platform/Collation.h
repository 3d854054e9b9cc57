#pragma once

#include <QByteArray>
#include <QString>

/// Localised compares for the language of the interface: secondary strength (case alone never decides), punctuation not
/// ignored. Thread: any.
namespace Collation {

/// The file manager's order: digits compared by value. \return negative, 0 or positive.
int standardCompare(const QString& left, const QString& right);
/// Without the numeric part.
int caseInsensitiveCompare(const QString& left, const QString& right);
/// Bytes whose plain order is standardCompare's. Never contains a zero byte, so keys may be joined by one.
QByteArray standardSortKey(const QString& text);
/// The same for caseInsensitiveCompare.
QByteArray caseInsensitiveSortKey(const QString& text);

} // namespace Collation
