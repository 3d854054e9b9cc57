#pragma once

#include <QByteArray>
#include <QString>

/// Localised compares for the language of the interface: secondary strength (case alone never decides), punctuation not
/// ignored. Thread: any.
namespace Collation {

/// The file manager's order: digits compared by value. \return negative, 0 or positive. The first call of all throws
/// std::runtime_error where ICU's data cannot be loaded.
int standardCompare(const QString& left, const QString& right);
/// Without the numeric part: "10" comes before "9".
int caseInsensitiveCompare(const QString& left, const QString& right);
/// Bytes whose plain order is standardCompare's, for sorting many texts. Never contains a zero byte, so keys may be
/// joined by one. Holds for the language of the moment: keys of two languages cannot be compared.
QByteArray standardSortKey(const QString& text);
/// The same for caseInsensitiveCompare.
QByteArray caseInsensitiveSortKey(const QString& text);

} // namespace Collation
