#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>

/// The texts that identities and file locations have on disk, at the price that lists of 100,000 can pay.
namespace StoredForms {

/// Characters of a UUID with its four dashes and without braces.
inline constexpr qsizetype kUUIDLength = 36;

/// Writes the upper-case canonical form. \param target room for kUUIDLength bytes.
void writeUUID(const QUuid& id, char* target);
/// The same form in new bytes.
QByteArray uuidText(const QUuid& id);
/// Reads the canonical form, in letters of either case; nothing for anything else.
std::optional<QUuid> uuidFromText(QByteArrayView text);

/// Absolute URL text: "file://" and the path, with percent escapes for all but the plainest characters.
QByteArray urlText(const QUrl& url);
/// The path in the URL text of a file on this machine, "file:///..."; nothing for any other text.
std::optional<QString> pathFromText(QByteArrayView text);
/// Reads absolute URL text; nothing for what is no absolute URL.
std::optional<QUrl> urlFromText(QByteArrayView text);

} // namespace StoredForms
