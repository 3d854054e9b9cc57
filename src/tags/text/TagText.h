#pragma once

#include <QByteArrayView>
#include <QString>

/// Text of tags from its bytes. What cannot be decoded becomes U+FFFD; nothing else is changed.
namespace TagText {

enum class ByteOrder { LittleEndian, BigEndian };

/// Fields meant for Latin-1, as they are found: UTF-8 where the bytes are such with at least one longer sequence, else
/// Windows-1251 if \p isCyrillic, else Windows-1252, which is Latin-1 with the curly quotes that programs write.
QString fromLegacy(QByteArrayView bytes, bool isCyrillic);
/// A byte order mark in front, or behind a U+0000 that separates values, decides about what follows and is removed;
/// before the first one \p assumed holds. An odd last byte is dropped.
QString fromUtf16(QByteArrayView bytes, ByteOrder assumed);
/// A mark in front is removed. Bytes that are no UTF-8 are taken for Windows-1252.
QString fromUtf8(QByteArrayView bytes);
/// Whether the bytes are UTF-8; only a last character may be cut off if it is not the only one above 0x7F.
bool isUtf8(QByteArrayView bytes);
/// UTF-8 without a last character that is cut off, anything else as it is.
QByteArrayView withoutCutCharacter(QByteArrayView bytes);

/// The order of UTF-16 text by its mark, else by where the high bytes of plain or Cyrillic letters stand, else where
/// fewer different bytes do; \p assumed if nothing tells.
ByteOrder guessByteOrder(QByteArrayView bytes, ByteOrder assumed = ByteOrder::LittleEndian);
/// The bytes before the first zero byte.
QByteArrayView untilZero(QByteArrayView bytes);
/// How several values of one field are shown: "A / B", the way ID3v2.3 writes several people into one text. Empty
/// values are left out.
/// \param values separated or ended by U+0000; a byte order mark before a value is dropped.
/// \param transform applied to each value; may be null.
QString joined(QStringView values, QString (*transform)(const QString& value) = nullptr);

} // namespace TagText
